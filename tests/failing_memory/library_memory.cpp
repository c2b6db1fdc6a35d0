#include "failing_memory/library_memory.h"

#include <atomic>
#include <thread>

#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

using Shortage = LibraryMemory::Shortage;

std::atomic<bool> is_short{false};
std::atomic<std::thread::id> short_thread;
// Of that thread alone, except the last.
Shortage kind;
std::int64_t left;
std::atomic<bool> has_failed{false};

bool IsGranted() noexcept {
  const bool is_other = std::this_thread::get_id() != short_thread.load();
  if (kind == Shortage::kOtherThreads) return !is_other;
  if (is_other) return true;
  --left;
  return left >= 0 || (kind == Shortage::kOneRequest && left < -1);
}

}  // namespace

void LibraryMemory::RunOut(std::int64_t granted, Shortage shortage) {
  kind = shortage;
  left = granted;
  short_thread = std::this_thread::get_id();
  has_failed = false;
  is_short = true;
}

bool LibraryMemory::Return() {
  is_short = false;
  return has_failed;
}

bool LibraryMemory::Grants() noexcept {
  if (!is_short || FakeExcel::inside > 0 || IsGranted()) return true;
  has_failed = true;
  return false;
}

}  // namespace zavrel::tests
