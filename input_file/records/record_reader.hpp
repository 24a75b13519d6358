#pragma once

#include "input_file/fields/real_text.hpp"
#include "input_file/form_rules.hpp"
#include "input_file/input_file.hpp"
#include "input_file/records/file_window.hpp"
#include "input_file/records/record.hpp"
#include "model/items.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velm {

/// Ends the reading of a section whose records cannot be followed any further; the problem has been reported.
struct SectionLost {};

/// How many items follow. Asterisks hide a count of 100,000 or more; then the items themselves say how many they are.
struct Count {
    std::int32_t number = 0;
    bool hidden = false;
    Place place{};
    std::string_view name{};
};

/// The columns of `Item` that the parts of a record hold, part by part; none for what is no number of it.
template <const Record& form, class Item>
consteval auto columns_of()
{
    std::array<const Column<Item>*, form.size()> columns{};
    for_each_table([&](TableId /*id*/, const auto& table) {
        if constexpr (std::is_same_v<typename std::remove_cvref_t<decltype(table)>::Item, Item>) {
            for (std::size_t part = 0; part < form.size(); ++part) {
                for (const Column<Item>& column : table.columns) {
                    if (form[part].table == table.name && form[part].name == column.name) {
                        columns[part] = &column;
                    }
                }
            }
        }
    });
    return columns;
}

/// Reads record after record and field after field, and reports what is wrong with them.
///
///     in.record_into<records::volume_factors>(model);
///
/// The numbers of a record go where its parts and the table of the model's columns say; other fields are asked for by
/// name, in the record's order without a search. One that has no value reads as 0. What a section needs of earlier ones
/// is kept here too. record_fields.cpp has the fields, record_counts.cpp the counts and what they announce,
/// record_reader.cpp the records and the problems.
class RecordReader {
public:
    RecordReader(std::istream& input, const ReadOptions& options, InputFile& read_so_far);

    void enter(Section section)
    {
        section_ = section;
        heading_ = {};
    }
    [[nodiscard]] bool at_end() { return window_.ahead().empty(); }
    void skip_line();

    /// Takes the next record. Reports columns between the fields that are not as they must be. Throws SectionLost when
    /// it is another record.
    void record(const Record& expected);
    /// Takes a record that is known to the last character.
    void known_record(std::string_view name, std::string_view known);
    /// Whether a record of this kind comes next, as far as its columns tell.
    [[nodiscard]] bool is_ahead(const Record& expected);

    /// The key of the rows that the data of the following fields belong to.
    void key(std::int32_t first, std::int32_t second = 0, std::int32_t third = 0) { key_ = {first, second, third}; }

    /// Puts the numbers of the current record, which is of that form, into the item whose columns they are.
    template <const Record& form, class Item>
    void data(Item& item)
    {
        static constexpr auto columns = columns_of<form, Item>();
        for (std::size_t part = 0; part < form.size(); ++part) {
            if (columns[part] != nullptr) {
                with_value(*columns[part], item, [&](auto& value) { read(form[part], columns[part]->rule, value); });
            }
        }
    }
    /// Takes records one after another, with their numbers.
    template <const Record&... forms, class Item>
    void record_into(Item& item)
    {
        ((record(forms), data<forms>(item)), ...);
    }

    [[nodiscard]] float real(std::string_view name) { return real_of(find(name)); }
    /// The field's bytes, until the next record is taken.
    [[nodiscard]] std::string_view text(std::string_view name);
    /// A name behind which an export puts one NUL; `whole` becomes the field's bytes.
    [[nodiscard]] std::string name(std::string_view name, std::string* whole = nullptr);

    /// A number that an export writes out of what it has written before; nothing is known before a lost section.
    void repeated(std::string_view name, std::optional<std::int32_t> known);
    void repeated_text(std::string_view name, std::string_view known);
    /// An integer that tells rows apart, or nothing when it cannot be read, which is reported.
    [[nodiscard]] std::optional<std::int32_t> identity(std::string_view name);
    /// Tells `on_field` of a datum that was read by identity().
    void deliver_identity(std::string_view name) { deliver(find(name)); }

    /// Takes a record that holds a count, or one that repeats a known count.
    [[nodiscard]] Count count(const Record& expected);
    /// Tells `on_field` where the rows are counted that an address means which has no column.
    void deliver_count(const Address& counted, const Count& count) const;
    [[nodiscard]] Count repeated_count(const Record& expected, std::optional<std::int32_t> known);
    /// Whether an item `number`, which begins with such a record, is still to come.
    [[nodiscard]] bool goes_on(const Count& count, std::int32_t number, const Record& first);
    /// Whether there are items, which all together have such a record before them.
    [[nodiscard]] bool any(const Count& count, const Record& before);
    [[nodiscard]] bool goes_on(const Count& count, std::int32_t number, std::string_view beginning_of_first);
    /// Whether an editor has dropped NULs of the file so far, or blanks of the current record, and a NUL with them.
    [[nodiscard]] bool has_lost_nuls() const { return nuls_are_lost_ || record_.data() == padded_.data(); }
    /// Call after the last item of a section: reports a count that is too low and throws SectionLost.
    void refuse_more(const Count& count, const Record& first);

    /// Takes as many pairs as `count` says; `row` has the fields time and value, the first two numbers are its key.
    void time_pairs(const Count& count, const Record& row, TimeSeries& series);
    /// Tells `on_field` where the series of such pairs is that the key's first two numbers mean: at its count, or where
    /// the current record has none.
    void deliver_series(const Record& row, const Count& count) const;
    [[nodiscard]] Count no_count() const { return {.place = {record_line_, 1}}; }

    /// Reports the current record's field, or the record where the name is empty.
    void report(const FindingRule& rule, std::string_view name, const std::string& message,
                const std::string& expected);
    void report_at(Place place, const FindingRule& rule, std::string_view field, std::string_view raw,
                   const std::string& message, const std::string& expected, const Address& address = {},
                   std::string remedy = {});
    [[nodiscard]] Place next_place() const { return {line_, 1}; }
    [[nodiscard]] std::uint64_t bytes() const { return window_.place(); }

    /// What sections know of earlier ones; nothing after a section that was lost.
    std::optional<std::int32_t> systems;
    std::optional<std::int32_t> segments;
    std::optional<std::int32_t> flow_fields;
    std::vector<std::string> system_names; ///< the fields' 30 bytes

    InputFile& result;

private:
    enum class LineEnd { complete, feed_alone, missing };
    struct Line {
        std::string_view text; ///< without its end
        std::size_t bytes = 0; ///< with its end
        LineEnd end = LineEnd::complete;
    };
    /// The last list of items that begin with such a record, for a remedy to name its count.
    struct Announced {
        const Record* first = nullptr;
        std::uint64_t line = 0; ///< of the count
        std::string_view name;  ///< of the count
        std::int32_t number = 0;
        std::int32_t follow = 0;   ///< items that were read
        std::uint64_t records = 0; ///< of the file when that was so
        bool one_record = false;   ///< an item is no more than that

        [[nodiscard]] bool over() const { return follow >= number; }
        [[nodiscard]] std::string in_words(const std::string& following) const;
    };

    [[nodiscard]] Line line_ahead();
    [[nodiscard]] bool another_follows(const Count& count, std::int32_t number, bool follows);
    [[nodiscard]] std::optional<Line> broken_line_ahead(const Record& expected);
    [[nodiscard]] std::optional<Line> trimmed_line_ahead(const Record& expected);
    void note(const Count& count, std::int32_t number, const Record& first);
    [[nodiscard]] std::string remedy_by_count(const char* otherwise);
    [[nodiscard]] bool is_behind(const Announced& list);
    [[nodiscard]] bool begins_item_around(std::uint64_t count_line, std::string_view line) const;
    void take(const Line& line);
    void take_row(const Record& expected);
    void take_columns(const Record& expected);
    [[nodiscard]] bool split_row(std::string_view line, std::size_t numbers, bool any_words);
    void check_columns();
    [[noreturn]] void lose(std::string_view name, const std::string& expected);

    [[nodiscard]] const Part& find(std::string_view name);
    [[nodiscard]] std::string_view text_of(const Part& part) const;
    [[nodiscard]] Place place_of(const Part& part) const;
    void deliver(const Part& part, float real = 0);
    [[nodiscard]] std::optional<std::int32_t> integer_of(const Part& part);
    [[nodiscard]] float real_of(const Part& part);
    [[nodiscard]] float settle(const Part& part, const RealText& real);
    void report_no_value(const Part& part);
    void report_gap(const FindingRule& rule, const Part& part, const std::string& message, const std::string& expected);
    void read(const Part& part, Rule rule, std::int32_t& value);
    void read(const Part& part, Rule /*rule*/, float& value) { value = real_of(part); }
    static void read(const Part& /*part*/, Rule /*rule*/, bool& /*value*/) {}
    static void read(const Part& /*part*/, Rule /*rule*/, std::string& /*value*/) {}

    FileWindow window_;
    const ReadOptions& options_;
    Section section_ = Section::system_information;
    std::uint64_t line_ = 1;
    bool line_end_reported_ = false;

    const Record* form_ = nullptr;
    std::string_view record_;
    std::uint64_t record_line_ = 0;
    std::array<std::string_view, 4> numbers_{}; ///< of a row
    bool row_in_form_ = true;
    bool nuls_are_lost_ = false;
    bool unended_ = false;             ///< the record has no line end, so it may be cut
    std::string padded_;               ///< a record whose blanks were trimmed
    std::vector<Announced> announced_; ///< one for each kind of list
    std::string_view heading_;         ///< with which the items of the section begin; empty where a record does
    const char* split_line_ = nullptr; ///< the line ahead, when numbers_ are its numbers
    std::size_t split_numbers_ = 0;
    std::size_t next_part_ = 0;
    RowNumbers key_{};
    std::vector<float> times_;
    std::vector<float> values_;
};

} // namespace velm
