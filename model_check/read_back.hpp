#pragma once

#include "model/model.hpp"
#include "model_check/file_findings.hpp"
#include "model_check/losses.hpp"

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <vector>

namespace velm {

/// What reading a model's export back says of it.
struct ReadBack {
    Losses losses;
    std::vector<Address> gaps; ///< the data of which the file shows no value
};

/// Reads the export of `model`, in binary mode, and gives the model the values that the file shows. Lists fields that
/// say nothing or touch, and whatever else is wrong with the file; not what is lost of values that it shows.
[[nodiscard]] ReadBack read_back(std::istream& exported, Model& model, FindingList& list,
                                 const std::function<void(std::uint64_t bytes)>& on_progress = {});

/// Lists the losses, the worst of each rule first.
void add_losses(FindingList& list, const Losses& losses);

} // namespace velm
