#include "stats/sort_ascending.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "stats/sort_ascending.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.h, which sets what these define.
#include <hwy/contrib/sort/traits-inl.h>
#include <hwy/contrib/sort/vqsort-inl.h>

HWY_BEFORE_NAMESPACE();
namespace zavrel::HWY_NAMESPACE {
namespace {

/// As hwy::Sort does it, but for the pivots: that asks the system for random bits at every call.
void SortKeys(std::uint64_t* keys, std::size_t count) {
#if VQSORT_ENABLED
  namespace hn = hwy::HWY_NAMESPACE;
  const hn::SortTag<std::uint64_t> d;
  const hn::detail::SharedTraits<hn::detail::TraitsLane<hn::detail::OrderAscending<std::uint64_t>>>
      order;
  HWY_ALIGN std::uint64_t buffer[hwy::SortConstants::BufNum<std::uint64_t>(hn::MaxLanes(d))] = {};
  hn::detail::Generator pivots(std::uint64_t{count});
  const std::size_t most_levels = 2 * hwy::CeilLog2(count) + 4;  // then by heap
  hn::detail::Recurse(d, order, keys, keys + count, count, buffer, pivots, most_levels);
#else
  std::sort(keys, keys + count);
#endif
}

}  // namespace
}  // namespace zavrel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace zavrel {
namespace {

HWY_EXPORT(SortKeys);

constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;

/// The bits as an unsigned integer with the order of the doubles.
std::uint64_t Key(std::uint64_t bits) {
  return bits ^ ((std::uint64_t{0} - (bits >> 63)) | kSignBit);
}
std::uint64_t Key(double value) { return Key(std::bit_cast<std::uint64_t>(value)); }
std::uint64_t BitsOfKey(std::uint64_t key) {
  return key ^ (((key >> 63) - std::uint64_t{1}) | kSignBit);
}

// Comparing the doubles themselves is not an order if a not-a-number is among them.
bool Before(double a, double b) { return Key(a) < Key(b); }

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

void SortAscending(std::span<double> values) {
  if (std::is_sorted(values.begin(), values.end(), Before)) return;
  if (std::is_sorted(values.rbegin(), values.rend(), Before)) {
    std::reverse(values.begin(), values.end());
    return;
  }
  // The keys take the place of the values, which this file's compile options allow.
  const std::span keys(reinterpret_cast<std::uint64_t*>(values.data()), values.size());
  for (std::uint64_t& key : keys) key = Key(key);
  HWY_DYNAMIC_DISPATCH(SortKeys)(keys.data(), keys.size());
  for (std::uint64_t& key : keys) key = BitsOfKey(key);
}

void SortMiddle(std::span<double> values, std::span<double> scratch) {
  const std::size_t n = values.size();
  if (n < 4 * kSample) return SortAscending(values);
  const auto [low, high] = AroundMedian(values);
  std::size_t below = 0;
  std::size_t between = 0;
  for (const double value : values) {
    const std::uint64_t key = Key(value);
    scratch[between] = value;
    between += std::size_t{key - low <= high - low};
    below += std::size_t{key < low};
  }
  if (below + 2 > n / 2 || below + between < n / 2 + 2) return SortAscending(values);
  const std::span<double> places = values.subspan(below, between);
  std::copy_n(scratch.begin(), between, places.begin());
  SortAscending(places);
}

}  // namespace zavrel
#endif
