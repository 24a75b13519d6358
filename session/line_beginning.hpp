#pragma once

#include <array>
#include <cstddef>
#include <cstring>

namespace velm {

/// {"exchange":1 and so on: what each line begins with, counted up as the text that it is. Counting up long before the
/// next use is faster than just before: a processor waits when it reads in one piece what it has written in another.
class LineBeginning {
public:
    static constexpr std::size_t room = 32;

    void count_up()
    {
        std::size_t digit = size_ - 1;
        while (text_[digit] == '9') {
            text_[digit--] = '0';
        }
        if (digit >= caption) {
            ++text_[digit];
        } else { // 99 has become 00
            text_[caption] = '1';
            text_[size_++] = '0';
        }
    }

    /// Writes room characters, of which those to the end that is returned count and NULs follow.
    char* put(char* to) const
    {
        std::memcpy(to, text_.data(), room);
        return to + size_;
    }

private:
    static constexpr std::size_t caption = 12;

    std::array<char, room> text_{"{\"exchange\":1"};
    std::size_t size_ = caption + 1;
};

} // namespace velm
