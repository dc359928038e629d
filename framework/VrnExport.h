// The mark of what the shared library exports: the classes and functions that
// a client's code may name. The library is compiled with hidden visibility, so
// everything without the mark stays inside it.
#pragma once

#define VRN_EXPORT __attribute__((visibility("default")))
