// The judge: every planted fault is found and named, and what is in order is left alone.
#include <doctest/doctest.h>

#include "host/capi/callback.h"
#include "host/planted_add_in.h"

namespace zavhost::tests {
namespace {

struct Fault {
  const char* formula;
  ViolationKind kind;
  const char* detail;
  const char* value;
};

const Fault kFaults[] = {
    {"FaultLeak(A1:A3)", ViolationKind::kNotFreed, "returned by xlCoerce was never freed", "1"},
    {"FaultNoBracket(A1:A3)", ViolationKind::kMissingBracket, "xlCoerce", "1"},
    {"FaultLeftEnabled()", ViolationKind::kUnbalancedBracket, "left enabled", "1"},
    {"FaultEnabledTwice()", ViolationKind::kUnbalancedBracket, "enabled twice", "1"},
    {"FaultNotEnabled()", ViolationKind::kUnbalancedBracket, "without having been enabled", "1"},
    {"FaultSharedBracket()", ViolationKind::kMissingBracket, "bracket of another call", "1"},
    {"FaultWriteValue(5)", ViolationKind::kArgumentWritten, "wrote to an argument", "1"},
    {"FaultWriteArray(A1:B4)", ViolationKind::kArgumentWritten, "wrote to an argument", "1"},
    {"FaultWriteText(\"abc\")", ViolationKind::kArgumentWritten, "wrote to an argument", "1"},
    {"FaultFreeTwice(A1:A3)", ViolationKind::kFreedTwice, "already freed", "1"},
    {"FaultFreeForeign()", ViolationKind::kFreedForeign, "not the host's", "1"},
    {"FaultLongText()", ViolationKind::kMalformedResult, "40000 characters", "#VALUE!"},
    {"FaultNoData()", ViolationKind::kMalformedResult, "2 x 2 without data", "#VALUE!"},
    {"FaultHugeArray()", ViolationKind::kMalformedResult, "2000000000 rows", "#VALUE!"},
    {"FaultNestedArray()", ViolationKind::kMalformedResult, "element of type array", "#VALUE!"},
    {"FaultUnknownType()", ViolationKind::kMalformedResult, "0x0200", "#VALUE!"},
    {"FaultNoText()", ViolationKind::kMalformedResult, "without text", "#VALUE!"},
    {"FaultDangling(A1:A3)", ViolationKind::kMalformedResult, "already freed", "#VALUE!"},
    {"FaultBothBits()", ViolationKind::kMalformedResult, "0x5001", "#VALUE!"},
    {"FaultReference(A1:A3)", ViolationKind::kMalformedResult, "reference", "#VALUE!"},
    {"FaultForeignResult()", ViolationKind::kFreedForeign, "not the host's", "own"},
    {"FaultThrow()", ViolationKind::kCrash, "exception left", "#VALUE!"},
    {"FaultNullArgument()", ViolationKind::kMalformedCall, "null pointer", "8"},
    {"FaultBadArgument()", ViolationKind::kMalformedCall, "0x0200", "8"},
    {"FaultThread()", ViolationKind::kMalformedCall, "3 calls came from a thread", "1"},
    {"FaultLongNarrow()", ViolationKind::kMalformedResult, "more than 255", "#VALUE!"},
};

}  // namespace

TEST_CASE("every planted fault is reported once, by its name, formula and cell") {
  for (const Fault& fault : kFaults) {
    CAPTURE(fault.formula);
    Workbook workbook = SmallWorkbook();
    AddFormulas(workbook, std::string("D4 = ") + fault.formula);
    auto engine = PlantedEngine(std::move(workbook));
    const RecalculationReport report = engine->Recalculate();
    REQUIRE(report.cells.size() == 1);
    CHECK(Shown(report.cells[0].after) == fault.value);
    engine->CloseAddIns();
    REQUIRE(engine->judge().count() == 1);
    const Violation& violation = engine->judge().violations()[0];
    CAPTURE(DescribeViolation(violation));
    CHECK(violation.kind == fault.kind);
    CHECK(violation.detail.find(fault.detail) != std::string::npos);
    CHECK(violation.cell == "Sheet1!D4");
    CHECK(violation.formula == std::string("=") + fault.formula);
    CHECK(DescribeViolation(violation).starts_with("Sheet1!D4: " + violation.formula + ": "));
  }
}

TEST_CASE("functions that behave are left alone, over many calls") {
  auto engine = PlantedEngine();
  for (int round = 0; round < 200; ++round) {
    CheckFormulas(*engine, R"(
        GoodSum(A:A) -> 15 | GoodDescribe(A1:B4) -> 4x2 of number
        GoodXlFree(A1:B4) -> 1,five;2,TRUE;3,#DIV/0!;4,12; | GoodDllFree() -> 1
        GoodInPlaceText("abc") -> ABC | GoodWide(B1) -> five!)");
    CHECK(Shown(*engine, "GoodApi(A1)") ==
          "caller=0 coerce=0 id=0 idof=0 abort=0 name=0 hwnd=0 inst=0 instptr=0 stack=0 set=32 "
          "workspace=32 register=32 unregister=32 count=4 unknown=2");
  }
  engine->CloseAddIns();
  CHECK(engine->judge().count() == 0);
}

TEST_CASE("an add-in that keeps ever more values is found out while it runs") {
  auto engine = PlantedEngine();
  for (int i = 0; i < 20'100; ++i) Shown(*engine, "FaultLeak(A1:A3)");
  REQUIRE(engine->judge().count() == 1);
  CHECK(engine->judge().violations()[0].detail.find("keeps growing") != std::string::npos);
  engine->CloseAddIns();
  CHECK(engine->judge().count() == 20'101);
  CHECK(engine->judge().violations().size() == 1000);
}

}  // namespace zavhost::tests
