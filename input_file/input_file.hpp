#pragma once

#include "model/address.hpp"
#include "model/model.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// The sections of a model input file in file order.
enum class Section {
    system_information,
    segments,
    flow_paths,
    flow_series,
    exchanges,
    boundaries,
    loads,
    time_functions,
    parameters,
    constants,
    initial_conditions,
};

/// Such as "flow paths".
[[nodiscard]] std::string_view name_of(Section section);

/// Where a field begins. Lines end at a line feed and count from 1, as do columns, which are bytes.
struct Place {
    std::uint64_t line = 0;
    std::uint64_t column = 0;

    bool operator==(const Place&) const = default;
};

/// A field as it stands in the file. The views hold for the duration of the call that delivers them.
struct FieldText {
    Section section{};
    Address address; ///< types are numbered by their order in the file
    Place place;
    std::string_view record; ///< without its line end
    std::string_view text;   ///< the field's columns in `record`; of a free-form number its characters without blanks
};

enum class ProblemKind {
    // All values are sure, but an export would write other bytes.
    line_end, ///< a record that does not end with CR LF; only the first is listed
    label,    ///< columns between fields hold another text than an export writes
    form,     ///< a number or a text written in a way that no export writes it
    // The model has 0 in place of the value.
    no_value,   ///< asterisks: the value was too wide for its field
    no_number,  ///< something else than a number
    not_finite, ///< INF, -INF, NaN
    no_single,  ///< beyond single precision, or an integer beyond 32 bits
    // All values were read, but a model cannot say what the file says.
    contradiction,   ///< a value that stands twice with two contents; counts that disagree
    negative_count,  ///< written by a host that has none of something
    missing_segment, ///< the number of a segment that the file does not have
    unstorable,      ///< anything else that a model cannot hold
    // Values are missing from the model: the rest of the section was not read.
    record,        ///< another record than the one that belongs here
    end_of_file,   ///< the file ends where a record belongs, or within one
    trailing_bytes ///< all sections were read, but the file goes on
};

inline constexpr std::size_t problem_kinds = static_cast<std::size_t>(ProblemKind::trailing_bytes) + 1;

/// True of the kinds that leave all values sure.
[[nodiscard]] constexpr bool is_about_form(ProblemKind kind)
{
    return kind <= ProblemKind::form;
}

/// True of the kinds that leave a model without a value.
[[nodiscard]] constexpr bool is_about_a_gap(ProblemKind kind)
{
    return kind >= ProblemKind::no_value && kind <= ProblemKind::no_single;
}

/// One thing wrong with an input file.
struct InputProblem {
    ProblemKind kind{};
    Section section{};
    Place place;
    std::string field;    ///< its name in words, or the record's where no field is meant
    std::string raw;      ///< the offending text, printable UTF-8
    std::string message;  ///< what is wrong with it
    std::string expected; ///< what belongs here

    /// "river.inp:12:1: segments, number of segments: '*****' holds no value; expected ..."
    [[nodiscard]] std::string text(std::string_view file) const;
};

struct ReadOptions {
    std::size_t most_problems = 100; ///< how many to list; all are counted

    /// Called with every field that holds a datum, in file order; nothing is spent on it when empty. A count, a label
    /// and a number that only repeats its row's place are no data.
    std::function<void(const FieldText&)> on_field;
    /// Called with every problem, also those that are not listed.
    std::function<void(const InputProblem&)> on_problem;
    /// Called now and then with the bytes read so far.
    std::function<void(std::uint64_t bytes)> on_progress;
};

/// What an input file says.
struct InputFile {
    Model model; ///< as far as it could be read
    std::vector<InputProblem> problems;
    std::uint64_t problem_count = 0;                           ///< also those that are not listed
    std::array<std::uint64_t, problem_kinds> problem_counts{}; ///< by kind
    std::vector<Address> gaps;                                 ///< the data without a value, where the model has 0
    bool whole = true;                                         ///< every section was read to its end
    std::uint64_t unused_instances = 0; ///< put into the model to keep the numbers of the used ones
    std::uint64_t bytes = 0;
    std::uint64_t records = 0;
};

/// Reads a model input file in one pass; the memory needed is that of the model. When no problem is found, exporting
/// the model gives the same bytes again. Throws std::system_error, which names the file, when it cannot be read.
[[nodiscard]] InputFile read_input_file(const std::filesystem::path& file, const ReadOptions& options = {});

/// The same from a stream in binary mode.
[[nodiscard]] InputFile read_input_file(std::istream& input, const ReadOptions& options = {});

/// Where each of `data` stands in the file, by reading it again; {0, 0} for one that is not there.
[[nodiscard]] std::vector<Place> places_of(const std::filesystem::path& file, std::span<const Address> data);

} // namespace velm
