#include "platform/swapped_array.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

#include "platform/mapped_file.h"
#include "platform/memory_status.h"
#include "platform/temporary_folder.h"

namespace zavrel {
namespace {

constexpr std::size_t kNeverSwapped = std::size_t{64} << 20;
constexpr std::uint64_t kShareOfMemory = 4;

std::atomic<std::size_t> set_budget = 0;  // 0: not set

/// Asked first, since a system may fill the disk before it finds the rest missing.
bool HasSpace(const std::filesystem::path& folder, std::size_t bytes) {
  std::error_code error;
  const std::filesystem::space_info space = std::filesystem::space(folder, error);
  return error || space.available >= bytes;
}

}  // namespace

bool ExceedsMemoryBudget(std::size_t bytes) noexcept {
  if (const std::size_t budget = set_budget.load(std::memory_order_relaxed); budget != 0)
    return bytes > budget;
  if (bytes <= kNeverSwapped) return false;
  const MemoryStatus status = ReadMemoryStatus();
  return status.total_physical != 0 && bytes > status.available_physical / kShareOfMemory;
}

MemoryBudget::MemoryBudget(std::size_t bytes) noexcept {
  set_budget = std::max<std::size_t>(bytes, 1);
}
MemoryBudget::~MemoryBudget() { set_budget = 0; }

std::optional<SwappedArray> SwappedArray::Make(std::size_t count, SwapFailure& failure) {
  constexpr std::size_t kMost =
      static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()) / sizeof(double);
  const std::filesystem::path folder = TemporaryFolder();
  const std::size_t bytes = std::max<std::size_t>(count, 1) * sizeof(double);
  if (count > kMost) {
    failure = SwapFailure::kNoAddresses;
  } else if (folder.empty()) {
    failure = SwapFailure::kNoFile;
  } else if (!HasSpace(folder, bytes)) {
    failure = SwapFailure::kNoSpace;
  } else if (auto first = MapTemporaryFile(folder, bytes, failure)) {
    return SwappedArray(std::move(first), count);
  }
  return std::nullopt;
}

}  // namespace zavrel
