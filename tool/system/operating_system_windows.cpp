#include "tool/system/operating_system.hpp"

#include "whole_file/system_errors_windows.hpp"

#include <stdexcept>
#include <string>
#include <system_error>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <shellapi.h>

namespace velm {
namespace {

namespace fs = std::filesystem;

/// The tool prints UTF-8; afterwards the console has the code page that it had.
class ConsoleInUtf8 {
public:
    ConsoleInUtf8() : before(GetConsoleOutputCP()) { SetConsoleOutputCP(CP_UTF8); }
    ~ConsoleInUtf8() { SetConsoleOutputCP(before); }
    ConsoleInUtf8& operator=(ConsoleInUtf8&&) = delete; // neither copied nor moved

private:
    UINT before;
};
const ConsoleInUtf8 console_in_utf8;

} // namespace

fs::path executable_directory()
{
    std::wstring name(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
        if (length == 0) {
            throw std::system_error(static_cast<int>(GetLastError()), windows_errors(),
                                    "cannot find the program's own file");
        }
        if (length < name.size()) {
            return fs::path(name.substr(0, length)).parent_path();
        }
        name.resize(2 * name.size());
    }
}

void prepare_streams() {} // numbers of files are not those of streams

bool has_capable_terminal()
{
    const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) != 0 &&
           SetConsoleMode(console, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::size_t terminal_columns()
{
    CONSOLE_SCREEN_BUFFER_INFO console{};
    const bool known = GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &console) != 0;
    const int columns = console.srWindow.Right - console.srWindow.Left + 1;
    return known && columns > 1 ? static_cast<std::size_t>(columns) : 80;
}

void (*procedure_of_library(const fs::path& library, const char* name))()
{
    const HMODULE module = LoadLibraryW(fs::absolute(library).c_str());
    const FARPROC procedure = module == nullptr ? nullptr : GetProcAddress(module, name);
    if (procedure == nullptr) {
        throw std::runtime_error(windows_errors().message(static_cast<int>(GetLastError())));
    }
    return reinterpret_cast<void (*)()>(reinterpret_cast<void*>(procedure));
}

void open_in_browser(const fs::path& page)
{
    const fs::path name = fs::absolute(page);
    constexpr std::intptr_t least_success = 33; // as the system counts
    const auto result = ShellExecuteW(nullptr, L"open", name.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    if (reinterpret_cast<std::intptr_t>(result) < least_success) {
        throw std::runtime_error("no browser can be started; open " + name.string() + " yourself");
    }
}

} // namespace velm
