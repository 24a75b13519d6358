#include "model_check/datum_value.hpp"

#include "model_check/field_finding.hpp"
#include "model_store/sqlite/table_shape.hpp"
#include "tests/input_file/exported.hpp"

#include <algorithm>
#include <charconv>
#include <set>

#include <gtest/gtest.h>

namespace velm {
namespace {

std::string as_read(const DatumValue& value)
{
    if (value.integer != nullptr) {
        return std::to_string(*value.integer);
    }
    return value.real != nullptr ? std::to_string(*value.real) : value.text != nullptr ? *value.text : "nothing";
}

template <class Number>
std::string as_number(const std::string& text)
{
    Number number{};
    std::from_chars(text.data(), text.data() + text.size(), number);
    return std::to_string(number);
}

/// What the field's text says when it is of the value's kind.
std::string as_shown(const FieldText& field, const DatumValue& value)
{
    const std::string text = field_as_text(field.text.substr(0, field.text.find('\0')));
    return value.real != nullptr      ? as_number<float>(text)
           : value.integer != nullptr ? as_number<std::int32_t>(text)
                                      : text;
}

TEST(DatumValue, IsWhatTheFieldShows)
{
    const std::string bytes = content_of(std::filesystem::path(VELM_GOLDEN_FILES) / "everything.inp");
    Model model = read_text(bytes).model;
    std::set<std::string_view> tables;
    ReadOptions options;
    options.on_field = [&](const FieldText& field) {
        if (field.address.column.empty()) { // of a series as a whole
            return;
        }
        const DatumValue value = value_of(model, field.address);
        EXPECT_EQ(as_read(value), as_shown(field, value)) << field.address.table << ' ' << in_words(field.address);
        tables.insert(field.address.table);
    };
    (void)read_text(bytes, options);
    EXPECT_EQ(tables.size() + 1, model_tables().size()) // no file shows segment_place
        << "a table whose values no file shows, or that nobody looked at";
}

TEST(Address, NamesEachNumberOfAKey)
{
    for (const TableShape& table : model_tables()) {
        const auto words = words_of_key(table.name);
        const auto known = words.end() - std::count(words.begin(), words.end(), "");
        EXPECT_EQ(static_cast<std::size_t>(known - words.begin()), table.name == "model" ? 0 : table.keys)
            << table.name;
    }
    EXPECT_EQ(in_words({"boundary_value", "value", {2, 1, 40}}), "system 2, boundary 1, pair 40, column value");
    EXPECT_EQ(in_words({"initial_condition", "", {2}}), "system 2");
    EXPECT_EQ(in_words({"model", "print_interval", {1}}), "column print_interval");
}

TEST(DatumValue, IsNoneWhereTheModelHasNone)
{
    Model model;
    for (const TableShape& table : model_tables()) {
        const std::string_view column = table.columns.back();
        if (table.name != "model") {
            EXPECT_EQ(as_read(value_of(model, {table.name, column, {1, 1, 1}})), "nothing") << table.name;
        }
    }
}

} // namespace
} // namespace velm
