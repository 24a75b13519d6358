#pragma once

#include "session/exchange.hpp"

#include <rapidjson/document.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace velm {

/// What is wrong with a line of a session, and where: columns are bytes, counted from 1.
class LineError : public std::runtime_error {
public:
    LineError(std::size_t where, const std::string& words) : std::runtime_error(words), column(where) {}
    std::size_t column;
};

/// The members of a line of JSON. Whatever is not as expected throws LineError, which names the member that was taken
/// last and the column in which it begins.
class SessionLine {
public:
    using Value = rapidjson::Value;

    /// `line` outlives this.
    explicit SessionLine(std::string_view line);

    [[nodiscard]] bool has(const char* name) const { return json_.HasMember(name); }
    [[nodiscard]] const Value& member(const char* name);
    /// A member that must be a list of so many values.
    [[nodiscard]] const Value& list(const char* name, rapidjson::SizeType size);
    /// Takes a member that must be this number.
    void expect_count(const char* name, std::uint64_t number);
    /// Refuses members that nobody has taken.
    void end() const;

    [[nodiscard]] std::int32_t integer(const Value& value) const;
    [[nodiscard]] float real(const Value& value) const;
    /// One byte for each character.
    [[nodiscard]] std::string text(const Value& value) const;

    /// `words` say what is expected.
    [[noreturn]] void refuse(const std::string& words, const Value& found) const;

private:
    std::string_view line_;
    rapidjson::Document json_;
    std::string member_; ///< the last
    rapidjson::SizeType taken_ = 0;
};

} // namespace velm
