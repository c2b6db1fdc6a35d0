// Reference figures: exact rational arithmetic over the doubles shown (Python fractions), the roots
// in 60 digits (Python decimal), rounded once.
#include "stats/moment_block.h"

#include <doctest/doctest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace zavrel::tests {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool TooFew(double value) { return HasCondition(value, kConditionTooFew); }
bool NotFinite(double value) { return HasCondition(value, kConditionNotFinite); }
bool NoData(double value) { return HasCondition(value, kConditionNoData); }

doctest::Approx Near(double value, double epsilon = 4e-15) {
  return doctest::Approx(value).epsilon(epsilon).scale(0);
}

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

TEST_CASE("both forms of the moments") {
  const std::vector<double> values{2.5, -1.25, 7, 3.75, 0.5, 11, -4, 6.25};
  const MomentBlock sample = ComputeMoments(values, Form::kSample);
  CHECK(sample.presented == 8);
  CHECK(sample.valid == 8);
  CHECK(sample.minimum == -4);
  CHECK(sample.maximum == 11);
  CHECK(sample.mean == 3.21875);
  CHECK(sample.variance == Near(23.472098214285715));
  CHECK(sample.standard_deviation == Near(4.844801153224528));
  CHECK(sample.skewness == Near(0.11277000449461373));
  CHECK(sample.kurtosis == Near(2.5334625019614103));

  const MomentBlock population = ComputeMoments(values, Form::kPopulation);
  CHECK(population.variance == 20.5380859375);
  CHECK(population.standard_deviation == Near(4.531896505603366));
  CHECK(population.skewness == Near(0.09041715435510045));
  CHECK(population.kurtosis == Near(2.1111726199816236));
}

TEST_CASE("both forms at once are the same numbers") {
  // In the second series the fourth powers overflow, in the third the squares as well, in the
  // fourth they underflow.
  const std::vector<double> series[] = {{2.5, -1.25, 7, 3.75, 0.5, 11, -4, 6.25},
                                        {-4e102, -4e102, 4e102, 4e102, 4e102, 4e102},
                                        {1e160, 2e160, 4e160, 8e160},
                                        {1e-160, 2e-160, 4e-160, 8e-160},
                                        {1.5e308, 1.7e308, -1},
                                        {1, std::numeric_limits<double>::quiet_NaN(), -0.0},
                                        {}};
  for (const std::vector<double>& values : series) {
    RunningSum first_pass;
    for (const double value : values) first_pass.Add(value);
    const RunningSum* const passes[] = {nullptr, &first_pass};
    for (const RunningSum* known : passes) {
      const MomentBlocks both = ComputeBothForms(values, known);
      for (std::size_t id = 0; id <= 6; ++id) {
        const auto moment = static_cast<StatisticId>(id);
        const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
        CHECK(bits(both.sample[moment]) == bits(ComputeMoments(values, Form::kSample)[moment]));
        CHECK(bits(both.population[moment]) ==
              bits(ComputeMoments(values, Form::kPopulation)[moment]));
      }
    }
  }
}

TEST_CASE("few values, no spread, no values") {
  const std::vector<double> one{7};
  const MomentBlock sample = ComputeMoments(one, Form::kSample);
  CHECK(sample.mean == 7);
  CHECK(sample.minimum == 7);
  CHECK(TooFew(sample.variance));
  CHECK(TooFew(sample.standard_deviation));
  CHECK(TooFew(sample.skewness));
  CHECK(TooFew(sample.kurtosis));
  const MomentBlock population = ComputeMoments(one, Form::kPopulation);
  CHECK(population.variance == 0);
  CHECK(population.standard_deviation == 0);
  CHECK(TooFew(population.skewness));
  CHECK(TooFew(population.kurtosis));

  CHECK(TooFew(ComputeMoments(std::vector<double>{1, 2}, Form::kSample).skewness));
  const MomentBlock three = ComputeMoments(std::vector<double>{1, 2, 6}, Form::kSample);
  CHECK(three.skewness == Near(1.457862967321305));
  CHECK(TooFew(three.kurtosis));

  // The mean of equal values may be off by a rounding; their spread is 0 all the same.
  for (const Form form : {Form::kPopulation, Form::kSample}) {
    const MomentBlock equal = ComputeMoments(std::vector<double>(10, 0.1), form);
    CHECK(equal.variance == 0);
    CHECK(TooFew(equal.skewness));
    CHECK(TooFew(equal.kurtosis));
  }

  const MomentBlock empty = ComputeMoments({}, Form::kSample);
  CHECK(empty.valid == 0);
  CHECK(NoData(empty.minimum));
  CHECK(NoData(empty.mean));
  CHECK(NoData(empty.kurtosis));
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
  CHECK(NoData(nothing.mean));
  CHECK(NoData(nothing.maximum));
}

TEST_CASE("a large offset costs no more digits than the data lost themselves") {
  CHECK(ComputeMoments(OffsetSeries(1e6), Form::kSample).variance ==
        Near(0.01000000000698492, 1e-12));
  CHECK(ComputeMoments(OffsetSeries(1e7), Form::kSample).kurtosis == Near(0.996996996996997, 1e-7));
}

TEST_CASE("overflow is computed again in extended precision") {
  // The fourth powers overflow.
  const MomentBlock fourth =
      ComputeMoments(std::vector<double>{1e100, 2e100, 4e100, 8e100}, Form::kSample);
  CHECK(fourth.mean == Near(3.75e100));
  CHECK(fourth.variance == Near(9.583333333333334e200));
  CHECK(fourth.skewness == Near(1.1376243669576889));
  CHECK(fourth.kurtosis == Near(3.75765595463138));
  // The squares overflow, and the variance is beyond a double even then.
  const std::vector<double> huge{1e160, 2e160, 4e160, 8e160};
  const MomentBlock second = ComputeMoments(huge, Form::kPopulation);
  CHECK(NotFinite(second.variance));
  CHECK(second.standard_deviation == Near(2.680951323690902e160));
  CHECK(second.skewness == Near(0.6568077344996993));
  CHECK(second.kurtosis == Near(1.9010207939508506));
  // The sum overflows.
  const MomentBlock sum = ComputeMoments(std::vector<double>{1.5e308, 1.7e308}, Form::kSample);
  CHECK(sum.mean == Near(1.6e308));
  CHECK(sum.standard_deviation == Near(1.4142135623730951e307));
  CHECK(NotFinite(sum.variance));
  // An infinity stays one.
  const MomentBlock infinite = ComputeMoments(std::vector<double>{1, 2, kInfinity}, Form::kSample);
  CHECK(infinite.maximum == kInfinity);
  CHECK(NotFinite(infinite.mean));
  CHECK(NotFinite(infinite.variance));
  CHECK(NotFinite(infinite.skewness));
}

TEST_CASE("so is underflow") {
  // The shape of 1, 2, 4, 8, however small they are: the fourth powers lose digits, then vanish,
  // then the squares do.
  for (const double scale : {1e-80, 1e-100, 1e-170, 0x1p-1060}) {
    CAPTURE(scale);
    const MomentBlock block = ComputeMoments(
        std::vector<double>{1 * scale, 2 * scale, 4 * scale, 8 * scale}, Form::kSample);
    CHECK(block.skewness == Near(1.1376243669576889));
    CHECK(block.kurtosis == Near(3.75765595463138));
  }
  const double tiny = std::numeric_limits<double>::denorm_min();
  const MomentBlock block =
      ComputeMoments(std::vector<double>{2 * tiny, 4 * tiny, 6 * tiny}, Form::kPopulation);
  CHECK(block.minimum == 2 * tiny);
  CHECK(block.maximum == 6 * tiny);
  CHECK(block.mean == 4 * tiny);
  CHECK(block.variance == 0);  // below everything
  CHECK(block.standard_deviation == 2 * tiny);
  CHECK(block.kurtosis == Near(1.5));
}

}  // namespace zavrel::tests
