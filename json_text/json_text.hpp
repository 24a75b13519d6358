#pragma once

#include <concepts>
#include <cstdint>
#include <iosfwd>
#include <memory>
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
class JsonText {
public:
    JsonText();
    ~JsonText();
    JsonText(const JsonText&) = delete;
    JsonText& operator=(const JsonText&) = delete;
    JsonText(JsonText&&) = delete;
    JsonText& operator=(JsonText&&) = delete;

    /// Objects and arrays; with a name, as that member of the object that is open.
    void begin_object(std::string_view member = {});
    void end_object();
    void begin_array(std::string_view member = {});
    void end_array();

    /// Members. A byte of a text that is no UTF-8 becomes a question mark; what could steer a terminal
    /// or turn a line around is escaped.
    void put(std::string_view member, std::string_view value);
    void put(std::string_view member, std::integral auto value)
    {
        put_count(member, static_cast<std::uint64_t>(value));
    }
    void put(std::string_view member, float value); ///< with the digits of single precision: 0.1 for 0.1F
    void put(std::string_view member, std::int64_t value);
    void put(std::string_view member, double value); ///< null for what is not finite
    /// Left out when the text is empty.
    void put_if_any(std::string_view member, std::string_view value);

    /// What is written so far, with a line end.
    [[nodiscard]] std::string text() const;
    /// Writes what is there so far and forgets it, so that a long value takes no memory.
    void flush_to(std::ostream& out);

private:
    void name(std::string_view member);
    void put_count(std::string_view member, std::uint64_t value);

    struct Writer;
    std::unique_ptr<Writer> writer_;
};

} // namespace velm
