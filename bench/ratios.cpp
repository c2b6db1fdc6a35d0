#include "ratios.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <optional>
#include <utility>

namespace zavrel::bench {
namespace {

struct Comparison {
  std::string meaning;
  std::vector<Term> sum;
  std::vector<Term> floor;
  double limit;
};

std::vector<Comparison>& Comparisons() {
  static std::vector<Comparison> comparisons;
  return comparisons;
}

struct Measured {
  double seconds;  // per iteration, in the best repetition
  benchmark::UserCounters counters;
};

/// Keeps the best repetition of every benchmark and prints them at the end.
class BestReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override {
    PrintBasicContext(&GetErrorStream(), context);
    return true;
  }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) {
        failed_ = true;
        std::printf("%s: %s\n", run.run_name.function_name.c_str(), run.error_message.c_str());
      } else if (run.run_type == Run::RT_Iteration) {
        const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
        const auto [entry, is_new] =
            best_.emplace(run.run_name.function_name, Measured{seconds, run.counters});
        if (!is_new && seconds < entry->second.seconds) entry->second.seconds = seconds;
      }
    }
  }
  void Finalize() override {
    for (const auto& [name, measured] : best_) {
      std::printf("%-28s %12.4f us", name.c_str(), measured.seconds * 1e6);
      for (const auto& [counter, value] : measured.counters)
        std::printf("  %s %.2f", counter.c_str(), value.value);
      std::printf("\n");
    }
  }

  std::optional<double> Sum(const std::vector<Term>& terms) const {
    double seconds = 0;
    for (const Term& term : terms) {
      const auto found = best_.find(term.benchmark);
      if (found == best_.end()) return std::nullopt;
      seconds += found->second.seconds * term.times;
    }
    return seconds;
  }
  bool failed() const { return failed_; }

 private:
  std::map<std::string, Measured> best_;
  bool failed_ = false;
};

void PrintComparison(const Comparison& comparison, const BestReporter& reporter) {
  const std::optional<double> sum = reporter.Sum(comparison.sum);
  const std::optional<double> floor = reporter.Sum(comparison.floor);
  if (!sum || !floor) return;
  const double ratio = comparison.floor.empty() ? *sum * 1e6 : *sum / *floor;
  std::printf("%8.3f%s", ratio, comparison.floor.empty() ? " us" : "   ");
  if (std::isfinite(comparison.limit)) {
    std::printf(" of %5.2f%s", comparison.limit, ratio > comparison.limit ? " OVER" : "     ");
  } else {
    std::printf("              ");
  }
  std::printf("  %s\n", comparison.meaning.c_str());
}

}  // namespace

Ratio::Ratio(std::string meaning, std::vector<Term> sum, std::vector<Term> floor, double limit) {
  Comparisons().push_back({std::move(meaning), std::move(sum), std::move(floor), limit});
}

}  // namespace zavrel::bench

int main(int count, char** arguments) {
  using namespace zavrel::bench;
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
  BestReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n   ratio     limit        of what to which floor\n");
  for (const Comparison& comparison : Comparisons()) PrintComparison(comparison, reporter);
  return reporter.failed() ? 1 : 0;
}
