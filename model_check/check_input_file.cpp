#include "model_check/check_file.hpp"

#include "input_file/section_of.hpp"
#include "model_check/check_meaning.hpp"
#include "model_check/finding_parts.hpp"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace velm {

namespace {

/// A finding about a value of the model, whose place in the file is not known yet.
struct ValueFinding {
    FindingKind kind{};
    Address address;
    std::string message;
};

void add_values(FindingList& list, const std::filesystem::path& file, std::vector<ValueFinding> values)
{
    if (values.empty()) {
        return;
    }
    std::vector<Address> data;
    data.reserve(values.size());
    for (const ValueFinding& value : values) {
        data.push_back(value.address);
    }
    const std::vector<Place> places = places_of(file, data);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const Address& address = values[i].address;
        list.add({.kind = values[i].kind,
                  .message = std::move(values[i].message),
                  .place = places[i],
                  .section = std::string(name_of(section_of(address.table, address.column))),
                  .field = field_in_words(address)});
    }
}

} // namespace

FileFindings check_input_file(const std::filesystem::path& file, const CheckOptions& options)
{
    FileFindings result;
    result.file = file.string();
    FindingList list(result, options.most_of_a_kind);
    ReadOptions reading;
    reading.most_problems = 0;
    reading.on_problem = [&](const InputProblem& problem) { list.add(finding_of(problem)); };
    reading.on_field = [&](const FieldText& field) {
        if (touches_its_neighbour(field)) {
            list.add({.kind = FindingKind::touching_fields,
                      .message = "follows its neighbour without a blank",
                      .place = field.place,
                      .section = std::string(name_of(field.section)),
                      .field = field_in_words(field.address),
                      .text = field_as_text(field.text)});
        }
    };
    const InputFile read = read_input_file(file, reading);
    std::vector<ValueFinding> values;
    if (read.whole) { // with records missing, nothing can be said about how values belong together
        check_meaning(read.model, [&](FindingKind kind, const Address& address, std::string message) {
            if (kind != FindingKind::missing_segment &&
                !is_near_a_gap(address, read.gaps)) { // the reader reports those
                values.push_back({kind, address, std::move(message)});
            }
        });
    }
    add_values(list, file, std::move(values));
    std::stable_sort(result.findings.begin(), result.findings.end(), [](const Finding& one, const Finding& other) {
        return std::pair(one.place.line, one.place.column) < std::pair(other.place.line, other.place.column);
    });
    return result;
}

} // namespace velm
