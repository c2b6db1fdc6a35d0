#include "diagnostics/failure_store.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace zavrel {

FailureStore::FailureStore(std::uint32_t last_number)
    : lock_(u"ZavrelFuncs failure store"), last_number_(last_number) {}

std::uint32_t FailureStore::Record(const VekException& failure) {
  VekException copy = failure;  // before anything changes, since copying may run out of memory
  const std::lock_guard guard(lock_);
  if (++last_number_ == 0) ++last_number_;
  Slot& slot = slots_[last_number_ % kCapacity];
  slot.number = last_number_;
  slot.failure = std::move(copy);
  return last_number_;
}

std::optional<VekException> FailureStore::Find(std::uint32_t number) const {
  const std::lock_guard guard(lock_);
  if (number == 0) return std::nullopt;
  const Slot& slot = slots_[number % kCapacity];
  if (slot.number == number) return slot.failure;
  if (number > kShortNumber) return std::nullopt;
  const auto shortened = std::find_if(slots_.begin(), slots_.end(), [&](const Slot& kept) {
    return (kept.number & kShortNumber) == number;
  });
  if (shortened == slots_.end()) return std::nullopt;
  return shortened->failure;
}

}  // namespace zavrel
