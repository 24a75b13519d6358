#pragma once

#include "json_text/json_parts.hpp"

#include <rapidjson/prettywriter.h>

#include <concepts>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace velm {

/// Writes one JSON value, indented for people.
///
///     JsonText json;
///     json.begin_object();
///     json.put("file", "river.inp");
///     json.end_object();
///     json.text();
class JsonText : public JsonParts<rapidjson::PrettyWriter<rapidjson::StringBuffer>> {
public:
    JsonText() { json_.SetIndent(' ', 2); }

    /// Members. A byte of a text that is no UTF-8 becomes a question mark; what could steer a terminal
    /// or turn a line around is escaped.
    void put(std::string_view member, std::string_view value);
    void put(std::string_view member, std::integral auto value)
    {
        name(member);
        json_.Uint64(static_cast<std::uint64_t>(value));
    }
    void put(std::string_view member, float value); ///< with the digits of single precision: 0.1 for 0.1F
    void put(std::string_view member, std::int64_t value);
    using JsonParts::put;
    /// Left out when the text is empty.
    void put_if_any(std::string_view member, std::string_view value);

    /// What is written so far, with a line end.
    [[nodiscard]] std::string text() const;
    /// Writes what is there so far and forgets it, so that a long value takes no memory.
    void flush_to(std::ostream& out);
};

} // namespace velm
