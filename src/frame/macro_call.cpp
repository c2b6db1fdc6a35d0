#include "frame/macro_call.h"

#include <new>

#include "contracts/message_ids.h"
#include "diagnostics/log.h"
#include "diagnostics/vek_exception.h"
#include "frame/session.h"

namespace zavrel {
namespace {

bool Returns(FunctionRef<void()> body) noexcept {
  try {
    body();
    return true;
  } catch (...) {
    return false;
  }
}

std::uint32_t Record(const VekException& failure) {
  Session* session = Session::Current();
  return session != nullptr ? session->failures().Record(failure) : 0;
}

}  // namespace

bool frame::RunTracedBody(const char* name, FunctionRef<void()> body) noexcept {
  return Returns([&] {
    const ScopedTrace trace(name);
    body();
  });
}

std::uint32_t MacroCall(const char* name, FunctionRef<void()> body) noexcept {
  std::uint32_t number = kUnrecordedFailure;
  Returns([&] {
    try {
      const ScopedTrace trace(name);
      body();
      number = 0;
    } catch (const VekException& failure) {
      number = Record(failure);
    } catch (const std::bad_alloc&) {
      number = Record(VekOutOfMemory(name, messages::kMessageOutOfMemory));
    } catch (...) {
      number = Record(VekUnknownException(name, messages::kMessageUnknownException));
    }
  });
  return number;
}

void UntracedCall(FunctionRef<void()> body) noexcept { Returns(body); }

}  // namespace zavrel
