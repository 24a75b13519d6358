#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// What is wrong with a line of a session, and where: columns are bytes, counted from 1.
class LineError : public std::runtime_error {
public:
    LineError(std::size_t where, const std::string& words) : std::runtime_error(words), column(where) {}
    std::size_t column;
};

/// A line of JSON, read from left to right. Each function takes the next piece and throws LineError when another
/// stands there.
class JsonLine {
public:
    /// Splits `line`, which is taken apart: the texts given out stand in it. Throws LineError when it is no JSON,
    /// and when it has more pieces than any exchange.
    void split(std::string& line);

    void open_object() { (void)take(Piece::open_object, "an object"); }
    void close_object() { (void)take(Piece::close_object, "the object's end"); }
    void open_list() { (void)take(Piece::open_list, "a list"); }
    void close_list() { (void)take(Piece::close_list, "the list's end"); }
    void member(std::string_view name);
    [[nodiscard]] std::int32_t integer();
    [[nodiscard]] std::uint64_t count();
    [[nodiscard]] std::string_view text();
    /// Throws LineError when pieces are left.
    void end();

    [[nodiscard]] bool is_member(std::string_view name) const;
    [[nodiscard]] bool is_list_end() const { return next().piece == Piece::close_list; }

    /// Where the next piece begins.
    [[nodiscard]] std::size_t column() const { return next().column; }
    /// Throws LineError for the piece that was taken last.
    [[noreturn]] void refuse(const std::string& words) const { throw LineError(last().column, words); }

private:
    enum class Piece : std::uint8_t {
        open_object,
        close_object,
        open_list,
        close_list,
        name,
        text,
        integer,
        other,
        end
    };
    struct Token {
        Piece piece = Piece::end;
        std::uint32_t column = 0;
        std::int64_t number = 0;
        std::string_view text;
    };
    struct Splitter;

    [[nodiscard]] const Token& next() const { return tokens_[next_]; }
    [[nodiscard]] const Token& last() const { return tokens_[next_ == 0 ? 0 : next_ - 1]; }
    const Token& take(Piece piece, const char* expected);

    std::vector<Token> tokens_; ///< the last is the end
    std::size_t next_ = 0;
};

} // namespace velm
