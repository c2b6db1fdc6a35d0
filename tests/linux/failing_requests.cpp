// Preloaded into a program: of the requests for memory that it and the programs that it starts make
// from main on, one fails, or all do from one on. The file that FAILING_REQUESTS names says which,
// and counts them.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>

#include "failing_memory/library_memory.h"

namespace zavrel::tests {
namespace {

struct Plan {
  std::int64_t granted;  // requests before the first that fails
  std::int64_t lasting;  // not 0: all later ones fail, too
  std::atomic<std::int64_t> requests;
};
static_assert(std::atomic<std::int64_t>::is_always_lock_free, "processes share it");

std::atomic<Plan*> plan{nullptr};

using Main = int(int count, char** arguments, char** environment);
Main* program = nullptr;

int MainOnPlan(int count, char** arguments, char** environment) {
  const int file = open(std::getenv("FAILING_REQUESTS"), O_RDWR | O_CLOEXEC);
  void* const shared = mmap(nullptr, sizeof(Plan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  if (shared == MAP_FAILED) std::abort();
  close(file);
  plan = static_cast<Plan*>(shared);
  return program(count, arguments, environment);
}

}  // namespace

bool LibraryMemory::Grants() noexcept {
  Plan* const known = plan.load(std::memory_order_relaxed);
  if (known == nullptr) return true;
  const std::int64_t before = known->requests.fetch_add(1);
  return before < known->granted || (before > known->granted && known->lasting == 0);
}

// In the place of the C library's own.
extern "C" [[gnu::visibility("default")]] int Start(Main* main, int count, char** arguments,
                                                    void (*initialise)(), void (*finish)(),
                                                    void (*finish_loader)(),
                                                    void* end_of_stack) asm("__libc_start_main");
extern "C" int Start(Main* main, int count, char** arguments, void (*initialise)(),
                     void (*finish)(), void (*finish_loader)(), void* end_of_stack) {
  program = main;
  void* const found = dlsym(RTLD_NEXT, "__libc_start_main");
  return reinterpret_cast<decltype(&Start)>(found)(MainOnPlan, count, arguments, initialise, finish,
                                                   finish_loader, end_of_stack);
}

}  // namespace zavrel::tests
