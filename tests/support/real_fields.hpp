#pragma once

#include "record_output/real_rendering.hpp"

#include <string>
#include <string_view>

namespace velm {

/// A real descriptor with both ways to render it: compiled for its width and decimals, and in full.
struct RealField {
    std::string_view name;
    std::size_t width;
    std::size_t decimals;
    void (*compiled)(char* field, float value) noexcept;

    [[nodiscard]] std::string fast(float value) const
    {
        std::string text(width, '?');
        compiled(text.data(), value);
        return text;
    }
    [[nodiscard]] std::string in_full(float value) const
    {
        std::string text(width, '?');
        render_real_field_in_full(text.data(), width, decimals, value);
        return text;
    }
};

template <std::size_t width, std::size_t decimals>
constexpr RealField real_field(std::string_view name)
{
    return {name, width, decimals, &render_real_field<width, decimals>};
}

/// The ten descriptors that records have.
inline constexpr RealField real_fields_in_use[] = {
    real_field<6, 3>("F6.3"),   real_field<8, 6>("F8.6"),   real_field<10, 1>("F10.1"), real_field<10, 3>("F10.3"),
    real_field<10, 4>("F10.4"), real_field<14, 6>("F14.6"), real_field<15, 2>("F15.2"), real_field<15, 4>("F15.4"),
    real_field<15, 5>("F15.5"), real_field<20, 4>("F20.4"),
};

inline std::string free_real(float value)
{
    char text[free_real_room];
    return {text, render_free_real(text, value)};
}

} // namespace velm
