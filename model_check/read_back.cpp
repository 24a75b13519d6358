#include "model_check/read_back.hpp"

#include "input_file/form_rules.hpp"
#include "input_file/input_file.hpp"
#include "model/real_in_words.hpp"
#include "model_check/datum_value.hpp"
#include "model_check/field_finding.hpp"
#include "model_check/loss_rules.hpp"

#include <string>
#include <utility>

namespace velm {

namespace {

Finding in_words(const FindingRule& rule, const Loss& loss)
{
    const std::string remedy = loss.remedy();
    const bool may_matter_little = &rule == &loss_rules::digits_lost && !remedy.empty();
    return {.rule = &rule,
            .address = loss.address,
            .message = loss.in_words(),
            .value = real_in_words(loss.value),
            .text = loss.text,
            .remedy = (may_matter_little ? "nothing, when the difference does not matter; else " : "") + remedy};
}

void add(FindingList& list, const FindingRule& rule, const LossList& losses)
{
    for (const Loss& loss : losses.worst) {
        list.add(in_words(rule, loss));
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

} // namespace

ReadBack read_back(std::istream& exported, Model& model, FindingList& list,
                   const std::function<void(std::uint64_t bytes)>& on_progress)
{
    std::function<void(const FindingRule&, const Loss&)> add_each; // of all, none is kept to find the worst
    if (list.most() == all_findings) {
        add_each = [&](const FindingRule& rule, const Loss& loss) { list.add(in_words(rule, loss)); };
    }
    LossCount losses(model, list.most(), add_each);
    const ExportedTypes types(model);
    ReadOptions reading;
    reading.most_problems = 0;
    reading.on_progress = on_progress;
    reading.on_problem = [&](const Finding& problem) { list.add(of_database(problem, model, types)); };
    reading.on_field = [&](const FieldText& field) {
        losses.see(field);
        if (std::optional<Finding> finding = finding_of(field)) {
            finding->address = types.in_model(field.address);
            finding->place = {};
            finding->section = {};
            list.add(*std::move(finding));
        }
    };
    ReadBack found;
    for (const Address& gap : read_input_file(exported, reading).gaps) {
        found.gaps.push_back(types.in_model(gap));
    }
    found.losses = losses.result();
    return found;
}

void add_losses(FindingList& list, const Losses& losses)
{
    add(list, loss_rules::value_vanishes, losses.vanishing);
    add(list, loss_rules::value_changed, losses.changed);
    add(list, loss_rules::digits_lost, losses.digits_lost);
    add_cut_texts(list, losses);
}

} // namespace velm
