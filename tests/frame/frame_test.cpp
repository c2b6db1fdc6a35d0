#include <doctest/doctest.h>

#include <exception>
#include <new>
#include <stdexcept>
#include <string>

#include "diagnostics/vek_exception.h"
#include "frame/cache_upkeep.h"
#include "frame/macro_call.h"
#include "frame/session.h"
#include "frame/worksheet_function.h"
#include "support/fake_excel.h"
#include "support/log_folder.h"
#include "support/quiet_services.h"

namespace zavrel::tests {
namespace {

/// What is emptied with the session's caches.
struct Cache {
  void Clear() noexcept { ++cleared; }
  int cleared = 0;
};

struct WithSession {
  WithSession() {
    SessionServices services = QuietServices();
    services.memory_load = [this] { return load; };
    Session::Open(ThisAddIn(), services);
    Session::Current()->Kept<Cache>();
  }
  ~WithSession() { Session::Close(); }

  FakeExcel excel;
  unsigned load = 20;
};

bool IsNA(const XLOPER12* value) {
  return (value->xltype & xltypeMask) == xltypeErr && value->val.err == xlerrNA;
}

void CheckThrown(const std::exception_ptr& thrown) {
  CHECK(IsNA(WorksheetFunction("f", [&]() -> XXloper { std::rethrow_exception(thrown); })));
  CHECK(PlainFunction<int>("f", -7, [&]() -> int { std::rethrow_exception(thrown); }) == -7);
  CHECK(TextFunction("f", [&]() -> std::string { std::rethrow_exception(thrown); }) == nullptr);
  CHECK(MacroStatus("f", 3, [&]() -> int { std::rethrow_exception(thrown); }) == 3);
  CHECK(MacroCall("f", [&] { std::rethrow_exception(thrown); }) != 0);
}

}  // namespace

TEST_CASE("whatever a body throws ends in its failure value") {
  const WithSession session;
  CheckThrown(std::make_exception_ptr(1));
  CheckThrown(std::make_exception_ptr("text"));
  CheckThrown(std::make_exception_ptr(std::runtime_error("x")));
  CheckThrown(std::make_exception_ptr(std::bad_alloc()));
  CheckThrown(std::make_exception_ptr(VekMatrixNotSquare("A::B")));
}

TEST_CASE("a text that a body returns is cut to what Excel takes") {
  const WithSession session;
  CHECK(std::string(TextFunction("f", [] { return std::string("ab"); })) == "ab");
  CHECK(TextFunction("f", [] { return std::optional<std::string>(); }) == nullptr);
  CHECK(std::string(TextFunction("f", [] { return std::string(1000, 'x'); })).size() == 255);
}

TEST_CASE("the log shows the arguments and the result of each call") {
  const WithSession session;
  const LogFolder folder("BrennicLoggingDetail.txt");
  OpenLog(folder.path(), "Session8");
  const Argument number{Cell(2.5)}, text{Cell(u"a\nb")}, array(1, 2, {true, ErrorCell{xlerrNA}});
  const Reference column(FakeExcel::kCallingSheet, {Area(0, 1, 2, 2)});
  const auto nothing = [](const Parameters&) { return XXloper::Nil(); };
  WorksheetFunction("Scalars", Reading("DsL"), {number, nullptr, text}, nothing);
  WorksheetFunction("Data", Reading("V", MissingDataPolicy::kNumbersOnly),
                    {column, array, nullptr, nullptr},
                    [](const Parameters& read) -> CellResult { return read.data(0).size(); });
  WorksheetFunction("Thrown", []() -> CellResult { throw 1; });
  PlainFunction("Plain", 0.0, [] { return 0.1; });
  TextFunction("Text", [] { return std::string("\1\2") + "3"; });
  TextFunction("None", [] { return std::optional<std::string>(); });
  MacroStatus("Status", std::int16_t{5}, []() -> std::int16_t { throw 1; });
  MacroStatus<const char*>("Pointer", nullptr, [] { return "text"; });
  MacroCall("Call", [] { throw 1; });
  CHECK(folder.closed_lines() ==
        R"(===== Scalars enter =====
{ inParam=XLOPER of type 1: 2.5, acceptableTypes=0D4F, range=(-inf, inf), outParam=? }
{ inParam=XLOPER of type 128, acceptableTypes=0DCF, range=(-inf, inf), outParam=? }
{ inParam=XLOPER of type 2: "a b", acceptableTypes=0D4F, range=(-2147483649, 2147483648), outParam=? }
===== Scalars () = XLOPER of type 16: #VALUE! exit =====
===== Data enter =====
{ inParam=XLOPER of type 8: [B]C1:C2, acceptableTypes=0DDF, range=(-inf, inf), outParam=? }
{ inParam=XLOPER array (1 x 2) = {TRUE, #N/A}, acceptableTypes=0DDF, range=(-inf, inf), outParam=? }
===== Data () = XLOPER of type 1: 4 exit =====
===== Thrown enter =====
===== Thrown () = XLOPER of type 16: #N/A exit =====
===== Plain enter =====
===== Plain () = 0.1 exit =====
===== Text enter =====
===== Text () = XLOPER of type 2: "  3" exit =====
===== None enter =====
===== None () = none exit =====
===== Status enter =====
===== Status () = 5 exit =====
===== Pointer enter =====
===== Pointer () exit =====
===== Call enter =====
===== Call () = 1 exit =====
)");
}

TEST_CASE("a failure number finds what was thrown") {
  const WithSession session;
  const std::uint32_t number = MacroCall("Zavrel", [] { throw VekInvalidP("P::Q", 2524, {0.5}); });
  const std::uint32_t next = MacroCall("Zavrel", [] { throw std::bad_alloc(); });
  const std::uint32_t last = MacroCall("Zavrel", [] { throw 1; });
  CHECK((number == 1 && next == 2 && last == 3));
  const auto failure = Session::Current()->failures().Find(number);
  REQUIRE(failure);
  CHECK(failure->class_name() == u"VekInvalidP");
  CHECK(failure->place() == "P::Q");
  CHECK(Session::Current()->MessageOf(*failure).find(u"0.5") != std::u16string::npos);
  CHECK(Session::Current()->failures().Find(next)->class_name() == u"VekOutOfMemory");
  CHECK(Session::Current()->failures().Find(last)->class_name() == u"VekUnknownException");
  // A worksheet function records nothing.
  WorksheetFunction("f", []() -> XXloper { throw VekInvalidP("P::Q"); });
  CHECK_FALSE(Session::Current()->failures().Find(last + 1));
}

TEST_CASE("without a session no body of a worksheet function runs and no failure has a number") {
  bool ran = false;
  CHECK(IsNA(WorksheetFunction("f", [&] {
    ran = true;
    return XXloper::Number(1);
  })));
  CHECK(PlainFunction<std::int32_t>("f", -1, [] { return 5; }) == -1);
  CHECK_FALSE(ran);
  CHECK(MacroCall("f", [] { throw VekInvalidP("P::Q"); }) == 0);
}

TEST_CASE("upkeep follows the memory load") {
  const auto after_call = [](unsigned load, bool flush = false) {
    return StepsOfUpkeep(UpkeepMode::kAfterCall, load, flush);
  };
  const UpkeepSteps prune_parameters{.prune_parameters = true};
  const UpkeepSteps prune_both{.prune_parameters = true, .prune_data = true};
  const UpkeepSteps clear_all{
      .prune_parameters = true, .clear_parameters = true, .clear_data = true};
  CHECK(after_call(0) == prune_parameters);
  CHECK(after_call(50) == prune_parameters);
  CHECK(after_call(51) == prune_both);
  CHECK(after_call(90) == prune_both);
  CHECK(after_call(91) == clear_all);
  CHECK(after_call(0, true) == clear_all);
  CHECK(StepsOfUpkeep(UpkeepMode::kPruneData, 99, true) == UpkeepSteps{.prune_data = true});
  CHECK(StepsOfUpkeep(UpkeepMode::kClearAll, 0, false) ==
        UpkeepSteps{.clear_parameters = true, .clear_data = true});
}

TEST_CASE("every worksheet function keeps the caches up, also one that must return at once") {
  WithSession session;
  const auto call = [] { WorksheetFunction("f", [] { return XXloper::Number(1); }); };
  session.load = 90;
  call();
  CHECK(Session::Current()->Kept<Cache>().cleared == 0);
  session.load = 91;
  call();
  CHECK(Session::Current()->Kept<Cache>().cleared == 1);
  PlainFunction("f", 0.0, [] { return 1.5; });
  WorksheetFunction("f", []() -> XXloper { throw 1; });
  CHECK(Session::Current()->Kept<Cache>().cleared == 3);
  const XLOPER12* result = WorksheetFunction("f", [] { return XXloper::Error(ExcelError::kRef); });
  CHECK(result->val.err == xlerrRef);
  CHECK(Session::Current()->Kept<Cache>().cleared == 4);
  session.load = 0;
  Session::Current()->SetFlushFlag(true);
  call();
  call();
  CHECK(Session::Current()->Kept<Cache>().cleared == 6);
}

}  // namespace zavrel::tests
