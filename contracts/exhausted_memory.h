#pragma once
// What a program can export for the libraries of the suite that it loads.

namespace zavrel {

/// The name of a function void() that is called where a library's request for memory fails, and
/// does not return. For a program that computes for nobody to watch: in a cell, the error that the
/// library would give instead looks like any other.
inline constexpr const char* kMemoryExhausted = "ZavrelMemoryExhausted";

}  // namespace zavrel
