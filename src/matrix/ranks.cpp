#include "matrix/ranks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace zavrel {
namespace {

// The sorted entries: the upper 32 of the bits in which the values differ, followed by the position
// of the value.
constexpr int kPrefixBits = 32;
constexpr int kDigitBits = 11;
constexpr std::size_t kDigitValues = std::size_t{1} << kDigitBits;
constexpr int kMostDigits = (kPrefixBits + kDigitBits - 1) / kDigitBits;
constexpr std::size_t kShort = 200;  // below this, a comparison sort is faster

using Entries = std::span<std::uint64_t>;
using Values = std::span<const double>;

/// The bits as an unsigned integer with the order of the doubles; the same for both zeros.
std::uint64_t Key(double value) {
  constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  if (bits == kSignBit) return kSignBit;
  return (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
}

std::uint64_t PrefixOf(std::uint64_t entry) { return entry >> kPrefixBits; }
std::uint32_t PositionOf(std::uint64_t entry) { return static_cast<std::uint32_t>(entry); }

std::uint64_t VaryingBits(Values values) {
  const std::uint64_t first = Key(values[0]);
  std::uint64_t varying = 0;
  for (const double value : values) varying |= Key(value) ^ first;
  return varying;
}

/// Sorts by prefix, least significant digit first; equal prefixes keep their order. The result is
/// in one of the two arrays.
Entries SortByPrefix(Entries entries, Entries other, int bits) {
  std::array<std::array<std::uint32_t, kDigitValues>, kMostDigits> places{};
  const int digits = std::min((bits + kDigitBits - 1) / kDigitBits, kMostDigits);
  const auto digit = [](std::uint64_t entry, int d) {
    return static_cast<std::size_t>(entry >> (kPrefixBits + d * kDigitBits)) & (kDigitValues - 1);
  };
  for (const std::uint64_t entry : entries) {
    for (int d = 0; d < digits; ++d) ++places[static_cast<std::size_t>(d)][digit(entry, d)];
  }
  for (int d = 0; d < digits; ++d) {
    auto& place = places[static_cast<std::size_t>(d)];
    std::uint32_t next = 0;
    for (std::uint32_t& p : place) next += std::exchange(p, next);
    for (const std::uint64_t entry : entries) other[place[digit(entry, d)]++] = entry;
    std::swap(entries, other);
  }
  return entries;
}

/// Sorts entries with equal prefixes by the whole value. If all values are equal, nothing moves.
void SortWithinPrefixes(Values values, Entries entries) {
  const auto key = [&](std::uint64_t entry) { return Key(values[PositionOf(entry)]); };
  for (std::size_t i = 0; i < entries.size();) {
    std::size_t end = i + 1;
    bool all_equal = true;
    while (end < entries.size() && PrefixOf(entries[end]) == PrefixOf(entries[i])) {
      all_equal = all_equal && key(entries[end]) == key(entries[i]);
      ++end;
    }
    if (!all_equal) {
      std::sort(entries.begin() + static_cast<std::ptrdiff_t>(i),
                entries.begin() + static_cast<std::ptrdiff_t>(end),
                [&](std::uint64_t a, std::uint64_t b) {
                  return key(a) != key(b) ? key(a) < key(b) : a < b;
                });
    }
    i = end;
  }
}

/// The same by comparisons alone.
void SortShort(Values values, Entries entries) {
  std::sort(entries.begin(), entries.end(), [&](std::uint64_t a, std::uint64_t b) {
    const std::uint64_t key_a = Key(values[PositionOf(a)]);
    const std::uint64_t key_b = Key(values[PositionOf(b)]);
    return key_a != key_b ? key_a < key_b : PositionOf(a) < PositionOf(b);
  });
}

/// The entries in ascending order, in one half of `scratch`.
Entries SortedEntries(Values values, std::span<std::uint64_t> scratch) {
  const std::size_t n = values.size();
  const std::uint64_t varying = VaryingBits(values);
  const int width = 64 - std::countl_zero(varying);
  const int dropped = std::max(width - kPrefixBits, 0);
  Entries entries = scratch.first(n);
  for (std::size_t i = 0; i < n; ++i)
    entries[i] = (Key(values[i]) >> dropped) << kPrefixBits | static_cast<std::uint64_t>(i);
  if (n < kShort) {
    SortShort(values, entries);
    return entries;
  }
  entries = SortByPrefix(entries, scratch.subspan(n, n), width - dropped);
  if (dropped > 0 && std::countr_zero(varying) < dropped) SortWithinPrefixes(values, entries);
  return entries;
}

}  // namespace

void OrderInto(Values values, RankOrder order, std::span<std::uint64_t> scratch) {
  if (values.empty()) return;
  const Entries entries = SortedEntries(values, scratch);
  order[0] = PositionOf(entries[0]) | kBeginsTie;
  for (std::size_t i = 1; i < entries.size(); ++i) {
    const std::uint32_t position = PositionOf(entries[i]);
    const bool ties = PrefixOf(entries[i]) == PrefixOf(entries[i - 1]) &&
                      values[position] == values[PositionOf(entries[i - 1])];
    order[i] = position | (ties ? 0 : kBeginsTie);
  }
}

namespace {

/// `counts(position)` is 1 for positions that are ranked, otherwise 0.
template <class Counts>
void Rank(std::span<const std::uint32_t> order, std::span<double> ranks, Counts counts) {
  std::uint32_t below = 0;
  for (std::size_t i = 0; i < order.size();) {
    const std::uint32_t position = order[i] & ~kBeginsTie;
    std::size_t end = i + 1;
    if (end == order.size() || (order[end] & kBeginsTie) != 0) {
      ranks[position] = below;
      below += counts(position);
    } else {
      std::uint32_t tied = counts(position);
      for (; end < order.size() && (order[end] & kBeginsTie) == 0; ++end)
        tied += counts(order[end]);
      const double average = below + (static_cast<double>(tied) - 1) / 2;
      for (std::size_t t = i; t < end; ++t) ranks[order[t] & ~kBeginsTie] = average;
      below += tied;
    }
    i = end;
  }
}

}  // namespace

void RankPresentInto(std::span<const std::uint32_t> order, std::span<const std::uint64_t> present,
                     std::span<double> ranks) {
  Rank(order, ranks, [present](std::uint32_t position) {
    return static_cast<std::uint32_t>(present[position / 64] >> (position % 64) & 1);
  });
}

void RankAllInto(std::span<const std::uint32_t> order, std::span<double> ranks) {
  Rank(order, ranks, [](std::uint32_t) { return std::uint32_t{1}; });
}

}  // namespace zavrel
