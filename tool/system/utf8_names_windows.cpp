// Names of files are UTF-8 in all the tool's texts, as its manifest has it. The C++ library turns them into the
// system's UTF-16 with three procedures of a C run-time that knows no UTF-8; the linker puts these in their place
// (--wrap).

#include <cerrno>
#include <cstddef>
#include <cwchar>
#include <utility>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace {

constexpr auto invalid = static_cast<std::size_t>(-1);
constexpr auto incomplete = static_cast<std::size_t>(-2);
constexpr int longest_character = 4;

std::size_t fail()
{
    errno = EILSEQ;
    return invalid;
}

/// Bytes of the character that begins with `first`.
std::size_t length_from(unsigned char first)
{
    return first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

int longest_character_of_the_locale()
{
    return longest_character;
}

} // namespace

extern "C" {

/// A character beyond 16 bits gives its first surrogate for three bytes and the other, kept in `state`, for the last.
std::size_t __wrap_mbrtowc(wchar_t* to, const char* from, std::size_t size, std::mbstate_t* state)
{
    if (*state != 0) {
        *to = static_cast<wchar_t>(*state);
        *state = 0;
        return 1;
    }
    const std::size_t length = size == 0 ? 1 : length_from(static_cast<unsigned char>(*from));
    if (length > size) {
        return incomplete;
    }
    wchar_t units[2] = {};
    switch (MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, from, static_cast<int>(length), units, 2)) {
    case 1: *to = units[0]; return units[0] == 0 ? 0 : length;
    case 2:
        *to = units[0];
        *state = units[1];
        return length - 1;
    default: return fail();
    }
}

/// The first surrogate of a pair gives nothing and is kept in `state`.
std::size_t __wrap_wcrtomb(char* to, wchar_t from, std::mbstate_t* state)
{
    if (*state == 0 && IS_HIGH_SURROGATE(from)) {
        *state = from;
        return 0;
    }
    const wchar_t units[2] = {static_cast<wchar_t>(*state), from};
    const bool pair = std::exchange(*state, 0) != 0;
    const int length = WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, pair ? units : units + 1, pair ? 2 : 1, to,
                                           longest_character, nullptr, nullptr);
    return length > 0 ? static_cast<std::size_t>(length) : fail();
}

int (*__wrap___imp____mb_cur_max_func)() = longest_character_of_the_locale;
}
