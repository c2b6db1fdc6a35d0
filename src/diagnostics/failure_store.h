#pragma once
// The last failures, kept for whoever asks by number.

#include <array>
#include <cstdint>
#include <optional>

#include "diagnostics/vek_exception.h"
#include "platform/named_mutex.h"

namespace zavrel {

/// A ring of the 100 latest failures. Numbers start at 1 and are never 0, so 0 can mean success.
/// May be used from several threads at once.
class FailureStore {
 public:
  static constexpr std::uint32_t kCapacity = 100;
  /// As much of a number as an automation error value has room for.
  static constexpr std::uint32_t kShortNumber = 0xFFFF;

  /// `last_number`: the number after which counting goes on.
  explicit FailureStore(std::uint32_t last_number = 0);

  /// Keeps a copy, over the failure of 100 numbers ago, and returns its number.
  std::uint32_t Record(const VekException& failure);
  /// Nothing when the number was never given or has been overwritten. What an error value has kept
  /// of a number, its last 16 bits, finds the failure as well; all bits of an earlier one come
  /// first.
  std::optional<VekException> Find(std::uint32_t number) const;

 private:
  struct Slot {
    std::uint32_t number = 0;  // 0: empty
    VekException failure;
  };

  mutable NamedLock lock_;
  std::uint32_t last_number_;
  std::array<Slot, kCapacity> slots_;
};

}  // namespace zavrel
