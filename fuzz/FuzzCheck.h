// A property a fuzz target checks on what the code under test returned. A
// failure prints the condition and aborts, which the fuzzer (and the corpus
// replay test) reports as a finding with its input.
#pragma once

#include <cstdio>
#include <cstdlib>

#define FUZZ_CHECK(condition)                                                                          \
    do {                                                                                               \
        if (!(condition)) {                                                                            \
            std::fprintf(stderr, "%s:%d: property failed: %s\n", __FILE__, __LINE__, #condition);      \
            std::abort();                                                                              \
        }                                                                                              \
    } while (false)
