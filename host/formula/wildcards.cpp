#include "host/formula/wildcards.h"

#include "host/workbook/text.h"

namespace zavhost {

WildcardPattern::WildcardPattern(std::u16string_view pattern) {
  const std::u16string lower = LowerCase(pattern.substr(0, kLongest));
  for (std::size_t i = 0; i < lower.size(); ++i) {
    const char16_t unit = lower[i];
    if (unit == u'*') {
      stays_.set(length_);
      has_wildcards_ = true;
      continue;
    }
    if (unit == u'~' && i + 1 < lower.size()) ++i;
    Add(lower[i], unit == u'?');
  }
}

void WildcardPattern::Add(char16_t unit, bool is_any) {
  if (is_any) {
    has_wildcards_ = true;
    takes_any_.set(length_);
  } else {
    takes_[unit].set(length_);
    plain_.push_back(unit);
  }
  ++length_;
}

bool WildcardPattern::Matches(std::u16string_view text) const {
  if (!has_wildcards_) return EqualIgnoringCase(plain_, text);
  States states;
  states.set(0);
  for (const char16_t unit : LowerCase(text)) {
    States takes = takes_any_;
    if (const auto found = takes_.find(unit); found != takes_.end()) takes |= found->second;
    states = ((states & takes) << 1) | (states & stays_);
    if (states.none()) return false;
  }
  return states.test(length_);
}

}  // namespace zavhost
