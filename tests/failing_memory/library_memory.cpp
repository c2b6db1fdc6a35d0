#include "failing_memory/library_memory.h"

#include <atomic>
#include <limits>

#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

constexpr std::int64_t kPlenty = std::numeric_limits<std::int64_t>::max();

// Threads of the add-in ask as well.
std::atomic<std::int64_t> left{kPlenty};
std::atomic<bool> lasting{false};
std::atomic<bool> has_failed{false};

}  // namespace

void LibraryMemory::RunOut(std::int64_t granted, Shortage shortage) {
  has_failed = false;
  lasting = shortage == Shortage::kLasting;
  left = granted;
}

bool LibraryMemory::Return() {
  left = kPlenty;
  return has_failed;
}

bool LibraryMemory::Grants() noexcept {
  if (left.load() == kPlenty || FakeExcel::inside > 0) return true;
  const std::int64_t before = left.fetch_sub(1);
  const bool fails = before == 0 || (before < 0 && lasting);
  if (fails) has_failed = true;
  return !fails;
}

}  // namespace zavrel::tests
