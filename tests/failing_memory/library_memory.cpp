#include "failing_memory/library_memory.h"

#include <atomic>
#include <thread>

#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

using Shortage = LibraryMemory::Shortage;

std::atomic<bool> is_short{false};
std::atomic<std::thread::id> short_thread;
Shortage kind;
std::atomic<std::int64_t> left;  // of that thread
std::atomic<bool> has_failed{false};

bool IsGranted() noexcept {
  const bool is_other = std::this_thread::get_id() != short_thread.load();
  if (kind == Shortage::kOtherThreads) return !is_other;
  if (is_other) return kind != Shortage::kEverywhere || left >= 0;
  const std::int64_t now = --left;
  return now >= 0 || (kind == Shortage::kOneRequest && now < -1);
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
