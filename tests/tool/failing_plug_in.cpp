// A plug-in that fails in the way that the environment variable FAILURE names.

#include "host_link/call_form.hpp"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

#include <pthread.h>
#include <unistd.h>

using velm::call_form;

namespace {

void post(const char* fragment)
{
    char key[] = "PINFOHTML";
    std::string text(fragment);
    call_form<1>(key, text.data(), std::int32_t{10}, static_cast<std::int32_t>(text.size() + 1));
}

std::string output_file_name()
{
    char name[512];
    call_form<1>("GFILENAME", name, std::int32_t{10}, std::int32_t{512});
    const std::string_view field(name, sizeof name);
    return std::string(field.substr(0, field.find_last_not_of(' ') + 1));
}

void write(const std::string& name, const std::string& text)
{
    std::FILE* const file = std::fopen(name.c_str(), "wb");
    std::fputs(text.c_str(), file);
    std::fclose(file);
}

std::string all_sections()
{
    std::string text;
    for (int section = 1; section <= 11; ++section) {
        text += " ======================== Section ===================================\r\n";
    }
    return text;
}

void complete()
{
    post("<li><span style=\"font-weight: bold; color: blue;\">");
    post("File Export is Complete</span></li>");
}

void ask_wrongly(std::string_view failure)
{
    std::int32_t number = 99;
    float real = 0;
    char text[40];
    if (failure == "unknown key") {
        call_form<1>("GNOSUCH", &number, std::int32_t{8});
    } else if (failure == "wrong length") {
        call_form<2>("GSEGNAME", &number, text, std::int32_t{9}, std::int32_t{39});
    } else if (failure == "missing index") {
        call_form<2>("GVOLUME", &number, &real, std::int32_t{8});
    }
}

} // namespace

extern "C" __attribute__((visibility("default"))) void importexport()
{
    const char* const variable = std::getenv("FAILURE");
    const std::string_view failure = variable == nullptr ? "" : variable;
    if (failure == "asks nothing") {
        return;
    }
    const std::string name = output_file_name();
    write(name, failure == "too few sections" ? "half a fi" : all_sections() + (failure == "torn end" ? "half" : ""));
    ask_wrongly(failure);
    if (failure == "no completion") {
        post("<li><b>The disk is full</b></li>");
        return;
    }
    if (failure == "steers the terminal") {
        post("<li>\x1b[2J\nvelm: done \u202Eenod</li>");
        return;
    }
    if (failure == "waits") {
        std::fputs("waiting", stderr);
        pause();
    }
    if (failure == "talks") {
        std::fputs("nothing fails", stderr);
    }
    if (failure == "throws") {
        throw std::runtime_error("no storage");
    }
    if (failure == "crashes") {
        std::abort();
    }
    if (failure == "ends the process") {
        std::exit(0);
    }
    if (failure == "ends it quickly") {
        std::quick_exit(0);
    }
    if (failure == "ends its thread") {
        pthread_exit(nullptr);
    }
    complete();
}
