#include "functions/distribution_selector.h"

#include <algorithm>
#include <string>

#include "platform/letter_case.h"

namespace zavrel {
namespace {

/// The whole number at the beginning of the text, at most `limit`; 0 if there is none.
std::int32_t LeadingNumber(std::u16string_view text, std::int32_t limit) {
  std::int32_t number = 0;
  for (const char16_t unit : text) {
    if (unit < u'0' || unit > u'9') break;
    number = std::min(number * 10 + (unit - u'0'), limit);
  }
  return number;
}

}  // namespace

std::int32_t SelectorIndex(std::u16string_view text) {
  std::u16string name(text);
  std::erase_if(name, [](char16_t unit) { return unit <= u' '; });
  const auto found = std::ranges::find_if(kDistributionProperties, [&](const auto& property) {
    return EqualIgnoringCase(name, property.word);
  });
  if (found != kDistributionProperties.end())
    return static_cast<std::int32_t>(found - kDistributionProperties.begin());
  constexpr auto kCount = static_cast<std::int32_t>(kDistributionProperties.size());
  return LeadingNumber(name, kCount + 1) - 1;
}

}  // namespace zavrel
