#include "tool/plug_in/made_at.hpp"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <string_view>

namespace velm {

std::string made_at()
{
    std::time_t moment = std::time(nullptr);
    if (const char* const fixed = std::getenv("SOURCE_DATE_EPOCH")) {
        std::int64_t seconds = 0;
        const std::string_view text = fixed;
        if (std::from_chars(text.data(), text.data() + text.size(), seconds).ec == std::errc{}) {
            moment = static_cast<std::time_t>(seconds);
        }
    }
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M UTC", std::gmtime(&moment));
    return {text.data(), length};
}

} // namespace velm
