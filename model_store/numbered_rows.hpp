#pragma once

#include "model/model.hpp"
#include "model_store/table_shape.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace velm {

/// A column of reals, wherever they lie in memory: `step` bytes from one to the next.
class RealColumn {
public:
    RealColumn() = default;
    explicit RealColumn(const float* first, std::size_t step = sizeof(float))
        : first_(reinterpret_cast<const char*>(first)), step_(step)
    {
    }

    float operator[](std::size_t row) const
    {
        float real = 0;
        std::memcpy(&real, first_ + row * step_, sizeof real);
        return real;
    }

private:
    const char* first_ = nullptr;
    std::size_t step_ = sizeof(float);
};

/// Rows whose keys begin alike and end in a number that counts them from 1: the pairs of a series, or what each segment
/// has of something.
struct NumberedRows {
    std::array<std::uint64_t, 2> key{}; ///< what their keys begin with; in a table with a key of two, the first of it
    std::uint64_t first_number = 1;     ///< more than 1 when the first of them stand elsewhere
    std::size_t count = 0;
    std::array<RealColumn, 2> reals{}; ///< as many as the table has columns beside the key
};

/// The content of a table that consists of such rows.
struct NumberedTable {
    const TableShape& shape;
    std::vector<NumberedRows> rows{}; ///< in the order of their keys, none empty

    [[nodiscard]] std::size_t shared_keys() const { return shape.keys - 1; }
    [[nodiscard]] std::size_t reals() const { return shape.columns.size() - shape.keys; }
};

/// The time series, the initial conditions and the parameters' values of `model`, which must outlive what is returned.
/// Throws StoreError for what a load would refuse: more or fewer values than times or segments, more pairs than a
/// boundary or load can have, a number that is not finite.
[[nodiscard]] std::vector<NumberedTable> numbered_tables(const Model& model);

} // namespace velm
