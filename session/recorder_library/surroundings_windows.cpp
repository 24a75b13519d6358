#include "session/recorder_library/surroundings.hpp"

#include <cstdlib>
#include <string>
#include <system_error>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace velm {

std::filesystem::path real_host_library()
{
    return recorder_directory() / "prevelmwdll_host.dll";
}

std::filesystem::path recorder_directory()
{
    HMODULE here = nullptr;
    std::wstring name(32'768, L'\0'); // the longest path of the system
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCWSTR>(&recorder_directory), &here) == 0) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                                "the recorder's own place is unknown");
    }
    name.resize(GetModuleFileNameW(here, name.data(), static_cast<DWORD>(name.size())));
    return std::filesystem::path(name).parent_path();
}

std::filesystem::path wanted_session_file()
{
    const wchar_t* const name = _wgetenv(L"VELM_SESSION");
    return name != nullptr && *name != L'\0' ? std::filesystem::path(name) : recorder_directory() / "session.jsonl";
}

} // namespace velm
