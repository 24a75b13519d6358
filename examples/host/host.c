/*
 * A host in C: answers the export plug-in from a model of its own, here three segments of a river.
 *
 *     host PLUG_IN OUTPUT       PLUG_IN is libvelm_export.so
 *
 * What a request asks for stands in docs/host-protocol.md, key by key. What this host does not answer keeps the value
 * that the plug-in had: 0, or a blank text.
 */
#include <velm/prevelmwdll.h>

#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

struct river {
    const char* output;
    int32_t segments;
    float volumes[3]; /* m3 */
    int complete;
};

static void answer(void* context, const struct velm_host_request* request)
{
    struct river* river = context;
    if (strcmp(request->key, "GFILENAME") == 0) {
        char* field = request->values[0]; /* text_lengths[0] characters, blanks behind the name */
        memset(field, ' ', (size_t)request->text_lengths[0]);
        memcpy(field, river->output, strlen(river->output));
    } else if (strcmp(request->key, "GNUMSEG") == 0) {
        *(int32_t*)request->values[0] = river->segments;
    } else if (strcmp(request->key, "GVOLUME") == 0) {
        const int32_t segment = *(int32_t*)request->values[0]; /* from 1 */
        *(float*)request->values[1] = river->volumes[segment - 1];
    } else if (strcmp(request->key, "PINFOHTML") == 0) { /* the last fragment of an export that succeeded says so */
        river->complete = strstr(request->values[0], "File Export is Complete") != NULL;
    }
}

int main(int argument_count, char** arguments)
{
    struct river river = {NULL, 3, {12000.0F, 15000.0F, 18000.0F}, 0};
    void (*export_model)(void);
    if (argument_count != 3 || strlen(arguments[2]) > 512) {
        fprintf(stderr, "usage: host PLUG_IN OUTPUT\n");
        return 2;
    }
    river.output = arguments[2];
    void* plug_in = dlopen(arguments[1], RTLD_NOW);
    if (plug_in == NULL) {
        fprintf(stderr, "host: %s\n", dlerror());
        return 2;
    }
    *(void**)&export_model = dlsym(plug_in, "importexport");
    velm_host_attach(answer, &river);
    export_model();
    velm_host_attach(NULL, NULL);
    return river.complete ? 0 : 1;
}
