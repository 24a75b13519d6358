#include "model_check/check_file.hpp"

#include "input_file/form_rules.hpp"
#include "model/real_in_words.hpp"
#include "model_check/check_values.hpp"
#include "model_check/datum_value.hpp"
#include "model_check/field_finding.hpp"
#include "model_check/loss_rules.hpp"
#include "model_check/losses.hpp"
#include "model_store/model_store.hpp"

#include <algorithm>
#include <string>
#include <utility>

namespace velm {

namespace {

constexpr std::size_t most_row_problems = 10'000;

void add_losses(FindingList& list, const FindingRule& rule, const LossList& losses)
{
    for (const Loss& loss : losses.worst) {
        list.add({.rule = &rule,
                  .address = loss.address,
                  .message = loss.in_words(),
                  .value = real_in_words(loss.value),
                  .text = loss.text});
    }
    list.count(rule, losses.count - losses.worst.size());
}

void add_cut_texts(FindingList& list, const Losses& losses)
{
    for (const CutText& cut : losses.cut_texts) {
        const std::string text = field_as_text(cut.text);
        list.add({.rule = &loss_rules::text_cut,
                  .address = cut.address,
                  .message = "of " + std::to_string(cut.whole.size()) + " characters the file has '" + text + "'",
                  .value = field_as_text(cut.whole),
                  .text = text});
    }
    list.count(loss_rules::text_cut, losses.cut - losses.cut_texts.size());
}

/// A problem in the file which will be written. A value that it does not show is named at its place in the database.
Finding of_database(const Finding& problem, Model& model, const ExportedTypes& types)
{
    const Address address = types.in_model(problem.address);
    const DatumValue datum = value_of(model, address);
    if (problem.rule != &form_rules::field_overflow || (datum.real == nullptr && datum.integer == nullptr)) {
        return problem;
    }
    const std::string value = datum.real != nullptr ? real_in_words(*datum.real) : std::to_string(*datum.integer);
    return {.rule = &form_rules::field_overflow,
            .address = address,
            .message = value + " is too wide for its field",
            .value = value};
}

/// Looks for fields that say nothing or touch, and gives the model the values that the export shows. Returns what it
/// loses of them; `gaps` gets the data of which it shows nothing.
Losses check_export(FindingList& list, Model& model, const std::filesystem::path& exported, const CheckOptions& options,
                    std::vector<Address>& gaps)
{
    LossCount losses(model, list.most());
    const ExportedTypes types(model);
    ReadOptions reading;
    reading.most_problems = 0;
    reading.on_progress = [&](std::uint64_t bytes) {
        if (options.on_progress) {
            options.on_progress("check", bytes, std::filesystem::file_size(exported));
        }
    };
    reading.on_problem = [&](const Finding& problem) { list.add(of_database(problem, model, types)); };
    reading.on_field = [&](const FieldText& field) {
        losses.see(field);
        if (touches_its_neighbour(field)) {
            list.add({.rule = &form_rules::touching_fields,
                      .address = types.in_model(field.address),
                      .message = "follows its neighbour in the file without a blank",
                      .text = field_as_text(field.text)});
        }
    };
    for (const Address& gap : read_input_file(exported, reading).gaps) {
        gaps.push_back(types.in_model(gap));
    }
    return losses.result();
}

/// Looks for what the export of `exported` loses, and gives it the values of the export; checks those of `model`, which
/// may be the same.
void check_model(FindingList& list, Model& exported, const Model& model, const WriteInputFile& write,
                 const CheckOptions& options)
{
    std::vector<Address> gaps;
    const Losses losses = check_export(list, exported, write(exported), options, gaps);
    check_values(model, &model == &exported ? gaps : std::vector<Address>(),
                 [&](Finding finding) { list.add(std::move(finding)); });
    add_losses(list, loss_rules::value_vanishes, losses.vanishing);
    add_losses(list, loss_rules::value_changed, losses.changed);
    add_losses(list, loss_rules::digits_lost, losses.digits_lost);
    add_cut_texts(list, losses);
}

std::vector<TimeSeries*> series_of(Model& model)
{
    std::vector<TimeSeries*> all;
    const auto add = [&all](auto& items) {
        for (auto& item : items) {
            all.push_back(&item.series);
        }
    };
    for (FlowField& field : model.flow_fields) {
        add(field.functions);
    }
    for (ExchangeField& field : model.exchange_fields) {
        add(field.functions);
    }
    for (System& system : model.systems) {
        add(system.boundaries.items);
        add(system.loads.items);
    }
    for (auto& type : model.time_function_types) {
        add(type.instances);
    }
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
    check_model(list, model, model, write, options);
    result.remarks = remarks_on(model);
    return result;
}

FileFindings check_loaded_model(const Model& model, const WriteInputFile& write, const CheckOptions& options)
{
    FileFindings result;
    result.database = true;
    FindingList list(result, options.most_of_a_rule, options.on_finding, options.ignored);
    result.remarks = remarks_on(model);
    Model copy = model;
    const std::vector<TimeSeries*> all = series_of(copy);
    std::size_t pairs = 0;
    for (const TimeSeries* const one : all) {
        pairs += one->times.size();
    }
    if (pairs > options.most_pairs) {
        shorten(all, options.most_pairs);
        check_model(list, copy, model, write, options);
        result.remarks.push_back("only the beginning of each series was looked at for losses; velm check looks at all");
    } else {
        check_model(list, copy, copy, write, options);
    }
    return result;
}

} // namespace velm
