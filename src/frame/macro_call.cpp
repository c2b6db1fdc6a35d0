#include "frame/macro_call.h"

#include <fmt/format.h>

#include <new>

#include "contracts/message_ids.h"
#include "diagnostics/log.h"
#include "diagnostics/vek_exception.h"
#include "frame/opening.h"

namespace zavrel {
namespace {

bool Returns(FunctionRef<void()> body) noexcept {
  const RunningCall running;
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

bool frame::RunTracedBody(const char* name, FunctionRef<void()> body, ResultText result) noexcept {
  ScopedTrace trace(name);
  const bool returned = Returns(body);
  trace.SetResult(result);
  return returned;
}

std::string frame::NumberText(double number) { return fmt::format("{}", number); }
std::string frame::NumberText(std::int64_t number) { return std::to_string(number); }

std::uint32_t MacroCall(const char* name, FunctionRef<void()> body) noexcept {
  std::uint32_t number = kUnrecordedFailure;
  const auto record = [&] {
    try {
      body();
      number = 0;
    } catch (const VekException& failure) {
      number = Record(failure);
    } catch (const std::bad_alloc&) {
      number = Record(VekOutOfMemory(name, messages::kMessageOutOfMemory));
    } catch (...) {
      number = Record(VekUnknownException(name, messages::kMessageUnknownException));
    }
  };
  frame::RunTracedBody(name, record, [&] { return frame::PlainResultText(number); });
  return number;
}

void UntracedCall(FunctionRef<void()> body) noexcept { Returns(body); }

}  // namespace zavrel
