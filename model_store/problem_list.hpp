#pragma once

#include "model_store/model_store.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace velm {

/// Collects problems up to a limit, so that a modeller sees all of them and not one at a time.
class ProblemList {
public:
    /// At least one is collected, for an error must say something.
    explicit ProblemList(std::size_t most) : most_(std::max<std::size_t>(most, 1)) {}

    /// Throws StoreError with what was collected when there is no room for another.
    void add(Finding problem)
    {
        if (found_.size() >= most_) {
            throw StoreError(std::move(found_), true);
        }
        found_.push_back(std::move(problem));
    }

    [[nodiscard]] bool empty() const { return found_.empty(); }

    void throw_if_any()
    {
        if (!found_.empty()) {
            throw StoreError(std::move(found_), false);
        }
    }

private:
    std::size_t most_;
    std::vector<Finding> found_;
};

} // namespace velm
