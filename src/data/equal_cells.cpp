#include "data/equal_cells.h"

#include <cstddef>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "data/equal_cells.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.h, which sets what it defines.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace zavrel::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

std::size_t CountEqual(const XLOPER12* cells, const CellTag* tags, const double* payloads,
                       std::size_t count) {
  static_assert(sizeof(XLOPER12) == 4 * sizeof(std::uint64_t) && offsetof(XLOPER12, xltype) == 24);
  const hn::ScalableTag<std::uint64_t> d;
  const hn::Rebind<std::uint32_t, decltype(d)> d32;
  const hn::Rebind<std::uint8_t, decltype(d)> d8;
  const auto number = hn::Set(d, static_cast<std::uint64_t>(CellTag::kNumber));
  const auto blank = hn::Set(d, static_cast<std::uint64_t>(CellTag::kBlank));
  const auto no_type = hn::Set(d, ~std::uint64_t{0});
  std::size_t i = 0;
  for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
    hn::Vec<decltype(d)> value, second, third, type;
    hn::LoadInterleaved4(d, reinterpret_cast<const std::uint64_t*>(cells + i), value, second, third,
                         type);
    const auto byte = hn::LoadU(d8, reinterpret_cast<const std::uint8_t*>(tags + i));
    const auto tag = hn::PromoteTo(d, hn::PromoteTo(d32, byte));
    const auto payload = hn::LoadU(d, reinterpret_cast<const std::uint64_t*>(payloads + i));
    const auto is_blank = hn::Eq(tag, blank);
    const auto known_type =
        hn::IfThenElse(hn::Eq(tag, number), hn::Set(d, xltypeNum),
                       hn::IfThenElse(is_blank, hn::Set(d, xltypeNil), no_type));
    const auto given_type = hn::And(type, hn::Set(d, xltypeMask));
    const auto difference = hn::Or(hn::Xor(given_type, known_type),
                                   hn::IfThenZeroElse(is_blank, hn::Xor(value, payload)));
    if (!hn::AllTrue(d, hn::Eq(difference, hn::Zero(d)))) break;
  }
  return i;
}

}  // namespace
}  // namespace zavrel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace zavrel {
namespace {
HWY_EXPORT(CountEqual);
}

std::size_t CountEqualNumbersAndBlanks(const XLOPER12* cells, const CellTag* tags,
                                       const double* payloads, std::size_t count) {
  return HWY_DYNAMIC_DISPATCH(CountEqual)(cells, tags, payloads, count);
}

}  // namespace zavrel
#endif
