/*
 * The five call forms between the export plug-in and its host, as the host library exports them.
 *
 * On Windows they have no names, only the ordinals 3 to 7 of prevelmwdll.dll; elsewhere they are the
 * symbols host_exchange_1 to host_exchange_5 of libprevelmwdll.so.
 *
 * Every call names its request with a key: upper-case ASCII ended by one NUL. Keys that begin with G
 * fetch from the host, keys that begin with P send to it. Then come the addresses of one to five values:
 *
 *   integer   int32_t
 *   real      float
 *   text      a field of single-byte characters of fixed length, not terminated
 *   series    the first of many floats
 *
 * After the values come the lengths, each an int32_t passed by value: first the key's, its NUL counted,
 * then one for each text value in the order of the values, and none more. A form is declared with the
 * lengths of all its keys, and a call has those of its own key: a host looks up the key before it reads
 * a text's length, and neither reads nor changes one that the key does not have. Calls are plain ones by
 * the platform's standard convention, never variadic.
 *
 * The plug-in owns all the memory. A host may read and write it only until the call returns, writes no
 * more than a text's length, and leaves keys and selecting values as they are. There is no status.
 */
#ifndef VELM_HOST_EXCHANGE_H
#define VELM_HOST_EXCHANGE_H

#include <stdint.h> /* NOLINT(modernize-deprecated-headers): hosts in C include this file too */

#if defined(_WIN32) && !defined(VELM_IS_HOST_LIBRARY)
#define VELM_HOST_CALL __declspec(dllimport)
#elif defined(_WIN32)
#define VELM_HOST_CALL
#else
#define VELM_HOST_CALL __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

VELM_HOST_CALL void host_exchange_1(const char* key, void* value_1, int32_t key_length, int32_t text_length_1);
VELM_HOST_CALL void host_exchange_2(const char* key, void* value_1, void* value_2, int32_t key_length,
                                    int32_t text_length_1);
VELM_HOST_CALL void host_exchange_3(const char* key, void* value_1, void* value_2, void* value_3, int32_t key_length,
                                    int32_t text_length_1, int32_t text_length_2);
VELM_HOST_CALL void host_exchange_4(const char* key, void* value_1, void* value_2, void* value_3, void* value_4,
                                    int32_t key_length);
VELM_HOST_CALL void host_exchange_5(const char* key, void* value_1, void* value_2, void* value_3, void* value_4,
                                    void* value_5, int32_t key_length);

#ifdef __cplusplus
}
#endif

#endif
