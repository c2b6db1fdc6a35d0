#pragma once
// Keeps the latest failures for later requests by number.

#include <array>
#include <cstdint>
#include <optional>

#include "diagnostics/vek_exception.h"
#include "platform/named_mutex.h"

namespace zavrel {

/// A ring of the 100 latest failures. Their numbers start at 1 and are never 0, so 0 can mean
/// success. Thread-safe.
class FailureStore {
 public:
  static constexpr std::uint32_t kCapacity = 100;
  /// The part of a number that fits into an automation error value.
  static constexpr std::uint32_t kShortNumber = 0xFFFF;

  /// `last_number`: counting continues after this number.
  explicit FailureStore(std::uint32_t last_number = 0);

  /// Stores a copy, which replaces the failure from 100 numbers before, and returns its number.
  std::uint32_t Record(const VekException& failure);
  /// Nothing if the number was never assigned or has been overwritten. The last 16 bits of a
  /// number, which an error value keeps, also find the failure; a failure whose full number matches
  /// takes precedence.
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
