#include "model_check/check_file.hpp"

#include "model/real_in_words.hpp"
#include "model_check/check_meaning.hpp"
#include "model_check/datum_value.hpp"
#include "model_check/finding_parts.hpp"
#include "model_check/losses.hpp"
#include "model_store/model_store.hpp"

#include <algorithm>
#include <string>
#include <utility>

namespace velm {

namespace {

constexpr std::size_t most_row_problems = 10'000;

Finding finding_at(const Address& address, FindingKind kind, std::string message)
{
    return {.kind = kind,
            .message = std::move(message),
            .table = std::string(address.table),
            .row = row_in_words(address),
            .column = std::string(address.column)};
}

void add_rows(FindingList& list, const StoreError& error)
{
    for (const StoreProblem& problem : error.problems) {
        std::string message = problem.value.empty() ? problem.message : "'" + problem.value + "' " + problem.message;
        message += problem.remedy.empty() ? "" : ", " + problem.remedy;
        list.add({.kind = FindingKind::database_row,
                  .message = std::move(message),
                  .table = problem.table,
                  .row = problem.row,
                  .column = problem.column,
                  .value = problem.value});
    }
}

std::string number_in_words(const DatumValue& value)
{
    return value.real != nullptr ? real_in_words(*value.real) : std::to_string(*value.integer);
}

/// Of values that the file which will be written does not show, at their places in the database.
void add_gaps(FindingList& list, const InputFile& written, const Model& model)
{
    const ExportedTypes types(model);
    for (const Address& gap : written.gaps) {
        const Address address = types.in_model(gap);
        const std::string value = number_in_words(value_of(model, address));
        Finding finding = finding_at(address, FindingKind::field_overflow, value + " is too wide for its field");
        finding.value = value;
        list.add(std::move(finding));
    }
}

void add_losses(FindingList& list, FindingKind kind, const LossList& losses)
{
    for (const Loss& loss : losses.worst) {
        Finding finding = finding_at(loss.address, kind, loss.in_words());
        finding.value = real_in_words(loss.value);
        finding.text = loss.text;
        list.add(std::move(finding));
    }
    list.count(kind, losses.count - losses.worst.size());
}

void add_cut_texts(FindingList& list, const Losses& losses)
{
    for (const CutText& cut : losses.cut_texts) {
        const std::string text = field_as_text(cut.text);
        Finding finding =
            finding_at(cut.address, FindingKind::text_cut,
                       "of " + std::to_string(cut.whole.size()) + " characters the file has '" + text + "'");
        finding.value = field_as_text(cut.whole);
        finding.text = text;
        list.add(std::move(finding));
    }
    list.count(FindingKind::text_cut, losses.cut - losses.cut_texts.size());
}

/// Times that differ in the database may be the same in the file, whose fields have fewer digits.
void add_repeated_times(FindingList& list, const InputFile& written, const Model& model)
{
    const ExportedTypes types(model);
    if (!written.whole) {
        return;
    }
    check_meaning(written.model, [&](FindingKind kind, const Address& address, const std::string& message) {
        if (kind == FindingKind::time_repeats && !is_near_a_gap(address, written.gaps)) {
            list.add(finding_at(types.in_model(address), kind, "in the file, " + message));
        }
    });
}

void check_export(FindingList& list, const Model& model, const std::filesystem::path& exported, std::size_t most)
{
    LossCount losses(model, most);
    const ExportedTypes types(model);
    ReadOptions reading;
    reading.most_problems = 0;
    reading.on_problem = [&](const InputProblem& problem) {
        if (!is_about_a_gap(problem.kind)) {
            list.add(finding_of(problem));
        }
    };
    reading.on_field = [&](const FieldText& field) {
        losses.see(field);
        if (touches_its_neighbour(field)) {
            Finding finding = finding_at(types.in_model(field.address), FindingKind::touching_fields,
                                         "follows its neighbour in the file without a blank");
            finding.text = field_as_text(field.text);
            list.add(std::move(finding));
        }
    };
    const InputFile written = read_input_file(exported, reading);
    add_gaps(list, written, model);
    add_repeated_times(list, written, model);
    const Losses found = losses.result();
    add_losses(list, FindingKind::value_vanishes, found.vanishing);
    add_losses(list, FindingKind::value_changed, found.changed);
    add_losses(list, FindingKind::digits_lost, found.digits_lost);
    add_cut_texts(list, found);
}

} // namespace

FileFindings check_database(const std::filesystem::path& file, const WriteInputFile& write, const CheckOptions& options)
{
    FileFindings result;
    result.file = file.string();
    result.database = true;
    FindingList list(result, options.most_of_a_kind);
    Model model;
    LoadOptions loading;
    loading.most_problems = most_row_problems;
    try {
        model = load_model(file, loading);
    } catch (const StoreError& error) {
        if (error.problems.front().table.empty()) {
            throw;
        }
        add_rows(list, error);
        return result;
    }
    check_meaning(model, [&](FindingKind kind, const Address& address, std::string message) {
        if (kind != FindingKind::time_repeats) { // found in the file
            list.add(finding_at(address, kind, std::move(message)));
        }
    });
    check_export(list, model, write(model), options.most_of_a_kind);
    return result;
}

} // namespace velm
