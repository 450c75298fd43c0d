#pragma once

/// Marks what a shared library exports: the classes and functions that other programs may use. All
/// else is compiled to be hidden; the names that result are listed in exports/, one file for each
/// library.
///
/// A class that has the mark exports all of its members, the private ones included, and what
/// exceptions and casts need to know of it. Code in a header needs no mark.
#if defined(__GNUC__)
#define TKPPDUPDATING_PUBLIC __attribute__((visibility("default")))
#else
#define TKPPDUPDATING_PUBLIC
#endif
