#include "bench/peers.h"

#include <math.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>

static FILE* file;

static void require(int success, const char* operation)
{
    if (!success) {
        perror(operation);
        exit(1);
    }
}

void c_open(const char* path)
{
    file = fopen(path, "w");
    require(file != NULL, path);
    setvbuf(file, NULL, _IOFBF, (size_t)256 * 1024);
}

void c_names(const char* names, int32_t count)
{
    for (int32_t i = 0; i < count; ++i) {
        fprintf(file, "%5d     %.40s\r\n", i + 1, names + (ptrdiff_t)i * 40);
    }
}

void c_rows(const int32_t* integers, const float* reals, int32_t count)
{
    for (int32_t i = 0; i < count; ++i, integers += 4, reals += columns_of_a_row) {
        fprintf(file,
                "%5d%5d%5d%5d%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f%15.5f"
                "%15.5f%15.5f\r\n",
                integers[0], integers[1], integers[2], integers[3], reals[0], reals[1], reals[2], reals[3], reals[4],
                reals[5], reals[6], reals[7], reals[8], reals[9], reals[10], reals[11], reals[12], reals[13], reals[14],
                reals[15]);
    }
}

void c_parameters(const float* values, int32_t count)
{
    for (int32_t segment = 1; segment <= count; ++segment) {
        fprintf(file, "%5d     Segment\r\n", segment);
        for (int i = 0; i < parameters_of_a_segment; ++i) {
            fprintf(file, "Parameter: %5d      Instance: %3d  Value: %20.4f\r\n", i / 2 + 1, i % 2 + 1, *values++);
        }
    }
}

void c_pairs(const float* times, const float* values, int32_t count)
{
    for (int32_t i = 0; i < count; ++i) {
        fprintf(file, "%10.4f     %10.4f\r\n", times[i], values[i]);
    }
}

static int has_point_form(float value)
{
    const float magnitude = fabsf(value);
    return magnitude == 0 || (magnitude >= 0.1F && magnitude < 999999.5F);
}

void c_free_pairs(const float* times, const float* values, int32_t count)
{
    static const char* const formats[2][2] = {{"  %.6E  %.6E\r\n", "  %.6E  %#.6g\r\n"},
                                              {"  %#.6g  %.6E\r\n", "  %#.6g  %#.6g\r\n"}};
    for (int32_t i = 0; i < count; ++i) {
        fprintf(file, formats[has_point_form(times[i])][has_point_form(values[i])], times[i], values[i]);
    }
}

void c_close(void)
{
    require(fclose(file) == 0, "fclose");
}
