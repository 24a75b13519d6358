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

std::size_t pairs_of(const Model& model)
{
    std::size_t pairs = 0;
    for (const SeriesItem& item : all_series(model)) {
        pairs += item.series->times.size();
    }
    return pairs;
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

Model beginning_of(Model& model, std::size_t most_pairs)
{
    constexpr std::size_t too_many_for_a_count = 100'000; // of six digits, which do not fit its field
    if (pairs_of(model) <= most_pairs) {
        return model;
    }
    std::vector<TimeSeries> whole;
    for (TimeSeries* const one : series_of(model)) {
        whole.push_back(std::exchange(*one, {}));
    }
    Model beginning = model;
    const std::vector<TimeSeries*> series = series_of(model);
    const std::vector<TimeSeries*> begun = series_of(beginning);
    const auto longest = std::ranges::max_element(whole, {}, [](const TimeSeries& one) { return one.times.size(); });
    for (std::size_t i = 0; i < whole.size(); ++i) {
        TimeSeries& one = whole[i];
        const bool shows_overflow = &one == &*longest && one.times.size() >= too_many_for_a_count;
        const std::size_t most = std::max(most_pairs / 4 / whole.size(), shows_overflow ? too_many_for_a_count : 1);
        const auto kept = static_cast<std::ptrdiff_t>(std::min(one.times.size(), most));
        begun[i]->times.assign(one.times.begin(), one.times.begin() + kept);
        begun[i]->values.assign(one.values.begin(), one.values.begin() + kept);
        *series[i] = std::move(one);
    }
    return beginning;
}

FileFindings check_loaded_model(const Model& model, Model& beginning, const WriteInputFile& write,
                                const CheckOptions& options)
{
    FileFindings result;
    result.database = true;
    FindingList list(result, options.most_of_a_rule, options.on_finding, options.ignored);
    if (pairs_of(beginning) == pairs_of(model)) {
        result.remarks = check_model(list, beginning, write, options);
        return result;
    }
    FileFindings of_values;
    std::future<std::vector<std::string>> remarks = std::async(std::launch::async, [&] {
        FindingList listed(of_values, options.most_of_a_rule, {}, options.ignored);
        return check_values(model, {}, [&](Finding finding) { listed.add(std::move(finding)); });
    });
    const ReadBack found = check_export(list, beginning, write, options);
    result.remarks = remarks.get();
    list.add_all(std::move(of_values));
    add_losses(list, found.losses);
    result.remarks.emplace_back("only the beginning of each series was looked at for losses; velm check looks at all");
    return result;
}

} // namespace velm
