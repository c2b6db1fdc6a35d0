#include "matrix/association.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

#include "matrix/association_kernels.h"
#include "numbers/error_double.h"
#include "numbers/floating_point_scope.h"
#include "platform/parallel.h"
#include "stats/moment_block.h"
#include "support/csv_lines.h"
#include "support/each_target.h"
#include "support/foreign_environment.h"

namespace zavrel::tests {
namespace {

using Column = std::vector<double>;
using Columns = std::vector<Column>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kPlainNaN = std::bit_cast<double>(std::uint64_t{0xFFF8'0000'0000'0001});
const double kNoData = ConditionDouble(kConditionNoData);
const double kNotFinite = ConditionDouble(kConditionNotFinite);
const double kTooFew = ConditionDouble(kConditionTooFew);

struct Options {
  bool correlation = false;
  bool ranks = false;
  bool sample = true;
  bool listwise = false;
};

Options OptionsOf(unsigned bits) {
  return {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0};
}

AssociationResult Calculate(const Columns& columns, Options o) {
  const std::vector<VariableColumn> variables(columns.begin(), columns.end());
  const AssociationOptions options{
      .pair = {o.correlation ? Measure::kCorrelation : Measure::kCovariance,
               o.sample ? Form::kSample : Form::kPopulation},
      .use_ranks = o.ranks,
      .listwise_deletion = o.listwise};
  return CalculateAssociationMatrix(options, variables);
}

/// One entry of the matrix of two variables.
double Entry(const Column& x, const Column& y, Options o) {
  return Calculate({x, y}, o).matrix[0][1];
}

std::vector<std::uint64_t> Bits(const DoubleMatrix& matrix) {
  std::vector<std::uint64_t> bits;
  for (const auto& row : matrix) {
    for (const double x : row) bits.push_back(std::bit_cast<std::uint64_t>(x));
  }
  return bits;
}

// The plain way: a loop for every pair, nothing shared.
Column PlainRanks(const Column& x) {
  Column ranks;
  for (const double a : x) {
    double below = 0, equal = 0;
    for (const double b : x) {
      below += b < a ? 1 : 0;
      equal += b == a ? 1 : 0;
    }
    ranks.push_back(below + (equal - 1) / 2);
  }
  return ranks;
}

bool IsConstant(const Column& x) {
  return std::all_of(x.begin(), x.end(), [&](double v) { return v == x[0]; });
}

/// Sums in order of observation; those of the moments where a double does not hold them.
MomentBlock PlainMoments(const Column& x, bool sample) {
  MomentBlock moments = ComputeMoments(x, sample ? Form::kSample : Form::kPopulation);
  const auto n = static_cast<double>(x.size());
  if (n <= (sample ? 1 : 0)) return moments;
  const FloatingPointScope environment;
  const double mean = std::accumulate(x.begin(), x.end(), 0.0) / n;
  double s1 = 0, s2 = 0;
  for (const double v : x) {
    s1 += v - mean;
    s2 += (v - mean) * (v - mean);
  }
  if (IsConstant(x)) s1 = s2 = 0;
  const double variance = sample ? (s2 - s1 * s1 / n) / (n - 1) : s2 / n;
  const double deviation = Settled(std::sqrt(std::max(variance, 0.0)));
  if (environment.LeftNormalRange() || !std::isfinite(mean)) return moments;
  moments.mean = mean;
  moments.standard_deviation = deviation;
  return moments;
}

double PlainValue(Column x, Column y, Options o) {
  if (o.ranks) {
    x = PlainRanks(x);
    y = PlainRanks(y);
  }
  const MomentBlock of_x = PlainMoments(x, o.sample);
  const MomentBlock of_y = PlainMoments(y, o.sample);
  const auto n = static_cast<double>(x.size());
  if (n <= (o.sample ? 1 : 0)) return kNoData;
  if (std::isnan(of_x.standard_deviation) || std::isnan(of_y.standard_deviation)) return kNoData;
  if (!o.correlation && (IsConstant(x) || IsConstant(y))) return 0;
  const auto compute = [&](auto zero) {
    using Real = decltype(zero);
    Real s = 0;
    for (std::size_t t = 0; t < x.size(); ++t)
      s += (Real{x[t]} - Real{of_x.mean}) * (Real{y[t]} - Real{of_y.mean});
    Real value = s / static_cast<Real>(o.sample ? n - 1 : n);
    if (o.correlation) {
      const Real spread = Real{of_x.standard_deviation} * Real{of_y.standard_deviation};
      if (spread == 0) return kTooFew;
      value /= spread;
    }
    const auto result = static_cast<double>(value);
    if (!std::isfinite(result)) return kNotFinite;
    return o.correlation ? std::clamp(result, -1.0, 1.0) : result;
  };
  const FloatingPointScope environment;
  const double value = Settled(compute(0.0));
  return environment.LeftNormalRange() ? Settled(compute(0.0L)) : value;
}

DoubleMatrix PlainMatrix(const Columns& columns, Options o) {
  const std::size_t k = columns.size();
  const auto there = [&](std::size_t c, std::size_t r) {
    return r < columns[c].size() && columns[c][r] != kMissingValue;
  };
  DoubleMatrix matrix(k, Column(k));
  for (std::size_t j = 0; j < k; ++j) {
    for (std::size_t i = 0; i < k; ++i) {
      const std::size_t rows =
          o.listwise ? columns[0].size() : std::min(columns[i].size(), columns[j].size());
      Column x, y;
      for (std::size_t r = 0; r < rows; ++r) {
        bool keep = there(i, r) && there(j, r);
        for (std::size_t c = 0; o.listwise && c < k; ++c) keep = keep && there(c, r);
        if (!keep) continue;
        x.push_back(columns[i][r]);
        y.push_back(columns[j][r]);
      }
      matrix[i][j] = PlainValue(x, y, o);
      if (o.correlation && columns[i] == columns[j] && matrix[i][j] > 0.9) matrix[i][j] = 1;
    }
  }
  return matrix;
}

class RandomColumns {
 public:
  /// A mixture: normal values far from 0, ties, a constant; a gap in `one_in` values, or none.
  Column Next(std::size_t rows, unsigned one_in) {
    Column column(rows);
    const unsigned kind = static_cast<unsigned>(random_() % 11);
    for (double& x : column) {
      x = normal_(random_);
      if (kind == 0) x = 0.1;
      if (kind == 1) x = std::round(x);
      if (kind == 2) x = 1e6 + x / 1e3;
      if (kind == 3) x *= 1e60;
      if (kind == 4) x *= 1e-60;
      if (kind == 5) x *= 1e-90;
      if (kind == 6) x *= 1e-160;
      if (kind == 7) x *= 1e-170;
      if (one_in > 0 && random_() % one_in == 0) x = kMissingValue;
    }
    return column;
  }

 private:
  std::mt19937_64 random_{11};
  std::normal_distribution<double> normal_;
};

void CheckAllOptions(const Columns& columns) {
  for (unsigned bits = 0; bits < 16; ++bits) {
    CAPTURE(bits);
    const AssociationResult result = Calculate(columns, OptionsOf(bits));
    REQUIRE(!result.error);
    CHECK(Bits(result.matrix) == Bits(PlainMatrix(columns, OptionsOf(bits))));
  }
}

}  // namespace

TEST_CASE("every option gives the bits of the plain loops") {
  RandomColumns random;
  for (const std::size_t k : std::initializer_list<std::size_t>{0, 1, 2, 3, 4, 5, 9}) {
    for (const std::size_t rows : std::initializer_list<std::size_t>{0, 1, 2, 3, 7, 130}) {
      for (const unsigned one_in : {0u, 3u, 20u}) {
        INFO("k = ", k, ", rows = ", rows, ", one_in = ", one_in);
        Columns columns;
        // Some columns without gaps among the others.
        for (std::size_t c = 0; c < k; ++c)
          columns.push_back(random.Next(rows, c % 3 == 1 ? 0 : one_in));
        CheckAllOptions(columns);
      }
    }
  }
}

TEST_CASE("variables of unequal lengths") {
  RandomColumns random;
  const std::size_t lengths[] = {40, 64, 3, 65, 0, 1, 65, 39, 64};
  for (const unsigned one_in : {0u, 8u}) {
    Columns columns;
    for (const std::size_t rows : lengths) columns.push_back(random.Next(rows, one_in));
    CheckAllOptions(columns);
    std::rotate(columns.begin(), columns.begin() + 3, columns.end());
    CheckAllOptions(columns);
  }
}

// More rows than a block, more columns than a part; on all threads and on one.
TEST_CASE("instruction sets and threads make no difference") {
  RandomColumns random;
  for (const std::size_t k : std::initializer_list<std::size_t>{27, 40}) {
    for (const unsigned one_in : {0u, 50u}) {
      Columns columns;
      for (std::size_t c = 0; c < k; ++c) columns.push_back(random.Next(1501, c < 6 ? 0 : one_in));
      for (const bool ranks : {false, true}) {
        const Options options{true, ranks, true, false};
        const auto bits = Bits(Calculate(columns, options).matrix);
        EachTarget([&] { CHECK(bits == Bits(Calculate(columns, options).matrix)); });
        std::vector<std::uint64_t> serial;
        ParallelFor(2, [&](std::size_t index) {
          if (index == 0) serial = Bits(Calculate(columns, options).matrix);
        });
        CHECK(bits == serial);
        if (!ranks) CHECK(bits == Bits(PlainMatrix(columns, options)));
      }
    }
  }
}

TEST_CASE("the first cell error in the order of reading ends the call") {
  const auto error = [](std::int32_t code) { return ErrorCodedNaN(code); };
  const double gap = kMissingValue;
  const auto met = [](const Columns& columns, bool listwise) {
    return Calculate(columns, {.listwise = listwise}).error.value_or(-1);
  };
  // Pair by pair variable 0 is read to its end before variable 1 is looked at.
  CHECK(met({{1, 2, error(7)}, {error(15), 2, 3}}, false) == 7);
  CHECK(met({{1, 2, error(7)}, {error(15), 2, 3}}, true) == 15);
  // j before i in a row; a missing partner hides nothing.
  CHECK(met({{1, 2, 3}, {1, error(42), 3}, {error(36), 2, 3}}, false) == 42);
  CHECK(met({{1, 2, gap}, {1, 2, error(42)}}, false) == 42);
  CHECK(met({{1, 2, gap}, {1, 2, error(42)}}, true) == 42);
  CHECK(met({{1, error(7), 3}, {1, error(42), 3}}, true) == 7);
  // Not read with a shorter partner, but with itself; listwise never beyond the first variable.
  CHECK(met({{1, 2}, {1, 2, error(29)}, {1, error(23), 3}}, false) == 29);
  CHECK(met({{1, 2}, {1, 2, error(29)}}, true) == -1);
}

TEST_CASE("too few values, no spread, values that are no numbers") {
  const auto bits = [](double x) { return std::bit_cast<std::uint64_t>(x); };
  CHECK(bits(Entry({4}, {5}, {})) == bits(kNoData));
  CHECK(bits(Entry({4}, {5}, {.sample = false})) == bits(0));
  CHECK(bits(Entry({4}, {5}, {.correlation = true, .sample = false})) == bits(kTooFew));
  CHECK(bits(Entry({}, {}, {.sample = false})) == bits(kNoData));
  CHECK(bits(Entry({1, kMissingValue, 3}, {kMissingValue, 2, 3}, {})) == bits(kNoData));
  // Of a constant: 0, although the mean of 0.1, 0.1, 0.1 is not 0.1.
  for (const double gap : {0.1, kMissingValue}) {
    const DoubleMatrix covariances = Calculate({{0.1, 0.1, 0.1, gap}, {1, 2, 4, 8}}, {}).matrix;
    CHECK((covariances[0][0] == 0 && covariances[0][1] == 0));
  }
  CHECK(Entry({1e-60 / 3, 1e-60 / 3, 1e-60 / 3}, {1, 2, 4}, {}) == 0);
  CHECK(bits(Entry({0.1, 0.1, 0.1}, {1, 2, 4}, {.correlation = true})) == bits(kTooFew));
  // Constant only where both have values.
  CHECK(bits(Entry({0.1, 0.1, 0.1, 7}, {1, 2, 4, kMissingValue}, {.correlation = true})) ==
        bits(kTooFew));
  CHECK(bits(Entry({1, kPlainNaN, 3, 5}, {1, 2, 4, 8}, {})) == bits(kNotFinite));
  CHECK(bits(Entry({1, kInfinity, 3, 5}, {1, 2, 4, 8}, {})) == bits(kNoData));
  CHECK(bits(Entry({1, kInfinity, 3, kMissingValue}, {1, 2, 4, 8}, {})) == bits(kNoData));
  // Ranks make numbers of all but cell errors.
  const Options spearman{.correlation = true, .ranks = true};
  CHECK(Entry({1, 2, kInfinity, -kInfinity}, {2, 3, 4, 1}, spearman) == doctest::Approx(1));
  CHECK(Entry({1, 2, kPlainNaN, kPlainNaN}, {3, 4, 1, 2}, spearman) == doctest::Approx(1));
  CHECK(Entry({0.0, -0.0, 5}, {1, 1, 2}, spearman) == doctest::Approx(1));
}

TEST_CASE("sums that underflow are computed with more range") {
  const Column x = {1e-170, 2e-170, 4e-170}, y = {1, 2, 4};
  const Column gapped = {1e-170, 2e-170, 4e-170, kMissingValue}, longer = {1, 2, 4, 3};
  CHECK(Entry(x, y, {.correlation = true}) == doctest::Approx(1));
  CHECK(Entry(x, x, {.correlation = true}) == doctest::Approx(1));
  CHECK(Entry(gapped, longer, {.correlation = true}) == doctest::Approx(1));
  CHECK(Entry(x, y, {}) * 1e170 == doctest::Approx(Entry(y, y, {})));
}

TEST_CASE("the caller's floating-point environment makes no difference") {
  RandomColumns random;
  Columns columns;
  for (std::size_t c = 0; c < 20; ++c) columns.push_back(random.Next(700, c % 3 == 1 ? 20 : 0));
  for (unsigned bits = 0; bits < 16; ++bits) {
    const auto expected = Bits(Calculate(columns, OptionsOf(bits)).matrix);
    DoubleMatrix found;
    {
      const ForeignEnvironment environment;
      found = Calculate(columns, OptionsOf(bits)).matrix;
    }
    CHECK(Bits(found) == expected);
  }
}

TEST_CASE("sums that overflow are computed with more range") {
  const Column x = {1e200, -2e200, 3e200, 5e199};
  const Column small = {1, -2, 3, 0.5};
  const double expected = Entry(small, small, {});
  CHECK(Entry(x, small, {}) == doctest::Approx(expected * 1e200));
  CHECK(std::bit_cast<std::uint64_t>(Entry(x, x, {})) == std::bit_cast<std::uint64_t>(kNotFinite));
  CHECK(Entry(x, x, {.correlation = true}) == doctest::Approx(1));
  // A gap, and a partner that scales the product back into range.
  const Column gapped = {1e200, -2e200, 3e200, 5e199, kMissingValue};
  const Column tiny = {1e-150, -2e-150, 3e-150, 5e-151, 1};
  CHECK(Entry(gapped, gapped, {.correlation = true}) == doctest::Approx(1));
  CHECK(Entry(gapped, tiny, {}) == doctest::Approx(expected * 1e50));
  const double largest = std::numeric_limits<double>::max();
  CHECK(Entry({largest, -largest}, {largest, -largest}, {.correlation = true, .sample = false}) ==
        doctest::Approx(1));
}

TEST_CASE("a gap whose marker another value cancels is found") {
  const Column hidden = {1, kMissingValue, 3, -kMissingValue, 7};
  const Column other = {2, 4, 3, 9, 5};
  const Column seen = {1, 3, -kMissingValue, 7}, rest = {2, 3, 9, 5};
  for (unsigned bits = 0; bits < 16; ++bits)
    CHECK(Entry(hidden, other, OptionsOf(bits)) == Entry(seen, rest, OptionsOf(bits)));
}

TEST_CASE("a correlation lies in -1..1, and that of a variable with itself is 1") {
  const Options pearson{.correlation = true, .sample = false};
  const Options ranks{.correlation = true, .ranks = true};
  // Rounding took these past 1.
  CHECK(Entry({1, 1, 9}, {3, 3, 19}, pearson) == 1);
  CHECK(Entry({1, 1, 9}, {-3, -3, -19}, pearson) == -1);
  RandomColumns random;
  for (int i = 0; i < 200; ++i) {
    const auto rows = static_cast<std::size_t>(2 + i % 40);
    const Column x = random.Next(rows, 0), y = random.Next(rows, i % 2 == 0 ? 0 : 7);
    for (const Options& options : {pearson, ranks}) {
      const DoubleMatrix matrix = Calculate({x, y, x}, options).matrix;
      for (std::size_t a = 0; a < 3; ++a) {
        for (std::size_t b = 0; b < 3; ++b) CHECK_FALSE(std::fabs(matrix[a][b]) > 1);
      }
      if (std::isfinite(matrix[0][0])) CHECK((matrix[0][0] == 1 && matrix[0][2] == 1));
    }
  }
}

TEST_CASE("R's cov and cor") {
  Columns columns;
  int compared = 0;
  for (auto& [kind, texts, numbers] : CsvLines("association.csv")) {
    for (double& number : numbers)
      if (std::isnan(number)) number = kMissingValue;
    if (kind == 'c') columns.clear();
    if (kind == 'x') columns.push_back(numbers);
    if (kind != 'm') continue;
    CAPTURE(texts[1] + texts[2] + texts[3]);
    const DoubleMatrix matrix = Calculate(columns, {.correlation = texts[3] == "cor",
                                                    .ranks = texts[1] == "spearman",
                                                    .listwise = texts[2] == "complete.obs"})
                                    .matrix;
    const std::size_t k = columns.size();
    REQUIRE(numbers.size() == 3 + k * k);
    for (std::size_t e = 0; e < k * k; ++e) {
      const double expected = numbers[3 + e];
      // R takes its means in extended precision: what cancels in a covariance is told by the
      // spread.
      const double spread =
          std::sqrt(std::abs(numbers[3 + e / k * (k + 1)] * numbers[3 + e % k * (k + 1)]));
      CHECK(std::abs(matrix[e / k][e % k] - expected) <= 1e-12 * spread);
    }
    ++compared;
  }
  CHECK(compared == 21);
}

}  // namespace zavrel::tests
