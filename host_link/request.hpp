#pragma once

#include "compile_time/fixed_string.hpp"
#include "host_link/call_form.hpp"
#include "host_link/host_keys.hpp"
#include "host_link/text_field.hpp"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace velm {

/// An integer that the host is to read where it stands, not in a copy: what a host writes into it stays.
struct InPlace {
    std::int32_t& integer;
};

/// A text for the host to read whose length is known only at run time.
struct NulEndedText {
    char* characters;
    std::int32_t length; ///< counts the NUL at the end
};

/// One request to the host, through the call form that the key has. The compiler looks the key up in host_keys and
/// checks number, kinds, directions and text lengths of the values:
///
///     an integer to read     by value: the host gets a copy, fresh for each request; or InPlace{integer}
///     an integer to fill     std::int32_t variable
///     a real to fill         float variable
///     a text to fill         Text<N> variable with the key's N
///     a text to read         character literal or array ended by NUL, its length counting the NUL; or NulEndedText
///     a series to fill       std::vector<float> variable, large enough for what the host will write
///
/// Values that the host leaves alone keep what they held. There is no status; an exception of the host's
/// passes through.
///
///     request<"GSEGNAME">(segment, name);
template <FixedString key, class... Values>
void request(Values&&... values);

/// Shown by the compiler when the host's contract has no such key.
template <FixedString key, std::size_t position>
struct HostHasKey {
    static_assert(position < host_key_count, "the host has no such key");
    static constexpr bool sound = position < host_key_count;
};

/// Shown by the compiler when a key travels with another number of values.
template <FixedString key, std::size_t expected, std::size_t given>
struct ValueCountOfKey {
    static_assert(expected == given, "this key travels with another number of values");
    static constexpr bool sound = expected == given;
};

/// Shown by the compiler when a value does not fit its key: the key, the value's number from 1, what the key
/// wants, and the value's type.
template <FixedString key, std::size_t value_number, Direction direction, Kind kind, std::int32_t text_length,
          class Value>
struct ValueOfKey {
    static_assert(!std::same_as<Value, Value>, "this value does not fit the key: see direction, kind and text length");
};

namespace detail {

/// What travels for one value: its address, or that of a copy, and for a text its length.
struct Address {
    void* value;
    [[nodiscard]] void* address() const { return value; }
};

struct IntegerCopy {
    std::int32_t integer;
    void* address() { return &integer; }
};

struct TextAddress : Address {
    std::int32_t length;
};

template <std::size_t N>
struct TextCopy {
    std::array<char, N> characters;
    void* address() { return characters.data(); }
    static constexpr auto length = static_cast<std::int32_t>(N);
};

template <class>
inline constexpr std::size_t text_size = 0;
template <std::size_t N>
inline constexpr std::size_t text_size<Text<N>> = N;
template <std::size_t N>
inline constexpr std::size_t text_size<char[N]> = N;

template <FixedString key, std::size_t number, class Value>
auto passed(Value&& value)
{
    constexpr Argument wanted = host_keys[host_key_position(key.view())].arguments[number];
    using Plain = std::remove_cvref_t<Value>;
    constexpr bool read = wanted.direction == Direction::in;
    constexpr bool filled =
        !read && std::is_lvalue_reference_v<Value> && !std::is_const_v<std::remove_reference_t<Value>>;
    if constexpr (wanted.kind == Kind::integer && read && std::same_as<Plain, std::int32_t>) {
        return IntegerCopy{value};
    } else if constexpr (wanted.kind == Kind::integer && read && std::same_as<Plain, InPlace>) {
        return Address{&value.integer};
    } else if constexpr (wanted.kind == Kind::integer && filled && std::same_as<Plain, std::int32_t>) {
        return Address{&value};
    } else if constexpr (wanted.kind == Kind::real && filled && std::same_as<Plain, float>) {
        return Address{&value};
    } else if constexpr (wanted.kind == Kind::series && filled && std::same_as<Plain, std::vector<float>>) {
        return Address{value.data()};
    } else if constexpr (wanted.kind == Kind::text && filled && text_size<Plain> == wanted.text_length) {
        return TextAddress{{value.data()}, wanted.text_length};
    } else if constexpr (wanted.kind == Kind::text && read && std::same_as<Plain, NulEndedText>) {
        return TextAddress{{value.characters}, value.length};
    } else if constexpr (wanted.kind == Kind::text && read && text_size<Plain> != 0) {
        TextCopy<text_size<Plain>> copy;
        std::copy_n(std::data(value), copy.characters.size(), copy.characters.data());
        return copy;
    } else {
        return ValueOfKey<key, number + 1, wanted.direction, wanted.kind, wanted.text_length, Plain>{};
    }
}

/// The length that follows the key's, as a tuple of one for a text and of none for other values.
template <class Passed>
auto length_of(const Passed& passed)
{
    if constexpr (requires { passed.length; }) {
        return std::tuple<std::int32_t>{passed.length};
    } else {
        return std::tuple<>{};
    }
}

/// Makes the call. The key travels in a buffer of exactly its length, which the host could not harm.
template <FixedString key, class... Passed>
void call_host(Passed... passed)
{
    std::array<char, key.size() + 1> text;
    std::copy_n(key.characters, text.size(), text.data());
    const auto lengths = std::tuple_cat(std::tuple{static_cast<std::int32_t>(text.size())}, length_of(passed)...);
    std::apply([&](auto... length) { call_form<sizeof...(Passed)>(text.data(), passed.address()..., length...); },
               lengths);
}

} // namespace detail

template <FixedString key, class... Values>
void request(Values&&... values)
{
    constexpr std::size_t position = host_key_position(key.view());
    static_assert(HostHasKey<key, position>::sound);
    if constexpr (position < host_key_count) {
        constexpr std::size_t expected = host_keys[position].argument_count;
        static_assert(ValueCountOfKey<key, expected, sizeof...(Values)>::sound);
        if constexpr (expected == sizeof...(Values)) {
            [&]<std::size_t... number>(std::index_sequence<number...>)
            {
                detail::call_host<key>(detail::passed<key, number>(std::forward<Values>(values))...);
            }
            (std::index_sequence_for<Values...>{});
        }
    }
}

} // namespace velm
