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

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the C library's names.
extern "C" {
void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* block, std::size_t bytes);
void* __libc_memalign(std::size_t alignment, std::size_t bytes);

[[gnu::visibility("default")]] void* malloc(std::size_t bytes) {
  return zavrel::tests::Asked([=] { return __libc_malloc(bytes); });
}
[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t bytes) {
  return zavrel::tests::Asked([=] { return __libc_calloc(count, bytes); });
}
[[gnu::visibility("default")]] void* realloc(void* block, std::size_t bytes) {
  return zavrel::tests::Asked([=] { return __libc_realloc(block, bytes); });
}
[[gnu::visibility("default")]] void* aligned_alloc(std::size_t alignment, std::size_t bytes) {
  return zavrel::tests::Asked([=] { return __libc_memalign(alignment, bytes); });
}
[[gnu::visibility("default")]] int posix_memalign(void** block, std::size_t alignment,
                                                  std::size_t bytes) {
  *block = zavrel::tests::Asked([=] { return __libc_memalign(alignment, bytes); });
  return *block != nullptr ? 0 : ENOMEM;
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
