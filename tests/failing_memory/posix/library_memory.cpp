// The allocator of the whole program, and with it of the libraries that it loads.
#include "failing_memory/library_memory.h"

#include <cerrno>
#include <cstddef>

namespace zavrel::tests {

void LibraryMemory::Watch(const LoadedModule&) {}

namespace {

template <class Ask>
void* Asked(Ask ask) noexcept {
  if (LibraryMemory::Grants()) return ask();
  errno = ENOMEM;
  return nullptr;
}

}  // namespace
}  // namespace zavrel::tests

// NOLINTBEGIN(readability-*): the C library's own parameters have other names.
extern "C" {
void* LibcMalloc(std::size_t bytes) asm("__libc_malloc");
void* LibcCalloc(std::size_t count, std::size_t bytes) asm("__libc_calloc");
void* LibcRealloc(void* block, std::size_t bytes) asm("__libc_realloc");
void* LibcMemalign(std::size_t alignment, std::size_t bytes) asm("__libc_memalign");

[[gnu::visibility("default")]] void* malloc(std::size_t bytes) {
  return zavrel::tests::Asked([=] { return LibcMalloc(bytes); });
}
[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t bytes) {
  return zavrel::tests::Asked([=] { return LibcCalloc(count, bytes); });
}
[[gnu::visibility("default")]] void* realloc(void* block, std::size_t bytes) {
  return zavrel::tests::Asked([=] { return LibcRealloc(block, bytes); });
}
[[gnu::visibility("default")]] void* aligned_alloc(std::size_t alignment, std::size_t bytes) {
  return zavrel::tests::Asked([=] { return LibcMemalign(alignment, bytes); });
}
[[gnu::visibility("default")]] int posix_memalign(void** block, std::size_t alignment,
                                                  std::size_t bytes) {
  *block = zavrel::tests::Asked([=] { return LibcMemalign(alignment, bytes); });
  return *block != nullptr ? 0 : ENOMEM;
}
}
// NOLINTEND(readability-*)
