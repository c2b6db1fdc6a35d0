#include "diagnostics/failure_store.h"

#include <mutex>
#include <utility>

namespace zavrel {

FailureStore::FailureStore(std::uint32_t last_number)
    : lock_(u"ZavrelFuncs failure store"), last_number_(last_number) {}

std::uint32_t FailureStore::Record(const VekException& failure) {
  VekException copy = failure;  // before anything changes, since this may lack memory
  const std::lock_guard guard(lock_);
  if (++last_number_ == 0) ++last_number_;
  Slot& slot = slots_[last_number_ % kCapacity];
  slot.number = last_number_;
  slot.failure = std::move(copy);
  return last_number_;
}

std::optional<VekException> FailureStore::Find(std::uint32_t number) const {
  const std::lock_guard guard(lock_);
  const Slot& slot = slots_[number % kCapacity];
  if (number == 0 || slot.number != number) return std::nullopt;
  return slot.failure;
}

}  // namespace zavrel
