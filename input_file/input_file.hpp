#pragma once

#include "model/finding.hpp"
#include "model/model.hpp"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iosfwd>
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

/// A field as it stands in the file. The views hold for the duration of the call that delivers them.
struct FieldText {
    Section section{};
    Address address{}; ///< types are numbered by their order in the file
    Place place{};
    std::string_view record{}; ///< without its line end
    std::string_view text{};   ///< the field's columns in `record`; of a free-form number its characters without blanks
    float real = 0;            ///< of a real, what is read
};

struct ReadOptions {
    std::size_t most_problems = 100; ///< how many to list; all are counted

    /// Called with every field that holds a datum, in file order; nothing is spent on it when empty. A label and a
    /// number that only repeats its row's place are no data. The number of a series' pairs has the series' address,
    /// without a pair's number and a column; the numbers of systems and segments have their tables'.
    std::function<void(const FieldText&)> on_field;
    /// Called with every problem, also those that are not listed.
    std::function<void(const Finding&)> on_problem;
    /// Called now and then with the bytes read so far.
    std::function<void(std::uint64_t bytes)> on_progress;
};

/// What an input file says.
struct InputFile {
    Model model;                        ///< as far as it could be read
    std::vector<Finding> problems;      ///< by the rules of form_rules.hpp
    std::uint64_t problem_count = 0;    ///< also those that are not listed
    std::uint64_t about_form = 0;       ///< those of them that leave all values sure
    std::uint64_t asterisks = 0;        ///< those of them that are data too wide for their field
    std::vector<Address> gaps;          ///< the data without a value, where the model has 0
    bool whole = true;                  ///< every section was read to its end
    std::uint64_t unused_instances = 0; ///< put into the model to keep the numbers of the used ones
    std::uint64_t bytes = 0;
    std::uint64_t records = 0;
};

/// Reads a model input file in one pass; the memory needed is that of the model. When no problem is found, exporting
/// the model gives the same bytes again. Throws std::system_error, which names the file, when it cannot be read.
[[nodiscard]] InputFile read_input_file(const std::filesystem::path& file, const ReadOptions& options = {});

/// The same from a stream in binary mode.
[[nodiscard]] InputFile read_input_file(std::istream& input, const ReadOptions& options = {});

} // namespace velm
