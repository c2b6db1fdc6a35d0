// Every distribution of the list against arbitrary-precision arithmetic: data/accuracy.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "distributions/recorded.h"
#include "numbers/floating_point_scope.h"

namespace zavrel::tests {
namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr const char* kMeasureNames[kMeasures] = {"density", "cumulative", "upper tail", "quantile",
                                                  "upper quantile"};

struct Worst {
  double epsilons = 0;
  double share = 0;  // of the limit
  std::string where;
};

/// Of each distribution, by measure.
using WorstTable = std::map<std::string, std::array<Worst, kMeasures>>;

bool Exact(const Recorded& recorded, Measure measure) {
  return recorded.description->kind == DistLib::Kind::kDiscrete &&
         (measure == Measure::kQuantile || measure == Measure::kUpperQuantile);
}

double Limit(const Recorded& recorded, const RecordedValue& value) {
  if (recorded.description->kind == DistLib::Kind::kContinuous) return 16 + value.condition;
  return Exact(recorded, value.measure) ? 0 : 16;
}

std::string Where(const Recorded& recorded, const RecordedValue& value) {
  std::ostringstream text;
  text.precision(8);
  text << recorded.Text() << " at " << value.argument;
  return text.str();
}

void Compare(const Recorded& recorded, const RecordedValue& value,
             const DistLib::PdfDist& distribution, Worst& worst) {
  INFO(Where(recorded, value));
  INFO(kMeasureNames[static_cast<std::size_t>(value.measure)]);
  const double computed = Evaluate(distribution, value.measure, value.argument);
  const double off = std::fabs(computed - value.value), limit = Limit(recorded, value);
  CHECK_MESSAGE(off <= limit * kEpsilon * std::fabs(value.value), "computed ", computed, ", exact ",
                value.value, ", off by ", off / std::fabs(value.value) / kEpsilon);
  if (off == 0 || !(limit > 0)) return;
  const double epsilons = off / std::fabs(value.value) / kEpsilon;
  if (epsilons / limit > worst.share) worst = {epsilons, epsilons / limit, Where(recorded, value)};
}

void CompareLogDensity(const RecordedValue& value, const DistLib::PdfDist& distribution) {
  const double expected = std::log(value.value);
  const double limit = 16 + value.condition + 2 * std::fabs(expected);
  CHECK(std::fabs(distribution.LogDensity(value.argument) - expected) <= limit * kEpsilon);
}

/// docs/accuracy.md holds this table; ZAVREL_ACCURACY_TABLE names a file to write it to.
void Write(const WorstTable& table) {
  const char* const file_name = std::getenv("ZAVREL_ACCURACY_TABLE");
  if (file_name == nullptr) return;
  std::ofstream file(file_name);
  file.precision(2);
  file
      << "| distribution | density | cumulative | upper tail | quantile | upper quantile | closest "
         "to its limit |\n|---|---|---|---|---|---|---|\n";
  for (const auto& [name, measures] : table) {
    file << "| " << name;
    const Worst* closest = measures.data();
    for (const Worst& worst : measures) {
      file << " | " << worst.epsilons;
      if (worst.share > closest->share) closest = &worst;
    }
    file << " | " << closest->where << " |\n";
  }
}

}  // namespace

TEST_CASE("values agree with arbitrary-precision arithmetic in the centre and in both tails") {
  const FloatingPointScope scope;
  std::map<std::string, int> points;
  WorstTable table;
  for (const Recorded& recorded : AllRecorded()) {
    REQUIRE_MESSAGE(recorded.description != nullptr, recorded.name);
    const std::string& name = recorded.description->name;
    const auto distribution = recorded.Make();
    points[name] += static_cast<int>(recorded.values.size());
    for (const RecordedValue& value : recorded.values) {
      Compare(recorded, value, *distribution,
              table[name].at(static_cast<std::size_t>(value.measure)));
      if (value.measure == Measure::kDensity) CompareLogDensity(value, *distribution);
    }
  }
  for (const DistLib::Description* description : DistLib::Distributions())
    CHECK_MESSAGE(points[description->name] >= 60, description->name);
  Write(table);
}

}  // namespace zavrel::tests
