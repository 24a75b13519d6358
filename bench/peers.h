/*
 * The records of the workloads as one would write them without this product: in C with fprintf, in Fortran with
 * formatted WRITE. A file is open from ..._open to ..._close, one at a time. Failures end the process.
 */
#ifndef VELM_BENCH_PEERS_H
#define VELM_BENCH_PEERS_H

#include <stdint.h> /* NOLINT(modernize-deprecated-headers): a C header */

#ifdef __cplusplus
extern "C" {
#endif

enum { columns_of_a_row = 16, parameters_of_a_segment = 40 };

void c_open(const char* path);
void c_names(const char* names, int32_t count); /* 40 characters each */
/* (4(I5),16(F15.5)): integers[4 * count] and reals[columns_of_a_row * count] */
void c_rows(const int32_t* integers, const float* reals, int32_t count);
/* a line for each segment and for each of its parameters: values[parameters_of_a_segment * count] */
void c_parameters(const float* values, int32_t count);
void c_pairs(const float* times, const float* values, int32_t count);      /* (F10.4,5x,F10.4) */
void c_free_pairs(const float* times, const float* values, int32_t count); /* six or seven significant digits */
void c_close(void);

/* The same. Lines end as Fortran ends them, and free pairs stand in columns. */
void fortran_open(const char* path, int32_t path_length);
void fortran_names(const char* names, int32_t count);
void fortran_rows(const int32_t* integers, const float* reals, int32_t count);
void fortran_parameters(const float* values, int32_t count);
void fortran_pairs(const float* times, const float* values, int32_t count);
void fortran_free_pairs(const float* times, const float* values, int32_t count);
void fortran_close(void);

/* One internal WRITE for all values: Fw.d, 1PG14.6, Iw, Aw. Each field takes `width` characters of `text`. */
void fortran_reals(const float* values, int32_t count, int32_t width, int32_t decimals, char* text);
void fortran_free_reals(const float* values, int32_t count, char* text);
void fortran_integers(const int32_t* values, int32_t count, int32_t width, char* text);
void fortran_texts(const char* texts, int32_t count, int32_t width, char* text);

/* One internal WRITE for each record: (4(I5),16(F15.5)), (F10.4,5x,F10.4), (I5,15x,'...'), (2(1PG14.6)). Each
 * record takes 260, 25, 40 and 28 characters of `lines`. */
void fortran_row_records(const int32_t* integers, const float* reals, int32_t count, char* lines);
void fortran_pair_records(const float* times, const float* values, int32_t count, char* lines);
void fortran_count_records(const int32_t* counts, int32_t count, char* lines);
void fortran_free_pair_records(const float* times, const float* values, int32_t count, char* lines);

#ifdef __cplusplus
}
#endif

#endif
