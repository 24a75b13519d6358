/*
 * What one would write without this product, in Fortran with formatted WRITE. Failures end the process.
 */
#ifndef VELM_BENCH_FORTRAN_PEER_H
#define VELM_BENCH_FORTRAN_PEER_H

#include <stdint.h> /* NOLINT(modernize-deprecated-headers): a C header */

#ifdef __cplusplus
extern "C" {
#endif

enum { reals_of_a_row = 16 };

/* One internal WRITE for all values into fields of `width` characters of `text`, by the layout of one field. */
void fortran_reals(const float* values, int32_t count, int32_t width, const char* layout, int32_t layout_length,
                   char* text);

/* Records of a file, one WRITE each, from open to close. Lines end as Fortran ends them, and free pairs stand in
 * columns. Names have 40 characters, rows four integers and reals_of_a_row reals, each segment `count` parameters. */
void fortran_open(const char* path, int32_t path_length);
void fortran_names(const char* names, int32_t count);
void fortran_rows(const int32_t* integers, const float* reals, int32_t count);
void fortran_parameters(const float* values, int32_t segment, int32_t count);
void fortran_pairs(const float* times, const float* values, int32_t count);
void fortran_free_pairs(const float* times, const float* values, int32_t count);
void fortran_close(void);

#ifdef __cplusplus
}
#endif

#endif
