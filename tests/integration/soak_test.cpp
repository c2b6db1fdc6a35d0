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

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kAllowedGrowth = 320u << 20;
#else
constexpr std::size_t kAllowedGrowth = 4u << 20;
#endif

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
    u"Mean",     u"MeanI",   u"Min",     u"Max",           u"StdDev", u"VarianceP", u"Skewness",
    u"Kurtosis", u"Sum",     u"Product", u"Range",         u"Count",  u"AveDev",    u"SumSq",
    u"SumDevSq", u"MeanAbs", u"Median",  u"CategoryNames", u"Ln"};
const std::u16string kArguments[] = {
    u"A1:A40",       u"A:A",      u"A1:B20", u"(A1:A5,B7:B30)",       u"{1,2;3,4}", u"A1", u"C1:C9",
    u"1,2,,A3,TRUE", u"\"text\"", u"#N/A",   u"ZavMean(A1:A7),B1:B3", u"A1:A9&\"\""};

}  // namespace

TEST_CASE("a hundred thousand mixed calls break no rule and hold no more memory at the end") {
  zavhost::Workbook book;
  book.sheets.emplace_back(u"Data");
  std::mt19937 random(20261124);
  for (int row = 0; row < 40; ++row) {
    for (int column = 0; column < 2; ++column) {
      if (random() % 7 != 0)
        book.sheets[0].Set(row, column, zavhost::Value(static_cast<double>(random() % 1000) / 8));
    }
  }
  book.sheets[0].Set(11, 0, zavhost::Value(u"a text"));
  book.sheets[0].Set(12, 1, zavhost::Value(zavhost::ErrorCode::kDiv0));
  auto engine = ServingAddIn(std::move(book));

  const auto call = [&] {
    const std::u16string& statistic = kStatistics[random() % std::size(kStatistics)];
    const std::u16string& arguments = kArguments[random() % std::size(kArguments)];
    // Now and then a cell changes under a reference that is asked for again.
    if (random() % 16 == 0) {
      engine->workbook().sheets[0].Set(static_cast<int>(random() % 40), 0,
                                       zavhost::Value(static_cast<double>(random() % 100)));
    }
    engine->Evaluate(u"Zav" + statistic + u"(" + arguments + u")", {0, 0, 20});
  };
  for (int i = 0; i < 20'000; ++i) call();
  const std::size_t before = HeldMemory();
  for (int i = 0; i < 80'000; ++i) call();
  const std::size_t after = HeldMemory();
  CHECK(engine->judge().count() == 0);
  // Under the sanitizer freed memory stays in quarantine for a while: up to 256 MB of it.
  CHECK_MESSAGE(after < before + kAllowedGrowth, before << " bytes became " << after);
  CloseClean(*engine);
}

}  // namespace zavrel::tests
