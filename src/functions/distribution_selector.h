#pragma once
// The properties of a distribution that a call can select.

#include <array>
#include <cstdint>
#include <string_view>

#include "contracts/pdflib.h"

namespace zavrel {

/// A property: its word, and its place in the distribution companion's answer.
struct DistributionProperty {
  std::u16string_view word;
  std::int16_t request;
  int moment = 0;  // of a request for moments
  bool root = false;

  bool needs_x() const { return request != PDFLIB_MOMENTS; }
};

inline constexpr std::array<DistributionProperty, 12> kDistributionProperties = {{
    {u"Mean", PDFLIB_MOMENTS, PDFLIB_MEAN},
    {u"StDev", PDFLIB_MOMENTS, PDFLIB_VARIANCE, true},
    {u"Var", PDFLIB_MOMENTS, PDFLIB_VARIANCE},
    {u"Skew", PDFLIB_MOMENTS, PDFLIB_SKEWNESS},
    {u"Kurt", PDFLIB_MOMENTS, PDFLIB_KURTOSIS},
    {u"Mode", PDFLIB_MOMENTS, PDFLIB_MODE},
    {u"DiscreteMean", PDFLIB_MOMENTS, PDFLIB_DISCRETE_MEAN},
    {u"xtoy", PDFLIB_DENSITY},
    {u"xtop", PDFLIB_CUMULATIVE},
    {u"ptox", PDFLIB_QUANTILE},
    {u"xtoq", PDFLIB_UPPER_TAIL},
    {u"qtox", PDFLIB_UPPER_QUANTILE},
}};

/// The index of the property that a text names by its word, in any letter case, or by its number
/// from 1. Blanks and control characters are ignored everywhere. A text that is not a property's
/// word and does not begin with a digit gives -1. The index may lie beyond the properties: then the
/// text names none.
std::int32_t SelectorIndex(std::u16string_view text);

}  // namespace zavrel
