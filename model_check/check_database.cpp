#include "model_check/check_file.hpp"

#include "model/items.hpp"
#include "model_check/check_values.hpp"
#include "model_check/read_back.hpp"
#include "model_store/model_store.hpp"
#include "water_balance/series_list.hpp"

#include <algorithm>
#include <fstream>
#include <future>
#include <utility>

namespace velm {

namespace {

constexpr std::size_t most_row_problems = 10'000;

/// Looks for what the export of a model loses, and gives the model the values of the export.
ReadBack check_export(FindingList& list, Model& model, const WriteInputFile& write, const CheckOptions& options)
{
    const std::filesystem::path file = write(model);
    const std::uintmax_t size = std::filesystem::file_size(file);
    std::ifstream stream(file, std::ios::binary);
    return read_back(stream, model, list, [&](std::uint64_t bytes) {
        if (options.on_progress) {
            options.on_progress("check", bytes, size);
        }
    });
}

/// Looks for losses, and checks the values of the export, which the model gets. Returns what was left out.
std::vector<std::string> check_model(FindingList& list, Model& model, const WriteInputFile& write,
                                     const CheckOptions& options)
{
    const ReadBack found = check_export(list, model, write, options);
    std::vector<std::string> remarks =
        check_values(model, found.gaps, [&](Finding finding) { list.add(std::move(finding)); });
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
    result.remarks = check_model(list, model, write, options);
    return result;
}

FileFindings check_loaded_model(const Model& model, const WriteInputFile& write, const CheckOptions& options)
{
    FileFindings result;
    result.database = true;
    FindingList list(result, options.most_of_a_rule, options.on_finding, options.ignored);
    std::size_t pairs = 0;
    for (const SeriesItem& item : all_series(model)) {
        pairs += item.series->times.size();
    }
    if (pairs <= options.most_pairs) {
        Model copy = model;
        result.remarks = check_model(list, copy, write, options);
        return result;
    }
    FileFindings of_values;
    std::future<std::vector<std::string>> remarks = std::async(std::launch::async, [&] {
        FindingList listed(of_values, options.most_of_a_rule, {}, options.ignored);
        return check_values(model, {}, [&](Finding finding) { listed.add(std::move(finding)); });
    });
    Model copy = model;
    shorten(series_of(copy), options.most_pairs);
    const ReadBack found = check_export(list, copy, write, options);
    result.remarks = remarks.get();
    list.add_all(std::move(of_values));
    add_losses(list, found.losses);
    result.remarks.emplace_back("only the beginning of each series was looked at for losses; velm check looks at all");
    return result;
}

} // namespace velm
