#pragma once

#include "host_link/host_keys.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velm {

/// What all lines of a key have in common.
struct KeyForm {
    /// A value of the key.
    struct Value {
        std::uint8_t argument = 0; ///< which one of the key's it is
        Kind kind{};
    };
    struct Values {
        std::array<Value, HostKey::most_arguments> list{};
        std::size_t count = 0;

        [[nodiscard]] constexpr const Value* begin() const { return list.data(); }
        [[nodiscard]] constexpr const Value* end() const { return list.data() + count; }
    };
    static constexpr std::size_t text_room = 48; ///< one size for all is copied faster

    std::array<char, text_room> text{}; ///< ,"key":"GVOLUME","in":[ and NULs behind it
    std::size_t text_size = 0;
    Values read;   ///< by the host
    Values filled; ///< by the host
    bool has_only_numbers = true;

    constexpr KeyForm() = default;
    constexpr explicit KeyForm(const HostKey& key)
    {
        for (const std::string_view piece :
             {std::string_view(R"(,"key":")"), key.name, std::string_view(R"(","in":[)")}) {
            for (const char character : piece) {
                text[text_size++] = character;
            }
        }
        for (std::uint8_t i = 0; i < key.argument_count; ++i) {
            const Kind kind = key.arguments[i].kind;
            Values& values = key.arguments[i].direction == Direction::in ? read : filled;
            values.list[values.count++] = {i, kind};
            has_only_numbers = has_only_numbers && (kind == Kind::integer || kind == Kind::real);
        }
    }
};

/// In the order of host_keys.
inline constexpr auto key_forms = [] {
    std::array<KeyForm, host_key_count> forms;
    for (std::size_t i = 0; i < forms.size(); ++i) {
        forms[i] = KeyForm(host_keys[i]);
    }
    return forms;
}();

} // namespace velm
