/* libkelcore: the small platform layer that libkelcce9 calls.
   Aligned allocation, the processor's largest cache and the thread count
   that parallel regions use. */
#ifndef KELCORE_H
#define KELCORE_H

#include <stddef.h>

#if defined(__GNUC__)
#define KELCORE_API __attribute__((visibility("default")))
#else
#define KELCORE_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A block of at least `size` bytes on a 64-byte boundary (so also on 16),
   or null when `size` is 0 or the memory is not there. */
KELCORE_API void* kelMalloc(size_t size);
/* Releases a block from kelMalloc; null is accepted and ignored. */
KELCORE_API void kelFree(void* ptr);
/* Writes the size in bytes of the processor's largest cache to *size.
   Returns 0 when the size is known, non-zero (and writes nothing) when not. */
KELCORE_API int kelGetMaxCacheSizeB(int* size);
/* Number of threads a parallel region of the library is to use: 1 or more. */
KELCORE_API int ownGetNumThreads(void);
/* Sets that number for all later calls; a value below 1 restores the
   default, which is omp_get_max_threads() (so OMP_NUM_THREADS applies). */
KELCORE_API void kelSetNumThreads(int n);
/* The number that ownGetNumThreads answers. */
KELCORE_API int kelGetNumThreads(void);

#ifdef __cplusplus
}
#endif
#endif
