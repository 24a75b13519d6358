#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>

namespace velm {

/// Makes a session's lines, piece by piece, as JSON. Made for speed: an export asks millions of times.
class LineWriter {
public:
    void clear() { size_ = 0; }
    [[nodiscard]] std::string_view line() const { return {characters_.get(), size_}; }

    void put(char json)
    {
        make_room(1);
        characters_[size_++] = json;
    }
    void put(std::string_view json)
    {
        make_room(json.size());
        put_without_check(json);
    }
    void put_integer(std::int64_t value);
    /// "1500 44bb8000": the shortest decimals that give the same real, and its bits.
    void put_real(float value);
    /// Every byte as the character of its number: printable ones as they are, others as \u00NN.
    void put_text(std::string_view bytes);
    /// With commas between them.
    void put_reals(std::span<const float> reals);
    /// The ranges, counted from 1, in which both texts, of the same size, are the same: [[1,4],[8,30]].
    void put_equal_ranges(std::string_view before, std::string_view after);

private:
    void make_room(std::size_t size)
    {
        if (size > capacity_ - size_) {
            grow(size);
        }
    }
    void grow(std::size_t size);
    void put_without_check(std::string_view json)
    {
        std::memcpy(characters_.get() + size_, json.data(), json.size());
        size_ += json.size();
    }
    void put_byte(unsigned char code);
    void put_real_without_check(float value);

    std::unique_ptr<char[]> characters_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace velm
