// A long day in a workbook: many calls, mixed, under the strict judge.
#include <doctest/doctest.h>

#include <fstream>
#include <random>

#include "integration/running_add_in.h"

#ifdef _WIN32
#include <windows.h>
// The order matters: the process functions build on the basic ones.
#include <psapi.h>
#endif

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

// Until the caches hold what these calls leave in them.
constexpr int kWarmingUp = kCalls * 2 / 5;

/// Memory that the process holds, in bytes.
std::size_t HeldMemory() {
#ifdef _WIN32
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PagefileUsage;
#else
  std::size_t total = 0;
  std::size_t resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return resident * 4096;
#endif
}

const std::u16string kStatistics[] = {
    u"Mean",     u"MeanI",         u"Min",   u"Max",      u"StdDev",  u"VarianceP",
    u"Skewness", u"Kurtosis",      u"Sum",   u"SumI",     u"Product", u"Range",
    u"Count",    u"AveDev",        u"SumSq", u"SumDevSq", u"MeanAbs", u"Median",
    u"Mode",     u"CategoryNames", u"Ln",    u"IsBlank"};
const std::u16string kArguments[] = {
    u"A1:A40",   u"A1:B20", u"(A1:A5,B7:B30)",       u"{1,2;3,4}", u"A1", u"C1:C9", u"1,2,,A3,TRUE",
    u"\"text\"", u"#N/A",   u"ZavMean(A1:A7),B1:B3", u"A1:A9&\"\""};
// Functions of a range and more; addresses and ids of a macro that nobody has issued.
const std::u16string kFurther[] = {u"Percentile(%,0.3)",
                                   u"Percentile(%,1.5,2)",
                                   u"Percentile(%,0.5,#)",
                                   u"Quartile(%,#,1)",
                                   u"Mode(%,#)",
                                   u"Sum(ZavDestack(%,A1:A40,#))",
                                   u"Sum(ZavDestack({1;2;3},A1:A40*1,#))",
                                   u"Median(ZavMulti(#,A1:B20,B7:B30),#)",
                                   u"PairMedian(%,B1:B40,#)",
                                   u"CorrelationMatrix(#,#,#,A1:B20)",
                                   u"Normal(#,1,\"xtop\",#)",
                                   u"BoxPlotY(#,#)",
                                   u"CategoryIndices(%,#)",
                                   u"CountCellsByType(%,#)",
                                   u"GetCellValues(%,#)",
                                   u"GetCellValuesPrivate(%,#,@)",
                                   u"GetCellValuesPrivate2(%,#,@,@)",
                                   u"GetCellValuesCategoryPrivate2(%,#,\"none\",@)",
                                   u"GetCellValuesNumericPrivate2(%,#,-1,@)"};
const std::u16string kAddresses[] = {u"",
                                     u"0",
                                     u"1",
                                     u"-8",
                                     u"4096",
                                     u"140737488355320",
                                     u"9223372036854775807",
                                     u"-9223372036854775808",
                                     u"99999999999999999999999999",
                                     u"0x7ff0",
                                     u" 4096 ",
                                     u"Time=1, TickCount=2, PerfCounter=3, counter=4"};

/// A workbook under calls.
class Soak {
 public:
  Soak() {
    zavhost::Workbook book;
    book.sheets.emplace_back(u"Data");
    for (int row = 0; row < 40; ++row) {
      for (int column = 0; column < 2; ++column) {
        if (random_() % 7 != 0)
          book.sheets[0].Set(row, column,
                             zavhost::Value(static_cast<double>(random_() % 1000) / 8));
      }
    }
    book.sheets[0].Set(11, 0, zavhost::Value(u"a text"));
    book.sheets[0].Set(12, 1, zavhost::Value(zavhost::ErrorCode::kDiv0));
    engine_ = ServingAddIn(std::move(book));
  }
  zavhost::Engine& engine() { return *engine_; }

  /// Fills the caches, and the room for selections of arrays, up to their limits with data as
  /// large as those that follow, or larger.
  void FillCaches() {
    for (int i = 0; i < 20'000; ++i) {
      const std::u16string number = zavhost::Utf16FromUtf8(std::to_string(i));
      engine_->Evaluate(u"ZavMedian({" + number +
                        u",2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,\"a longer text\"})");
      engine_->Evaluate(u"ZavSum(ZavDestack({" + number + u";2;3},A1:A40+" + number + u",B1))",
                        {0, 0, 20});
    }
  }

  void Call() {
    // Now and then a cell changes under a reference that is asked for again.
    if (random_() % 16 == 0) {
      engine_->workbook().sheets[0].Set(static_cast<int>(random_() % 40), 0,
                                        zavhost::Value(static_cast<double>(random_() % 100)));
    }
    const std::u16string formula = random_() % 3 == 0
                                       ? FilledIn(Any(kFurther))
                                       : Any(kStatistics) + u"(" + AnyArgument() + u")";
    engine_->Evaluate(u"Zav" + formula, {0, 0, 20});
  }

 private:
  template <std::size_t kCount>
  const std::u16string& Any(const std::u16string (&texts)[kCount]) {
    return texts[random_() % kCount];
  }
  std::u16string AnyArgument() {
    // A whole column takes a thousand times as long.
    return random_() % 500 == 0 ? u"A:A" : Any(kArguments);
  }
  std::u16string FilledIn(const std::u16string& pattern) {
    std::u16string formula;
    for (const char16_t unit : pattern) {
      if (unit == u'%') {
        formula += AnyArgument();
      } else if (unit == u'#') {
        formula += zavhost::Utf16FromUtf8(std::to_string(static_cast<int>(random_() % 7) - 1));
      } else if (unit == u'@') {
        formula += u'"' + (random_() % 8 == 0 ? UnissuedAddress() : Any(kAddresses)) + u'"';
      } else {
        formula += unit;
      }
    }
    return formula;
  }
  /// Memory of this object, which nobody may write to.
  std::u16string UnissuedAddress() {
    return zavhost::Utf16FromUtf8(std::to_string(reinterpret_cast<std::uintptr_t>(&untouched)));
  }

 public:
  std::uint64_t untouched[4] = {1, 2, 3, 4};

 private:
  std::mt19937 random_{20261124};
  std::unique_ptr<zavhost::Engine> engine_;
};

}  // namespace

TEST_CASE("a million mixed calls break no rule and hold no more memory at the end") {
  Soak soak;
  soak.FillCaches();
  for (int i = 0; i < kWarmingUp; ++i) soak.Call();
  const std::size_t before = HeldMemory();
  for (int i = kWarmingUp; i < kCalls; ++i) soak.Call();
  const std::size_t after = HeldMemory();
  CHECK(soak.engine().judge().count() == 0);
  CHECK_MESSAGE(after < before + kAllowedGrowth, before << " bytes became " << after);
  for (std::uint64_t i = 0; i < std::size(soak.untouched); ++i) CHECK(soak.untouched[i] == i + 1);
  CloseClean(soak.engine());
}

}  // namespace zavrel::tests
