#include "session/recorder_library/real_host.hpp"

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <system_error>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace velm {
namespace {

constexpr WORD first_ordinal = 3; // of the call form with one value
constexpr WORD attach_ordinal = 100;

[[noreturn]] void fail(const std::string& what)
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

template <class Procedure>
Procedure procedure(HMODULE library, WORD ordinal)
{
    return reinterpret_cast<Procedure>(reinterpret_cast<void*>(GetProcAddress(library, MAKEINTRESOURCEA(ordinal))));
}

} // namespace

RealHost load_real_host()
{
    const std::filesystem::path file = recorder_directory() / "prevelmwdll_host.dll";
    HMODULE const library = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (library == nullptr) {
        fail("cannot load " + file.string());
    }
    RealHost host;
    for (std::size_t form = 0; form < host.exchange.size(); ++form) {
        const auto ordinal = static_cast<WORD>(first_ordinal + form);
        host.exchange[form] = procedure<RealHost::Procedure>(library, ordinal);
        if (host.exchange[form] == nullptr) {
            fail(file.string() + " has no procedure of ordinal " + std::to_string(ordinal));
        }
    }
    host.attach = procedure<decltype(host.attach)>(library, attach_ordinal);
    return host;
}

std::filesystem::path recorder_directory()
{
    HMODULE here = nullptr;
    std::wstring name(32'768, L'\0'); // the longest path of the system
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCWSTR>(&recorder_directory), &here) == 0) {
        fail("the recorder's own place is unknown");
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
