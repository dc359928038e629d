/// @file
/// The mark of what the shared library exports: the classes and functions that
/// a client's code may name. The library is compiled with hidden visibility, so
/// everything without the mark stays inside it.
#pragma once

/// Marks a class, function or variable as exported from the shared library; expands to the default
/// visibility attribute.
#define VRN_EXPORT __attribute__((visibility("default")))
