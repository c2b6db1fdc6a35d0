// A long day in a workbook: many calls, mixed, under the strict judge.
#include <doctest/doctest.h>

#include <cstdlib>
#include <iterator>
#include <random>
#include <thread>

#include "integration/process_use.h"
#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

// Under the sanitizer a call takes several times as long, and freed memory stays in quarantine for
// a while: up to 256 MB of it.
#ifdef __SANITIZE_ADDRESS__
constexpr int kCalls = 500'000;
constexpr std::size_t kAllowedGrowth = 320u << 20;
#else
constexpr int kCalls = 1'000'000;
constexpr std::size_t kAllowedGrowth = 5u << 20;
#endif

/// How long: as ./dev soak asks, which is far longer and stricter.
struct Length {
  Length() {
    if (const char* const asked = std::getenv("ZAVREL_SOAK_CALLS")) {
      calls = std::atoi(asked);
      allowed_growth = 1u << 20;
      is_long = true;
    }
  }
  int calls = kCalls;
  std::size_t allowed_growth = kAllowedGrowth;
  bool is_long = false;
};

constexpr int kParts = 10;
// Of these parts: until the caches hold what these calls leave in them.
constexpr int kWarmingUp = 4;

using Texts = std::vector<std::string>;
using zavhost::tests::CasesIn;

const Texts kStatistics = CasesIn(
    "Mean|MeanI|Min|Max|StdDev|VarianceP|Skewness|Kurtosis|Sum|SumI|Product|Range|Count|AveDev|"
    "SumSq|SumDevSq|MeanAbs|Median|Mode|CategoryNames|Ln|IsBlank");
const Texts kArguments = CasesIn(R"(
    A1:A40 | A1:B20 | (A1:A5,B7:B30) | {1,2;3,4} | A1 | C1:C9 | 1,2,,A3,TRUE | "text" | #N/A
    ZavMean(A1:A7),B1:B3 | A1:A9&"")");
// Functions of a range and more; addresses and ids of a macro that nobody has issued.
const Texts kFurther = CasesIn(R"(
    Percentile(%,0.3) | Percentile(%,1.5,2) | Percentile(%,0.5,#) | Quartile(%,#,1) | Mode(%,#)
    Sum(ZavDestack(%,A1:A40,#)) | Sum(ZavDestack({1;2;3},A1:A40*1,#)) | PairMedian(%,B1:B40,#)
    Median(ZavMulti(#,A1:B20,B7:B30),#) | CorrelationMatrix(#,#,#,A1:B20) | Normal(#,1,"xtop",#)
    BoxPlotY(#,#) | CategoryIndices(%,#) | CountCellsByType(%,#) | GetCellValues(%,#)
    GetCellValuesPrivate(%,#,@) | GetCellValuesPrivate2(%,#,@,@)
    GetCellValuesCategoryPrivate2(%,#,"none",@) | GetCellValuesNumericPrivate2(%,#,-1,@))");
const Texts kAddresses = {"",
                          "0",
                          "1",
                          "-8",
                          "4096",
                          "140737488355320",
                          " 4096 ",
                          "0x7ff0",
                          "9223372036854775807",
                          "-9223372036854775808",
                          "99999999999999999999999999",
                          "Time=1, TickCount=2, PerfCounter=3, counter=4"};

/// A workbook under calls.
class Soak {
 public:
  Soak() {
    zavhost::Workbook book = BookOf({"A: "});
    for (int row = 0; row < 40; ++row) {
      for (int column = 0; column < 2; ++column) {
        if (random_() % 7 != 0)
          book.sheets[0].Set(row, column, static_cast<double>(random_() % 1000) / 8);
      }
    }
    book.sheets[0].Set(11, 0, u"a text");
    book.sheets[0].Set(12, 1, zavhost::ErrorCode::kDiv0);
    engine_ = ServingAddIn(std::move(book));
  }
  zavhost::Engine& engine() { return *engine_; }

  /// Fills the caches, and the room for selections of arrays, up to their limits with data as
  /// large as those that follow, or larger.
  void FillCaches() {
    for (int i = 0; i < 20'000; ++i) {
      const std::string number = std::to_string(i);
      Evaluate("ZavMedian({" + number +
               ",2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,\"a longer text\"})");
      Evaluate("ZavSum(ZavDestack({" + number + ";2;3},A1:A40+" + number + ",B1))");
    }
  }

  void Call() {
    // Now and then a cell changes under a reference that is asked for again.
    if (random_() % 16 == 0)
      engine_->workbook().sheets[0].Set(static_cast<int>(random_() % 40), 0,
                                        static_cast<double>(random_() % 100));
    Evaluate("Zav" + (random_() % 3 == 0 ? FilledIn(Any(kFurther))
                                         : Any(kStatistics) + "(" + AnyArgument() + ")"));
  }

 private:
  void Evaluate(const std::string& formula) {
    engine_->Evaluate(zavhost::Utf16FromUtf8(formula), {0, 0, 20});
  }
  const std::string& Any(const Texts& texts) { return texts[random_() % texts.size()]; }
  std::string AnyArgument() {
    // A whole column takes a thousand times as long.
    return random_() % 500 == 0 ? "A:A" : Any(kArguments);
  }
  std::string FilledIn(const std::string& pattern) {
    std::string formula;
    for (const char unit : pattern) {
      if (unit == '%') {
        formula += AnyArgument();
      } else if (unit == '#') {
        formula += std::to_string(static_cast<int>(random_() % 7) - 1);
      } else if (unit == '@') {
        // Or memory of this object, which nobody may write to.
        formula +=
            '"' +
            (random_() % 8 == 0 ? std::to_string(std::uintptr_t(&untouched)) : Any(kAddresses)) +
            '"';
      } else {
        formula += unit;
      }
    }
    return formula;
  }

 public:
  std::uint64_t untouched[4] = {1, 2, 3, 4};

 private:
  std::mt19937 random_{20261124};
  std::unique_ptr<zavhost::Engine> engine_;
};

}  // namespace

TEST_CASE("a long day of mixed calls breaks no rule and holds no more at the end") {
  const Length length;
  Soak soak;
  soak.FillCaches();
  std::size_t memory = 0;
  std::size_t handles = 0;
  std::vector<double> seconds;
  for (int part = 0; part < kParts; ++part) {
    if (part == kWarmingUp) {
      memory = HeldMemory();
      handles = Handles();
    }
    const double begin = UsedSeconds();
    for (int i = 0; i < length.calls / kParts; ++i) soak.Call();
    seconds.push_back(UsedSeconds() - begin);
    if (length.is_long)
      MESSAGE("part ", part + 1, ": ", seconds.back() * 1e6 * kParts / length.calls, " us a call, ",
              HeldMemory() / 1024, " kB, ", Handles(), " handles");
  }
  const std::size_t after = HeldMemory();
  CHECK(soak.engine().judge().count() == 0);
  CHECK(Threads() <= std::thread::hardware_concurrency() + 8);
  CHECK(Handles() <= handles);
  CHECK_MESSAGE(after < memory + length.allowed_growth, memory << " bytes became " << after);
#ifndef _WIN32  // Wine's own heap gets slower
  if (length.is_long) CHECK(seconds.back() < 1.1 * seconds[kWarmingUp]);
#endif
  for (std::uint64_t i = 0; i < std::size(soak.untouched); ++i) CHECK(soak.untouched[i] == i + 1);
  CloseClean(soak.engine());
}

}  // namespace zavrel::tests
