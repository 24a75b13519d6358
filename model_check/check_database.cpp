#include "model_check/check_file.hpp"

#include "input_file/form_rules.hpp"
#include "model/items.hpp"
#include "model/tables.hpp"
#include "model_check/check_values.hpp"
#include "model_check/read_back.hpp"
#include "model_store/model_store.hpp"

#include <algorithm>
#include <fstream>
#include <future>
#include <optional>
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

/// The reals of a series, or of a parameter.
struct RealLists {
    std::vector<float>* times; ///< null of a parameter, which has a value for each segment
    std::vector<float>* values;
};

std::vector<RealLists> real_lists_of(Model& model)
{
    std::vector<RealLists> all;
    for_each_item(model, [&](const auto& /*table*/, const RowNumbers& /*numbers*/, auto& item) {
        if constexpr (requires { item.series; }) {
            all.push_back({&item.series.times, &item.series.values});
        } else if constexpr (requires { item.values; }) {
            all.push_back({nullptr, &item.values});
        }
    });
    return all;
}

/// How many reals a segment has of its own, but for parameters.
std::size_t reals_of_a_segment(const Model& model)
{
    return std::size(tables::segment.columns) + 2 * model.systems.size();
}

std::vector<float> beginning_of(const std::vector<float>& list, std::size_t most)
{
    return {list.begin(), list.begin() + static_cast<std::ptrdiff_t>(std::min(list.size(), most))};
}

/// A copy with the first of its segments only.
Model first_segments_of(const Model& model, std::size_t segments)
{
    Model first = model;
    first.segments.resize(std::min(segments, first.segments.size()));
    for (System& system : first.systems) {
        system.initial_conditions.resize(first.segments.size());
    }
    return first;
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

std::optional<Model> beginning_of(Model& model, std::size_t most_reals)
{
    constexpr std::size_t too_many_for_a_count = 100'000; // of six digits, which do not fit its field
    const std::vector<RealLists> lists = real_lists_of(model);
    std::size_t reals = model.segments.size() * reals_of_a_segment(model);
    for (const RealLists& list : lists) {
        reals += list.values->size() * (list.times == nullptr ? 1 : 2);
    }
    if (reals <= most_reals) {
        return {};
    }
    std::vector<TimeSeries> whole;
    for (const RealLists& list : lists) {
        whole.push_back(
            {list.times == nullptr ? std::vector<float>() : std::move(*list.times), std::move(*list.values)});
    }
    const std::size_t room = most_reals / 4;
    Model beginning = first_segments_of(model, room / (reals_of_a_segment(model) + lists.size()) + 1);
    const std::vector<RealLists> begun = real_lists_of(beginning);
    const auto longest = std::ranges::max_element(whole, {}, [](const TimeSeries& one) { return one.times.size(); });
    for (std::size_t i = 0; i < lists.size(); ++i) {
        TimeSeries& one = whole[i];
        if (lists[i].times == nullptr) {
            *begun[i].values = beginning_of(one.values, beginning.segments.size());
        } else {
            const bool shows_overflow = &one == &*longest && one.times.size() >= too_many_for_a_count;
            const std::size_t most = shows_overflow ? too_many_for_a_count : room / 2 / lists.size() + 1;
            *begun[i].times = beginning_of(one.times, most);
            *begun[i].values = beginning_of(one.values, most);
            *lists[i].times = std::move(one.times);
        }
        *lists[i].values = std::move(one.values);
    }
    return beginning;
}

FileFindings check_loaded_model(const Model& model, std::optional<Model>& beginning, const WriteInputFile& write,
                                const CheckOptions& options)
{
    FileFindings result;
    result.database = true;
    FindingList list(result, options.most_of_a_rule, options.on_finding, options.ignored);
    if (!beginning) {
        result.remarks = check_model(list, beginning.emplace(model), write, options);
        return result;
    }
    FileFindings of_values;
    std::future<std::vector<std::string>> remarks = std::async(std::launch::async, [&] {
        FindingList listed(of_values, options.most_of_a_rule, {}, options.ignored);
        return check_values(model, {}, [&](Finding finding) { listed.add(std::move(finding)); });
    });
    auto ignored = options.ignored;
    ignored.emplace(form_rules::missing_segment.code); // what lies behind the first segments
    FindingList of_export(result, options.most_of_a_rule, options.on_finding, std::move(ignored));
    const ReadBack found = check_export(of_export, *beginning, write, options);
    result.remarks = remarks.get();
    list.add_all(std::move(of_values));
    add_losses(list, found.losses);
    result.remarks.emplace_back(
        "only the first segments and the beginning of each series were looked at for losses; velm check looks at all");
    return result;
}

} // namespace velm
