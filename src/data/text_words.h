#pragma once
// Texts of cells, four units at a time: most are too short for a call into the library to pay. The
// last word overlaps the one before it unless the length is a multiple of four.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zavrel {

inline constexpr std::size_t kWordUnits = sizeof(std::uint64_t) / sizeof(char16_t);

inline std::uint64_t WordOf(const char16_t* units) {
  std::uint64_t word = 0;
  std::memcpy(&word, units, sizeof word);
  return word;
}

/// Calls take(offset) for each word of a text of at least kWordUnits, while it returns true;
/// returns whether it always did.
template <class Take>
bool EachWord(std::size_t size, Take take) {
  for (std::size_t i = 0; i + kWordUnits < size; i += kWordUnits) {
    if (!take(i)) return false;
  }
  return take(size - kWordUnits);
}

inline bool SameText(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return false;
  if (a.size() < kWordUnits) return a == b;
  return EachWord(a.size(),
                  [&](std::size_t i) { return WordOf(a.data() + i) == WordOf(b.data() + i); });
}

inline void CopyText(std::u16string_view text, char16_t* to) {
  if (text.size() < kWordUnits) {
    for (const char16_t unit : text) *to++ = unit;
    return;
  }
  EachWord(text.size(), [&](std::size_t i) {
    std::memcpy(to + i, text.data() + i, sizeof(std::uint64_t));
    return true;
  });
}

}  // namespace zavrel
