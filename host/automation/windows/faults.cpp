#include "host/automation/windows/faults.h"

#include <algorithm>

#include "host/workbook/text.h"

namespace zavhost {

void Faults::FailCall(std::size_t k, Fault fault) {
  by_call_.insert_or_assign(calls_ + k, std::move(fault));
}

void Faults::FailMember(std::u16string_view member, std::size_t times, Fault fault) {
  by_member_.push_back({std::u16string(member), times, std::move(fault)});
}

std::optional<Fault> Faults::Next(std::u16string_view class_name, std::u16string_view member) {
  ++calls_;
  if (const auto found = by_call_.extract(calls_)) return found.mapped();
  const std::u16string full = std::u16string(class_name) + u"." + std::u16string(member);
  const auto found = std::find_if(by_member_.begin(), by_member_.end(), [&](const OfMember& fault) {
    return fault.times > 0 &&
           (EqualIgnoringCase(fault.member, member) || EqualIgnoringCase(fault.member, full));
  });
  if (found == by_member_.end()) return std::nullopt;
  --found->times;
  return found->fault;
}

}  // namespace zavhost
