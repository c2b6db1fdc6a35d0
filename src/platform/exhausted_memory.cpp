#include "platform/exhausted_memory.h"

#include <cerrno>
#include <new>

#include "contracts/exhausted_memory.h"
#include "platform/module.h"

namespace zavrel {

void TakeOverNewHandler() noexcept {
  if (const ExportAddress found = LoadedModule::HostExecutable().FindExport(kMemoryExhausted))
    std::set_new_handler(AsFunction<void()>(found));
}

void CallNewHandler() {
  if (const std::new_handler handler = std::get_new_handler()) handler();
}

void ThrowBadAlloc() {
  CallNewHandler();
  throw std::bad_alloc();
}

void ThrowIfNoMemory() {
  if (errno == ENOMEM) ThrowBadAlloc();
}

void ThrowIfNoMemory(const std::error_code& error) {
  if (error == std::errc::not_enough_memory) ThrowBadAlloc();
}

}  // namespace zavrel
