/* c_host_test HOST_LIBRARY PLUG_IN OUTPUT: exports through the two libraries, as a host written in C does; at last as
 * one that leaves exports by longjmp, and one that asks for an export within an export. */
#include "headless_host/prevelmwdll.h"
#include "host_link/host_exchange.h"

#include <setjmp.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static const char* output;
static int requests;
static int completed;
static int refused;
static void (*export_model)(void);
static enum { goes_on, leaves, asks_again } habit;
static jmp_buf outside;

static void fail(const char* what)
{
    fprintf(stderr, "c_host_test: %s\n", what);
    exit(1);
}

static void expect(int holds, const char* what)
{
    if (!holds) {
        fail(what);
    }
}

static void answer(void* context, const struct velm_host_request* request)
{
    const char* key = request->key;
    expect(context == &requests, "the context came back changed");
    expect(request->key_length == (int32_t)strlen(key) + 1, "a key's length does not count its NUL");
    expect(request->key_position != velm_unknown_key, "an unknown key");
    ++requests;
    if (strcmp(key, "GFILENAME") == 0) {
        expect(request->call_form == 1 && request->text_lengths[0] == 512, "the file name's field");
        memset(request->values[0], ' ', 512);
        memcpy(request->values[0], output, strlen(output));
    } else if (strcmp(key, "GNUMSEG") == 0) {
        *(int32_t*)request->values[0] = 12;
    } else if (strcmp(key, "GBEDOPT") == 0 && habit == leaves) {
        longjmp(outside, 1);
    } else if (strcmp(key, "GBEDOPT") == 0 && habit == asks_again) {
        habit = goes_on;
        export_model();
    } else if (strcmp(key, "GIQOPT") == 0) { /* the value's place first, then the segment */
        *(int32_t*)request->values[0] = 100 + *(int32_t*)request->values[1];
    } else if (strcmp(key, "GVOLUME") == 0) { /* and the other way round, as everywhere else */
        *(float*)request->values[1] = (float)*(int32_t*)request->values[0] / 8;
    } else if (strcmp(key, "PINFOHTML") == 0) {
        completed = strcmp(request->values[0], "File Export is Complete</span></li>") == 0;
        refused += strstr(request->values[0], "another export is under way") != NULL;
        expect(request->text_lengths[0] > (int32_t)strlen(request->values[0]), "a fragment without its NUL");
    }
}

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#define ATTACH MAKEINTRESOURCEA(100)
#define EXCHANGE_1 MAKEINTRESOURCEA(3)
static void* loaded(const char* path)
{
    void* library = LoadLibraryA(path);
    expect(library != NULL, path);
    return library;
}
static void* symbol(void* library, const char* name)
{
    void* address;
    *(FARPROC*)&address = GetProcAddress(library, name);
    expect(address != NULL, "a procedure is missing");
    return address;
}
#else
#include <dlfcn.h>
#define ATTACH "velm_host_attach"
#define EXCHANGE_1 "host_exchange_1"
static void* loaded(const char* path)
{
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) {
        fail(dlerror());
    }
    return library;
}
static void* symbol(void* library, const char* name)
{
    void* address = dlsym(library, name);
    if (address == NULL) {
        fail(dlerror());
    }
    return address;
}
#endif

/* Exports from so far down the stack. */
static void export_from(int depth)
{
    volatile char room[2000];
    room[0] = (char)depth;
    if (depth == 0) {
        export_model();
    } else {
        export_from(depth - 1);
    }
    expect(room[0] == (char)depth, "the stack came back changed");
}

static void leave_and_export(int depth_left, int depth)
{
    habit = leaves;
    completed = 0;
    if (setjmp(outside) == 0) {
        export_from(depth_left);
        fail("the export was not left");
    }
    habit = goes_on;
    export_from(depth);
    expect(completed, "an export is possible after one that was left");
    expect(!refused, "an export that was left is over");
}

int main(int argument_count, char** arguments)
{
    void (*attach)(velm_host_answer, void*);
    void (*exchange)(const char*, void*, int32_t);
    void (*empty_module)(void);
    int32_t segments = 0;
    char line[600];
    int geometry_rows = 0;
    FILE* file;

    expect(argument_count == 4, "usage: c_host_test HOST_LIBRARY PLUG_IN OUTPUT");
    output = arguments[3];
    void* host = loaded(arguments[1]);
    void* plug_in = loaded(arguments[2]);
    *(void**)&attach = symbol(host, ATTACH);
    *(void**)&exchange = symbol(host, EXCHANGE_1);
    *(void**)&export_model = symbol(plug_in, "importexport");
    *(void**)&empty_module = symbol(plug_in, "IMPORT_EXPORT");

    attach(answer, &requests);
    exchange("GNUMSEG", &segments, (int32_t)8);
    expect(segments == 12 && requests == 1, "the host's answer to its own request");
    empty_module();
    export_model();
    expect(completed, "completion was not the last thing said");

    file = fopen(output, "rb");
    expect(file != NULL, "no output file");
    while (fgets(line, sizeof line, file) != NULL) {
        char expected[400];
        snprintf(expected, sizeof expected, "%5d    0    0%5d%15.5f", geometry_rows + 1, 101 + geometry_rows,
                 (geometry_rows + 1) / 8.0);
        geometry_rows += strlen(line) == 262 && strncmp(line, expected, 35) == 0;
    }
    fclose(file);
    expect(geometry_rows == 12, "twelve rows of segment geometry");

    leave_and_export(5, 0);
    leave_and_export(0, 0);
    leave_and_export(0, 5);
    habit = asks_again;
    export_from(0);
    expect(refused == 1 && completed, "an export within another is refused, and the other goes on");

    attach(NULL, NULL);
    exchange("GNUMSEG", &segments, (int32_t)8);
    expect(segments == 12, "a request that nobody answers");
    fflush(NULL);
    _Exit(0); /* what was left lost its storage; a sanitizer need not say so */
}
