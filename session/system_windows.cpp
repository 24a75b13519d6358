#include "session/system.hpp"

#include "plain_text/plain_text.hpp"
#include "session/host_library.hpp"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace velm {
namespace {

[[noreturn]] void fail(const std::string& what)
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

} // namespace

std::FILE* create_new_file(const std::filesystem::path& file)
{
    const int descriptor = _wopen(file.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot create " + shown(file));
    }
    return _fdopen(descriptor, "wb");
}

void remove_new_file(std::FILE* opened, const std::filesystem::path& file) noexcept
{
    (void)std::fclose(opened); // nobody removes or renames a file that is open
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
}

std::filesystem::path own_library()
{
    HMODULE here = nullptr;
    std::wstring name(32'768, L'\0'); // the longest path of the system
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCWSTR>(&own_library), &here) == 0) {
        fail("the recorder's own place is unknown");
    }
    name.resize(GetModuleFileNameW(here, name.data(), static_cast<DWORD>(name.size())));
    return name;
}

std::filesystem::path session_of_environment()
{
    const wchar_t* const name = _wgetenv(L"VELM_SESSION");
    return name == nullptr ? L"" : name;
}

HostLibrary load_host_library(const std::filesystem::path& file)
{
    constexpr std::size_t first_ordinal = 3; // of the call form with one value
    constexpr WORD attach_ordinal = 100;
    const std::filesystem::path whole = std::filesystem::absolute(file);
    HMODULE const library = LoadLibraryExW(whole.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (library == nullptr) {
        fail("cannot load " + shown(file));
    }
    const auto procedure = [&](std::size_t ordinal) {
        return reinterpret_cast<void*>(GetProcAddress(library, MAKEINTRESOURCEA(static_cast<WORD>(ordinal))));
    };
    HostLibrary host;
    for (std::size_t form = 0; form < host.exchange.size(); ++form) {
        host.exchange[form] = reinterpret_cast<HostLibrary::Procedure>(procedure(first_ordinal + form));
        if (host.exchange[form] == nullptr) {
            fail(shown(file) + " has no procedure of ordinal " + std::to_string(first_ordinal + form));
        }
    }
    host.attach = reinterpret_cast<decltype(host.attach)>(procedure(attach_ordinal));
    return host;
}

} // namespace velm
