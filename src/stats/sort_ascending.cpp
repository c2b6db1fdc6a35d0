#include "stats/sort_ascending.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>

namespace zavrel {
namespace {

// With digits of 10 bits there are at most seven passes; with 11 bits, the table of a pass would no
// longer fit into the fastest cache.
constexpr int kDigitBits = 10;
constexpr std::size_t kDigitValues = std::size_t{1} << kDigitBits;
constexpr std::size_t kShort = 256;  // from here on the radix sort is faster

using Counts = std::array<std::uint32_t, kDigitValues>;

/// The bits as an unsigned integer with the order of the doubles.
std::uint64_t Key(double value) {
  constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  return (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
}

// Comparing the doubles themselves is not an order if a not-a-number is among them.
bool Before(double a, double b) { return Key(a) < Key(b); }

std::size_t Digit(std::uint64_t key, int lowest_bit) {
  return key >> lowest_bit & (kDigitValues - 1);
}

/// The bits in which the keys differ.
std::uint64_t VaryingBits(std::span<const double> values) {
  const std::uint64_t first = Key(values[0]);
  std::uint64_t varying = 0;
  for (const double value : values) varying |= Key(value) ^ first;
  return varying;
}

/// Converts the counts to the places where the values with each digit begin.
void ToFirstPlaces(Counts& counts) {
  std::uint32_t place = 0;
  for (std::uint32_t& count : counts) {
    const std::uint32_t next = place + count;
    count = place;
    place = next;
  }
}

/// Moves the values to the places of their digits, and counts the digits of the next pass.
void Distribute(std::span<const double> from, double* to, Counts& places, int lowest_bit,
                Counts& next_counts, int next_lowest_bit) {
  for (const double value : from) {
    const std::uint64_t key = Key(value);
    ++next_counts[Digit(key, next_lowest_bit)];
    to[places[Digit(key, lowest_bit)]++] = value;
  }
}

// Each digit begins at a bit that varies, so bits in which all values agree cost nothing.
void RadixSort(std::span<double> values, double* scratch) {
  std::uint64_t varying = VaryingBits(values);
  int lowest_bit = std::countr_zero(varying);
  Counts counts{};
  Counts next_counts;
  for (const double value : values) ++counts[Digit(Key(value), lowest_bit)];

  double* from = values.data();
  double* to = scratch;
  while (varying != 0) {
    varying &= ~(std::uint64_t{kDigitValues - 1} << lowest_bit);
    const int next_lowest_bit = varying != 0 ? std::countr_zero(varying) : lowest_bit;
    ToFirstPlaces(counts);
    next_counts.fill(0);
    Distribute({from, values.size()}, to, counts, lowest_bit, next_counts, next_lowest_bit);
    std::swap(from, to);
    counts = next_counts;
    lowest_bit = next_lowest_bit;
  }
  if (from != values.data()) std::memcpy(values.data(), from, values.size_bytes());
}

constexpr std::size_t kSample = 2048;
// Four standard deviations of the rank that the median has in a sample.
constexpr std::size_t kSampleHalf = std::size_t{4} * 23;

/// Two keys with the median between them, nearly always.
struct KeyRange {
  std::uint64_t low, high;
};
KeyRange AroundMedian(std::span<const double> values) {
  std::array<std::uint64_t, kSample> sample;
  for (std::size_t i = 0; i < kSample; ++i) sample[i] = Key(values[values.size() / kSample * i]);
  const auto low = sample.begin() + (kSample / 2 - kSampleHalf);
  const auto high = sample.begin() + (kSample / 2 + kSampleHalf);
  std::nth_element(sample.begin(), low, sample.end());
  std::nth_element(low + 1, high, sample.end());
  return {*low, *high};
}

}  // namespace

void SortAscending(std::span<double> values, std::span<double> scratch) {
  if (std::is_sorted(values.begin(), values.end(), Before)) return;
  if (std::is_sorted(values.rbegin(), values.rend(), Before)) {
    std::reverse(values.begin(), values.end());
    return;
  }
  if (values.size() < kShort || values.size() > std::numeric_limits<std::uint32_t>::max()) {
    std::sort(values.begin(), values.end(), Before);
    return;
  }
  RadixSort(values, scratch.data());
}

void SortMiddle(std::span<double> values, std::span<double> scratch) {
  const std::size_t n = values.size();
  if (n < 4 * kSample) return SortAscending(values, scratch);
  const auto [low, high] = AroundMedian(values);
  std::size_t below = 0;
  std::size_t between = 0;
  for (const double value : values) {
    const std::uint64_t key = Key(value);
    scratch[between] = value;
    between += std::size_t{key - low <= high - low};
    below += std::size_t{key < low};
  }
  if (below + 2 > n / 2 || below + between < n / 2 + 2) return SortAscending(values, scratch);
  const std::span<double> places = values.subspan(below, between);
  std::copy_n(scratch.begin(), between, places.begin());
  SortAscending(places, scratch);
}

}  // namespace zavrel
