#pragma once

#include "model/items.hpp"
#include "model_store/load/table_reader.hpp"

namespace velm {

/// Fills the model from all tables, in an order in which each comes after those that its rows refer to.
void load_tables(LoadState& load, Model& model);

/// Goes to the item that a row belongs to, or is: the list of that level gets a new one. Needs a sound load.
struct StepTo {
    RowNumbers numbers;
    std::size_t level_of_new = numbers.size();

    auto& operator()(auto& list, std::size_t level) const
    {
        return level == level_of_new ? list.emplace_back() : list[static_cast<std::size_t>(numbers.at(level)) - 1];
    }
    auto& type(auto& list) const { return (*this)(list, 0); }
};

} // namespace velm
