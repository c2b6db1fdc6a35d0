// A host that closes the add-in from within a call, as a macro of an event can have it do.
#include <doctest/doctest.h>

#include "faults/open_functions.h"
#include "frame/opening.h"
#include "frame/session.h"
#include "platform/export.h"

namespace zavrel {
ZAV_EXPORT std::int32_t xlAutoOpen();
ZAV_EXPORT std::int32_t xlAutoClose();
}  // namespace zavrel

namespace zavrel::tests {

TEST_CASE("closed from within a call, the add-in is closed once the call has ended") {
  int closed = 0;
  for (std::size_t place = 0; place < 3; ++place) {
    std::vector<RegisteredFunction> functions;
    for (std::size_t i = 0; i == 0 || i < functions.size(); ++i) {
      OpenFunctions add_in;
      if (functions.empty()) functions = FunctionsOf(add_in.excel);
      EnterHandle(add_in.excel);
      std::size_t calls = 0;
      add_in.excel.fault = [&](int, FakeExcel::Arguments, XLOPER12&) -> std::optional<int> {
        if (calls++ == place) CHECK(xlAutoClose() == 1);
        return std::nullopt;
      };
      functions[i].Call(0);
      add_in.excel.fault = nullptr;
      CHECK_MESSAGE((Session::Current() == nullptr) == (calls > place), functions[i].name());
      closed += calls > place ? 1 : 0;
    }
  }
  CHECK(closed > 100);
}

TEST_CASE("opened again from within the same call, the add-in stays open") {
  OpenFunctions add_in;
  add_in.excel.fault = [&](int, FakeExcel::Arguments, XLOPER12&) -> std::optional<int> {
    CHECK(xlAutoClose() == 1);
    CHECK(xlAutoOpen() == 1);
    return std::nullopt;
  };
  const std::vector<RegisteredFunction> functions = FunctionsOf(add_in.excel);
  const Outcome outcome = functions.front().Call(0);
  add_in.excel.fault = nullptr;
  CHECK(Session::Current() != nullptr);
  CHECK(functions.front().Call(0).shown == outcome.shown);
}

}  // namespace zavrel::tests
