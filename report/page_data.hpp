#pragma once

#include "json_text/json_parts.hpp"

#include <rapidjson/writer.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velm {

/// Writes the page's data: one JSON text, and the single-precision numbers that it refers to. docs/report.md describes
/// both.
class PageData : public JsonParts<rapidjson::Writer<rapidjson::StringBuffer>> {
public:
    PageData() { begin_object(); }

    using JsonParts::put;
    void put(std::string_view member, bool value);
    void put(std::string_view member, const char* text) { put_utf8(member, text); }
    void put_utf8(std::string_view member, std::string_view text);
    /// Of a text of the model.
    void put_latin1(std::string_view member, std::string_view text);
    template <class Number>
    void put_count(std::string_view member, Number number)
    {
        name(member);
        json_.Uint64(static_cast<std::uint64_t>(number));
    }
    /// One number where all are the same, else where they lie among the packed ones. The same numbers are kept once.
    void put_numbers(std::string_view member, std::span<const float> numbers);
    /// `number(i)` for each i below `count`.
    template <class Number>
    void put_numbers(std::string_view member, std::size_t count, const Number& number)
    {
        row_.clear();
        for (std::size_t i = 0; i < count; ++i) {
            row_.push_back(static_cast<float>(number(i)));
        }
        put_numbers(member, row_);
    }

    /// Ends the object that is the whole. No character in it can end the element that it stands in.
    [[nodiscard]] std::string json();
    [[nodiscard]] std::string packed_numbers() const; ///< little-endian, base64

private:
    std::vector<float> numbers_;
    std::vector<float> row_;
    std::unordered_multimap<std::size_t, std::pair<std::size_t, std::size_t>> runs_; ///< begin and count, by hash
};

} // namespace velm
