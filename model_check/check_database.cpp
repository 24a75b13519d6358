#include "model_check/check_file.hpp"

#include "model/items.hpp"
#include "model_check/check_values.hpp"
#include "model_check/read_back.hpp"
#include "model_store/model_store.hpp"

#include <algorithm>
#include <fstream>
#include <utility>

namespace velm {

namespace {

constexpr std::size_t most_row_problems = 10'000;

/// Looks for what the export of `exported` loses, and gives it the values of the export; checks those of `model`, which
/// may be the same. Returns what was left out.
std::vector<std::string> check_model(FindingList& list, Model& exported, const Model& model,
                                     const WriteInputFile& write, const CheckOptions& options)
{
    const std::filesystem::path file = write(exported);
    const std::uintmax_t size = std::filesystem::file_size(file);
    std::ifstream stream(file, std::ios::binary);
    const ReadBack found = read_back(stream, exported, list, [&](std::uint64_t bytes) {
        if (options.on_progress) {
            options.on_progress("check", bytes, size);
        }
    });
    std::vector<std::string> remarks = check_values(model, &model == &exported ? found.gaps : std::vector<Address>(),
                                                    [&](Finding finding) { list.add(std::move(finding)); });
    add_losses(list, found.losses);
    return remarks;
}

std::vector<TimeSeries*> series_of(Model& model)
{
    std::vector<TimeSeries*> all;
    for_each_item(model, [&](const auto& /*table*/, const RowNumbers& /*numbers*/, auto& item) {
        if constexpr (requires { item.series; }) {
            all.push_back(&item.series);
        }
    });
    return all;
}

/// Leaves the first pairs of each series, about `most_pairs` in all, and of the longest enough for the number of its
/// pairs to be as wide as it is.
void shorten(const std::vector<TimeSeries*>& all, std::size_t most_pairs)
{
    constexpr std::size_t too_many_for_a_count = 100'000;
    const TimeSeries* const longest =
        *std::max_element(all.begin(), all.end(), [](const TimeSeries* one, const TimeSeries* other) {
            return one->times.size() < other->times.size();
        });
    for (TimeSeries* const one : all) {
        const std::size_t most = std::max(most_pairs / all.size(), one == longest ? too_many_for_a_count : 1);
        one->times.resize(std::min(one->times.size(), most));
        one->values.resize(one->times.size());
    }
}

} // namespace

FileFindings check_database(const std::filesystem::path& file, const WriteInputFile& write, const CheckOptions& options)
{
    FileFindings result;
    result.file = file.string();
    result.database = true;
    FindingList list(result, options.most_of_a_rule, options.on_finding, options.ignored);
    Model model;
    LoadOptions loading;
    loading.most_problems = most_row_problems;
    loading.on_progress = [&](std::uint64_t rows) {
        if (options.on_progress) {
            options.on_progress("load", rows, 0);
        }
    };
    try {
        model = load_model(file, loading);
    } catch (const StoreError& error) {
        if (error.problems.front().address.table.empty()) {
            throw;
        }
        for (const Finding& problem : error.problems) {
            list.add(problem);
        }
        return result;
    }
    result.remarks = check_model(list, model, model, write, options);
    return result;
}

FileFindings check_loaded_model(const Model& model, const WriteInputFile& write, const CheckOptions& options)
{
    FileFindings result;
    result.database = true;
    FindingList list(result, options.most_of_a_rule, options.on_finding, options.ignored);
    Model copy = model;
    const std::vector<TimeSeries*> all = series_of(copy);
    std::size_t pairs = 0;
    for (const TimeSeries* const one : all) {
        pairs += one->times.size();
    }
    if (pairs > options.most_pairs) {
        shorten(all, options.most_pairs);
        result.remarks = check_model(list, copy, model, write, options);
        result.remarks.emplace_back(
            "only the beginning of each series was looked at for losses; velm check looks at all");
    } else {
        result.remarks = check_model(list, copy, copy, write, options);
    }
    return result;
}

} // namespace velm
