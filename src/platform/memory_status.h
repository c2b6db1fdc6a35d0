#pragma once
// The memory load of the machine.

#include <cstdint>

namespace zavrel {

struct MemoryStatus {
  std::uint32_t load_percent = 0;  // of physical memory in use, 0 to 100
  std::uint64_t total_physical = 0;
  std::uint64_t available_physical = 0;
  std::uint64_t total_virtual = 0;  // of this process's address space
  std::uint64_t available_virtual = 0;
};

/// Sizes in bytes; all zero if the system does not provide them.
MemoryStatus ReadMemoryStatus() noexcept;

}  // namespace zavrel
