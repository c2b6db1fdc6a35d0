#include "platform/memory_status.h"

#include <chrono>
#include <cstdio>
#include <memory>

namespace zavrel {
namespace {

MemoryStatus ReadFromKernel() noexcept {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen("/proc/meminfo", "r"),
                                                             &std::fclose);
  if (file == nullptr) return {};
  unsigned long long total = 0;
  unsigned long long unused = 0;
  unsigned long long available = 0;  // includes reclaimable caches, unlike the second line
  // NOLINTNEXTLINE(cert-err34-c): the numbers are the kernel's own and fit.
  const int found = std::fscanf(file.get(), "MemTotal: %llu kB MemFree: %llu kB MemAvailable: %llu",
                                &total, &unused, &available);
  if (found != 3 || total == 0 || available > total) return {};
  constexpr std::uint64_t kAddressSpace = std::uint64_t{1} << 47;
  return {static_cast<std::uint32_t>((total - available) * 100 / total), total * 1024,
          available * 1024, kAddressSpace, kAddressSpace};
}

}  // namespace

// Each reading takes ten microseconds, since the kernel writes a page of text. The load changes
// little within a tenth of a second.
MemoryStatus ReadMemoryStatus() noexcept {
  using Clock = std::chrono::steady_clock;
  static thread_local MemoryStatus latest;
  static thread_local Clock::time_point good_until;
  if (const auto now = Clock::now(); now >= good_until) {
    latest = ReadFromKernel();
    good_until = now + std::chrono::milliseconds(100);
  }
  return latest;
}

}  // namespace zavrel
