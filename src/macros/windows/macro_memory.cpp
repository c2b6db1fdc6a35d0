#include "macros/macro_memory.h"

#include <windows.h>

namespace zavrel {
namespace {

constexpr DWORD kWritable =
    PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD kReadable = kWritable | PAGE_READONLY | PAGE_EXECUTE_READ;

/// True when every region that the bytes touch is committed with one of the protections.
bool IsProtectedBy(DWORD protections, const void* address, std::size_t size) {
  auto at = reinterpret_cast<std::uintptr_t>(address);
  const std::uintptr_t end = at + size;
  if (end < at) return false;
  while (at < end) {
    MEMORY_BASIC_INFORMATION region{};
    if (VirtualQuery(reinterpret_cast<void*>(at), &region, sizeof region) == 0 ||
        region.State != MEM_COMMIT || (region.Protect & protections) == 0 ||
        (region.Protect & (PAGE_GUARD | PAGE_NOACCESS)) != 0) {
      return false;
    }
    at = reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize;
  }
  return true;
}

}  // namespace

bool IsReadableMemory(const void* address, std::size_t size) {
  return IsProtectedBy(kReadable, address, size);
}

bool IsWritableMemory(const void* address, std::size_t size) {
  return IsProtectedBy(kWritable, address, size);
}

}  // namespace zavrel
