// For the few plain loops that most of a drawing's time goes into: the compiler makes them twice,
// for every processor of the family and for those with twice as wide registers, and the program
// takes the better one when it starts. The arithmetic is the same in both. What such a loop calls
// for each step has to become a part of it, to be made twice as well.
#pragma once

#include <climits>  // tells which C library there is

#if defined(__x86_64__) && defined(__GLIBC__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__) && defined(__OPTIMIZE__)
#define SERVICES_WIDE_LOOP __attribute__((target_clones("avx2", "default")))
#else
#define SERVICES_WIDE_LOOP
#endif

#if defined(__GNUC__)
#define SERVICES_PART_OF_LOOP inline __attribute__((always_inline))
#else
#define SERVICES_PART_OF_LOOP inline
#endif
