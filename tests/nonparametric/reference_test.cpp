// Against R (data/make_reference.R) and against counts in whole numbers (data/make_exact.py).
#include <doctest/doctest.h>

#include <map>
#include <span>

#include "nonparametric/library.h"
#include "support/csv_lines.h"

namespace zavrel::tests {
namespace {

constexpr std::int32_t kAlternatives[] = {NPT_LESS, NPT_TWO_SIDED, NPT_GREATER};

constexpr double kLikeR = 1e-12;
// Counted in whole numbers, a rank sum's p-value is rounded as it is divided and as it is returned.
constexpr double kCountedRankSum = 3e-16;
constexpr double kSignedRank = 2e-15;

doctest::Approx Near(double value, double error = kLikeR) {
  return doctest::Approx(value).epsilon(error).scale(0);
}

/// Reads a line from front to back.
class Fields {
 public:
  explicit Fields(const CsvLine& line) : rest_(line.numbers) {}

  double Number() { return Take(1).front(); }
  std::int32_t Count() { return static_cast<std::int32_t>(Number()); }
  std::span<const double> Take(std::size_t count) {
    REQUIRE(rest_.size() >= count);
    const auto taken = rest_.first(count);
    rest_ = rest_.subspan(count);
    return taken;
  }

 private:
  std::span<const double> rest_;
};

double P(bool two_samples, std::int32_t n1, std::int32_t n2, double statistic,
         std::int32_t alternative) {
  return two_samples ? library.MWpValue(n1, n2, statistic, alternative)
                     : library.WSRpValue(n1, statistic, alternative);
}

/// The ranks of two samples, or of one about a median.
struct Ranked {
  Ranked(Fields& line, bool two_samples) {
    const double median = two_samples ? 0 : line.Number();
    n1 = line.Count();
    if (two_samples) n2 = line.Count();
    const double* const x = line.Take(static_cast<std::size_t>(n1)).data();
    const double* const y = line.Take(static_cast<std::size_t>(n2)).data();
    REQUIRE((two_samples ? library.MWTiesAndSums(x, n1, y, n2, &sums)
                         : library.WSRTiesAndSums(x, n1, median, &sums)) == NPT_OK);
  }
  std::int32_t n1 = 0, n2 = 0;
  NptRankSums sums{};
};

void Tested(Fields line, bool two_samples) {
  const auto p = line.Take(3);
  const Ranked of(line, two_samples);
  INFO("n1 = ", of.n1, ", n2 = ", of.n2);
  if (two_samples) CHECK((of.sums.ties == 0 && of.sums.tie_correction_term == 0));
  const double statistic = two_samples ? of.sums.rank_sum_1 : of.sums.rank_sum_2;
  for (std::size_t i = 0; i < 3; ++i)
    CHECK(P(two_samples, of.n1, of.n2, statistic, kAlternatives[i]) == Near(p[i]));
}

void Ties(Fields line, bool two_samples) {
  const auto expected = line.Take(4);
  const NptRankSums sums = Ranked(line, two_samples).sums;
  CHECK(sums.ties == expected[0]);
  CHECK(sums.tie_correction_term == expected[1]);
  CHECK(sums.rank_sum_1 == expected[2]);
  CHECK(sums.rank_sum_2 == expected[3]);
}

void Counted(Fields line, bool two_samples, double error) {
  const std::int32_t n1 = line.Count(), n2 = two_samples ? line.Count() : 0;
  const double statistic = line.Number();
  INFO("n1 = ", n1, ", n2 = ", n2, ", statistic = ", statistic);
  for (const std::int32_t alternative : {NPT_LESS, NPT_GREATER})
    CHECK(P(two_samples, n1, n2, statistic, alternative) == Near(line.Number(), error));
}

void KruskalWallis(Fields line, bool exact) {
  const auto statistics = line.Take(exact ? 0 : 2);
  const double p = line.Number();
  std::vector<std::int32_t> counts;
  std::vector<const double*> values;
  const std::int32_t groups = line.Count();
  counts.reserve(static_cast<std::size_t>(groups));
  values.reserve(static_cast<std::size_t>(groups));
  for (std::int32_t i = 0; i < groups; ++i) counts.push_back(line.Count());
  for (const std::int32_t count : counts)
    values.push_back(line.Take(static_cast<std::size_t>(count)).data());
  CAPTURE(counts);
  for (std::size_t item = 0; item < statistics.size(); ++item) {
    double value = -1;
    REQUIRE(library.KWData(static_cast<std::int32_t>(item), groups, values.data(), counts.data(),
                           &value) == EUTILITY_OK);
    CHECK(value == Near(statistics[item]));
  }
  double p_value = -1;
  const std::int32_t method = exact ? KW_EXACT : KW_CHI_SQUARE;
  REQUIRE(library.KWpValue(method, groups, values.data(), counts.data(), &p_value) == EUTILITY_OK);
  CHECK(p_value == Near(p));
}

}  // namespace

TEST_CASE("what R's tests and distributions give") {
  std::map<char, int> met;
  for (const CsvLine& line : CsvLines("reference.csv")) {
    const Fields fields(line);
    CAPTURE(line.kind);
    ++met[line.kind];
    switch (line.kind) {
      case 'm':
      case 'w':
        Tested(fields, line.kind == 'm');
        break;
      case 'u':
      case 'v':
        Counted(fields, line.kind == 'u', kLikeR);
        break;
      case 't':
      case 'z':
        Ties(fields, line.kind == 't');
        break;
      default:
        KruskalWallis(fields, line.kind == 'x');
    }
  }
  CHECK(met.size() == 8);
}

TEST_CASE("what counting in whole numbers gives") {
  std::vector<CsvLine> lines = CsvLines("exact.csv");
  for (const CsvLine& line : CsvLines("exact_small.csv")) lines.push_back(line);
  CHECK(lines.size() > 300);
  for (const CsvLine& line : lines) {
    const bool two_samples = line.kind == 'u';
    Counted(Fields(line), two_samples, two_samples ? kCountedRankSum : kSignedRank);
  }
}

}  // namespace zavrel::tests
