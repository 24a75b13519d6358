#include "whole_file/system_errors_windows.hpp"

#include <array>
#include <string>
#include <string_view>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace velm {
namespace {

class SystemErrors : public std::error_category {
public:
    [[nodiscard]] const char* name() const noexcept override { return "windows"; }
    [[nodiscard]] std::string message(int error) const override
    {
        constexpr DWORD from_system = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
        const auto number = static_cast<DWORD>(error);
        std::array<char, 512> text{};
        constexpr auto room = static_cast<DWORD>(text.size());
        if (FormatMessageA(from_system, nullptr, number, MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), text.data(),
                           room, nullptr) == 0) {
            FormatMessageA(from_system, nullptr, number, 0, text.data(), room, nullptr);
        }
        const std::string_view words(text.data());
        const auto end = words.find_last_not_of(" .\r\n");
        return end == std::string_view::npos ? "error " + std::to_string(number)
                                             : std::string(words.substr(0, end + 1));
    }
};

} // namespace

const std::error_category& windows_errors()
{
    static const SystemErrors errors;
    return errors;
}

} // namespace velm
