// Reference figures: exact rational arithmetic over the doubles shown (Python fractions), the roots
// in 60 digits (Python decimal), rounded once.
#include "stats/moment_block.h"

#include <doctest/doctest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <vector>

#include "stats/data_set_summary.h"
#include "support/each_target.h"

namespace zavrel::tests {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

doctest::Approx Near(double value, double epsilon = 4e-15) {
  return doctest::Approx(value).epsilon(epsilon).scale(0);
}

constexpr double kFew = ConditionDouble(kConditionTooFew);
constexpr double kEndless = ConditionDouble(kConditionNotFinite);
constexpr double kNone = ConditionDouble(kConditionNoData);

const std::vector<double> kEight{2.5, -1.25, 7, 3.75, 0.5, 11, -4, 6.25};

std::uint64_t Bits(double value) { return std::bit_cast<std::uint64_t>(value); }

/// Mean `offset` + 0.2, standard deviation 0.1, had doubles the digits for it.
std::vector<double> OffsetSeries(double offset) {
  std::vector<double> values{offset + 0.2};
  for (int i = 0; i < 500; ++i) {
    values.push_back(offset + 0.1);
    values.push_back(offset + 0.3);
  }
  return values;
}

}  // namespace

TEST_CASE("the moments of many values, of few, of none, and far out") {
  using enum Form;
  const double tiny = std::numeric_limits<double>::denorm_min(), root = std::sqrt(0.5);
  const struct {
    const char* what;
    std::vector<double> values;
    Form form;
    // Minimum, maximum, mean, standard deviation, variance, skewness, kurtosis.
    std::vector<double> expected;
  } cases[] = {
      {"eight values",
       kEight,
       kSample,
       {-4, 11, 3.21875, 4.844801153224528, 23.472098214285715, 0.11277000449461373,
        2.5334625019614103}},
      {"eight values",
       kEight,
       kPopulation,
       {-4, 11, 3.21875, 4.531896505603366, 20.5380859375, 0.09041715435510045,
        2.1111726199816236}},
      {"one", {7}, kSample, {7, 7, 7, kFew, kFew, kFew, kFew}},
      {"one", {7}, kPopulation, {7, 7, 7, 0, 0, kFew, kFew}},
      {"two", {1, 2}, kSample, {1, 2, 1.5, root, 0.5, kFew, kFew}},
      {"three", {1, 2, 6}, kSample, {1, 6, 3, std::sqrt(7), 7, 1.457862967321305, kFew}},
      // The mean of equal values may be off by a rounding; their spread is 0 all the same.
      {"equal", std::vector<double>(10, 0.1), kSample, {0.1, 0.1, 0.1, 0, 0, kFew, kFew}},
      {"equal", std::vector<double>(10, 0.1), kPopulation, {0.1, 0.1, 0.1, 0, 0, kFew, kFew}},
      {"none", {}, kSample, std::vector<double>(7, kNone)},
      {"fourth powers that overflow",
       {1e100, 2e100, 4e100, 8e100},
       kSample,
       {1e100, 8e100, 3.75e100, 3.095695936834452e100, 9.583333333333334e200, 1.1376243669576889,
        3.75765595463138}},
      // The variance is beyond a double however it is computed.
      {"squares that overflow",
       {1e160, 2e160, 4e160, 8e160},
       kPopulation,
       {1e160, 8e160, 3.75e160, 2.680951323690902e160, kEndless, 0.6568077344996993,
        1.9010207939508506}},
      {"a sum that overflows",
       {1.5e308, 1.7e308},
       kSample,
       {1.5e308, 1.7e308, 1.6e308, 1.4142135623730951e307, kEndless, kFew, kFew}},
      {"an infinity",
       {1, 2, kInfinity},
       kSample,
       {1, kInfinity, kEndless, kEndless, kEndless, kEndless, kFew}},
      {"the smallest numbers",
       {2 * tiny, 4 * tiny, 6 * tiny},
       kPopulation,
       {2 * tiny, 6 * tiny, 4 * tiny, 2 * tiny, 0, 0, 1.5}},
  };
  for (const auto& given : cases) {
    const MomentBlock block = ComputeMoments(given.values, given.form);
    CHECK(block.presented == given.values.size());
    CHECK(block.valid == given.values.size());
    for (std::size_t id = 0; id <= 6; ++id) {
      const double found = block[static_cast<StatisticId>(id)], expected = given.expected[id];
      INFO(given.what, ", statistic ", id, ": ", found);
      CHECK((std::isnan(expected) ? Bits(found) == Bits(expected)
                                  : found == expected || found == Near(expected)));
    }
  }
}

TEST_CASE("both forms at once are the same numbers") {
  // In the second series the fourth powers overflow, in the third the squares as well, in the
  // fourth they underflow.
  const std::vector<double> series[] = {kEight,
                                        {-4e102, -4e102, 4e102, 4e102, 4e102, 4e102},
                                        {1e160, 2e160, 4e160, 8e160},
                                        {1e-160, 2e-160, 4e-160, 8e-160},
                                        {1.5e308, 1.7e308, -1},
                                        {1, std::numeric_limits<double>::quiet_NaN(), -0.0},
                                        {}};
  for (const std::vector<double>& values : series) {
    RunningSum first_pass;
    for (const double value : values) first_pass.Add(value);
    if (const auto mean = MeanAlone(first_pass, values.size()))
      CHECK(Bits(*mean) == Bits(ComputeMoments(values, Form::kSample).mean));
    const RunningSum* const passes[] = {nullptr, &first_pass};
    for (const RunningSum* known : passes) {
      const MomentBlocks both = ComputeBothForms(values, known);
      for (std::size_t id = 0; id <= 6; ++id) {
        const auto moment = static_cast<StatisticId>(id);
        CHECK(Bits(both.sample[moment]) == Bits(ComputeMoments(values, Form::kSample)[moment]));
        CHECK(Bits(both.population[moment]) ==
              Bits(ComputeMoments(values, Form::kPopulation)[moment]));
      }
    }
  }
}

// Values one unit in the last place apart have the smallest deviations.
TEST_CASE("the mean alone is that of the block, or is not known") {
  std::mt19937_64 random(11);
  for (int exponent = -250; exponent <= 300; exponent += 5) {
    const double size = std::pow(10.0, exponent);
    const double next = std::nextafter(size, 2 * size);
    const std::vector<double> close = {size, size, next, size, next, size, size};
    const std::vector<double> far = {size, -size / 3, size * 1e-290, 0, size / 7};
    std::vector<double> many(1000);
    for (double& x : many) x = random() % 1000 == 0 ? next : size;
    for (const std::vector<double>& values : {close, far, many}) {
      RunningSum first_pass;
      for (const double value : values) first_pass.Add(value);
      const std::optional<double> mean = MeanAlone(first_pass, values.size());
      if (exponent >= -25 && exponent <= 55) CHECK(mean);
      if (mean) CHECK(Bits(*mean) == Bits(ComputeMoments(values, Form::kSample).mean));
    }
  }
}

TEST_CASE("values that are no numbers are skipped and counted") {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double excluded = ConditionDouble(kConditionExcluded);
  const std::vector<double> values{excluded, nan,      1,        nan,
                                   3,        excluded, excluded, ConditionDouble(-8)};
  const MomentBlock block = ComputeMoments(values, Form::kSample);
  CHECK(block.presented == 8);
  CHECK(block.valid == 2);
  CHECK(block.not_a_number == 3);
  CHECK(block.excluded == 3);
  CHECK(block.minimum == 1);
  CHECK(block.maximum == 3);
  CHECK(block.mean == 2);
  CHECK(block.variance == 2);

  const MomentBlock nothing = ComputeMoments(std::vector<double>{nan, excluded}, Form::kPopulation);
  CHECK(nothing.not_a_number == 1);
  CHECK(nothing.excluded == 1);
  CHECK(HasCondition(nothing.mean, kConditionNoData));
  CHECK(HasCondition(nothing.maximum, kConditionNoData));
}

TEST_CASE("a large offset costs no more digits than the data lost themselves") {
  CHECK(ComputeMoments(OffsetSeries(1e6), Form::kSample).variance ==
        Near(0.01000000000698492, 1e-12));
  CHECK(ComputeMoments(OffsetSeries(1e7), Form::kSample).kurtosis == Near(0.996996996996997, 1e-7));
}

TEST_CASE("what underflows is computed again in extended precision") {
  // The shape of 1, 2, 4, 8, however small they are: the fourth powers lose digits, then vanish,
  // then the squares do.
  for (const double scale : {1e-80, 1e-100, 1e-170, 0x1p-1060}) {
    CAPTURE(scale);
    const MomentBlock block = ComputeMoments(
        std::vector<double>{1 * scale, 2 * scale, 4 * scale, 8 * scale}, Form::kSample);
    CHECK(block.skewness == Near(1.1376243669576889));
    CHECK(block.kurtosis == Near(3.75765595463138));
  }
}

TEST_CASE("moments have the same bits on every processor, as if summed one by one") {
  std::mt19937_64 random(3);
  std::normal_distribution<double> normal(100, 15);
  for (std::size_t count = 2; count < 60; ++count) {
    std::vector<double> values;
    for (std::size_t i = 0; i < count; ++i)
      values.push_back(random() % 7 == 0 ? ConditionDouble(kConditionExcluded) : normal(random));
    const MomentBlock first = ComputeMoments(values, Form::kPopulation);
    double squares[2] = {}, cubes[2] = {};
    for (std::size_t i = 0; i < count; ++i) {
      if (std::isnan(values[i])) continue;
      const double deviation = values[i] - first.mean, square = deviation * deviation;
      squares[i % 2] += square;
      cubes[i % 2] += square * deviation;
    }
    const auto valid = static_cast<double>(first.valid);
    const double variance = (squares[0] + squares[1]) / valid;
    const double skewness = (cubes[0] + cubes[1]) / (std::sqrt(variance) * variance * valid);
    EachTarget([&] {
      const MomentBlock block = ComputeMoments(values, Form::kPopulation);
      if (first.valid == 0) return;
      CHECK(Bits(block.variance) == Bits(variance));
      if (variance > 0) CHECK(Bits(block.skewness) == Bits(skewness));
      CHECK(Bits(block.kurtosis) == Bits(first.kurtosis));
    });
  }
}

TEST_CASE("a data set's summary as the log shows it") {
  const std::vector<double> values{1, 2, 4, ConditionDouble(kConditionExcluded)};
  const DataSetSummary summary = SummaryOf(ComputeMoments(values, Form::kSample), 7, 2);
  CHECK(summary.Text() ==
        "{ numTotalData=7, numUsedData=3, numErrs=2, numFiltered=1, min=1, max=4, mean=2.33333, "
        "stdDev=1.52753, variance=2.33333, skewness=0.93522, kurtosis=-nan }");
  CHECK(summary.Text(true).starts_with(
      "{ numTotalData=7, numUsedData=3, numErrs=2, numFiltered=1, min= +1.0000000000000000E+00, "
      "max= +4.0000000000000000E+00, mean= +2.3333333333333335E+00, "));

  DataSetSummary sums = summary;
  sums.statistics = DataSetSummary::PowerSums{PowerSum{7}, PowerSum{21}, PowerSum{73},
                                              PowerSum{1e300, 1.25e4000L}};
  CHECK(sums.Text() ==
        "numTotalData=7, numUsedData=3, numErrs=2, numFiltered=1, min=1, max=4, sumX1=7, sumX2=21, "
        "sumX3=73, sumX4=1.25e+4000");
}

}  // namespace zavrel::tests
