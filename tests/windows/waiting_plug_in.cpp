// A plug-in that writes half of its file and then waits for the end of its process.

#include "host_link/call_form.hpp"
#include "record_output/output_file.hpp"

#include <cstdint>
#include <string>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

extern "C" __declspec(dllexport) void importexport()
{
    constexpr std::int32_t length = 512;
    std::string name(length, ' ');
    velm::call_form<1>("GFILENAME", name.data(), std::int32_t{10}, length);
    name.resize(name.find_last_not_of(' ') + 1);
    velm::SystemFile file;
    file.open(name.c_str());
    file.write("half", 4);
    Sleep(INFINITE);
}
