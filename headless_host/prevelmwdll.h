/*
 * libprevelmwdll: the five call forms of the desktop host's library, answered by whoever is attached.
 *
 * The library resolves the key, reads the lengths that the key has, and hands the request on. It holds no
 * model itself: the headless host, a scripted host or a recorder attaches a function that answers.
 */
#ifndef VELM_PREVELMWDLL_H
#define VELM_PREVELMWDLL_H

#include <stdint.h> /* NOLINT(modernize-deprecated-headers): a C header */

#if defined(_WIN32)
#define VELM_PREVELMWDLL_CALL
#else
#define VELM_PREVELMWDLL_CALL __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

enum { velm_unknown_key = -1 };

struct velm_host_request {
    const char* key;         /* as passed: key_length bytes, the last a NUL when the caller is sound */
    int32_t key_length;      /* as passed */
    int32_t key_position;    /* in host_keys; velm_unknown_key when key and length name none */
    int32_t call_form;       /* 1 to 5, also the number of values */
    void* values[5];         /* as passed; NULL beyond call_form */
    int32_t text_lengths[2]; /* as passed, one for each text that the key has; 0 for an unknown key or a
                                key that belongs to another call form */
};

/* Answers a request by writing into its values. Must not throw. */
typedef void (*velm_host_answer)(void* context, const struct velm_host_request* request);

/* From now on `answer` is called with `context` for every request, on the thread of the request. NULL: requests
 * are left unanswered. The library keeps both until the next call; one process has one attached host. */
VELM_PREVELMWDLL_CALL void velm_host_attach(velm_host_answer answer, void* context);

#ifdef __cplusplus
}
#endif

#endif
