#pragma once

#include "input_file/form_rules.hpp"
#include "input_file/records/record_reader.hpp"
#include "model/model.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace velm {

/// Puts instances into their types as a file lists them: only those in use, the types one after another, the
/// instances of a type in the order of their numbers. Numbers left out are those of unused instances.
template <class Instance>
class Instances {
public:
    explicit Instances(std::vector<InstanceType<Instance>>& types) : types_(types) {}

    /// The instance that the current record's fields isc and instance name, and the key of its row. When they name
    /// none that a model can hold, that is reported and what follows goes into an instance that nobody keeps.
    Instance& enter(RecordReader& in)
    {
        in.key(0);
        const std::optional<std::int32_t> isc = in.identity("isc");
        const std::optional<std::int32_t> number = in.identity("instance");
        if (!isc || !number || !has_place(in, *isc, *number)) {
            complete_ = false;
            nowhere_ = {};
            return nowhere_;
        }
        std::vector<Instance>& instances = types_.back().instances;
        in.key(static_cast<std::int32_t>(types_.size()));
        in.deliver_identity("isc");
        in.key(static_cast<std::int32_t>(types_.size()), *number);
        in.result.unused_instances += static_cast<std::uint64_t>(*number) - 1 - instances.size();
        instances.resize(static_cast<std::size_t>(*number));
        instances.back().used = true;
        return instances.back();
    }

    /// Whether all have had a place.
    [[nodiscard]] bool complete() const { return complete_; }

private:
    static constexpr std::uint64_t most_unused = 1'000'000; ///< beyond any use, and soon beyond memory

    bool has_place(RecordReader& in, std::int32_t isc, std::int32_t number)
    {
        if (types_.empty() || types_.back().isc != isc) {
            if (!known_.insert(isc).second) {
                in.report(form_rules::not_storable, "isc", "stands apart from the others of its type",
                          "the instances of a type one after another");
                return false;
            }
            types_.push_back({isc, {}});
        }
        const std::size_t instances = types_.back().instances.size();
        if (number < 1 || static_cast<std::size_t>(number) <= instances) {
            in.report(form_rules::not_storable, "instance", "is not above the instance before it",
                      "a number above " + std::to_string(instances));
            return false;
        }
        if (in.result.unused_instances + static_cast<std::uint64_t>(number) > most_unused) {
            in.report(form_rules::not_storable, "instance", "leaves out more numbers than a model is given room for",
                      "numbers without large gaps");
            return false;
        }
        return true;
    }

    std::vector<InstanceType<Instance>>& types_;
    std::unordered_set<std::int32_t> known_;
    Instance nowhere_;
    bool complete_ = true;
};

} // namespace velm
