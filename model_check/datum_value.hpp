#pragma once

#include "model/address.hpp"
#include "model/model.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace velm {

/// Points to a value of a model by its kind; all null where the model has none. A flag has no kind here.
struct DatumValue {
    std::int32_t* integer = nullptr;
    float* real = nullptr;
    std::string* text = nullptr;
};

/// The value that stands at `address`, which may be changed.
[[nodiscard]] DatumValue value_of(Model& model, const Address& address);

/// Finds a model's data by their places in its export, where types without a used instance are left out and the others
/// count on.
class ExportedTypes {
public:
    explicit ExportedTypes(const Model& model);

    /// Where the datum that a reader of the export finds at `in_file` stands in the model; type 0 when it is of none.
    [[nodiscard]] Address in_model(Address in_file) const;

private:
    std::vector<std::int32_t> time_functions_; ///< the numbers of the types in the file, in its order
    std::vector<std::int32_t> parameters_;
    std::vector<std::int32_t> constants_;
};

} // namespace velm
