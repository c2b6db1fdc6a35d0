// The kernel of the studentized range, against values in arbitrary precision that
// data/make_studentized_range.py writes, published tables and distributions that it contains.
#include "distributions/studentized_range.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <boost/math/distributions/students_t.hpp>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <numbers>
#include <stdexcept>

#include "numbers/floating_point_scope.h"
#include "support/csv_lines.h"

namespace zavrel::tests {
namespace {

using DistLib::Real;
using DistLib::StudentizedRange;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kBound = 1e-12;

double RelativeError(Real value, Real exact) {
  return static_cast<double>(std::fabs(value / exact - 1));
}

/// The largest error of a function, for the record.
struct Worst {
  void Take(double error) {
    CHECK(error <= kBound);
    most = std::max(most, error);
  }
  double most = 0;
};

bool IsOutside(double means, double df) {
  try {
    const StudentizedRange range(means, df);
    return false;
  } catch (const std::domain_error&) {
    return true;
  }
}

}  // namespace

TEST_CASE_FIXTURE(
    FloatingPointScope,
    "the studentized range agrees with arbitrary-precision arithmetic in both tails") {
  Worst cumulative;
  Worst upper;
  Worst density;
  Worst quantiles;
  int rows = 0;
  for (const auto& [kind, texts, n] : CsvLines("studentized_range.csv")) {
    if (texts[0] == "means") continue;
    REQUIRE(texts.size() == 6);
    ++rows;
    const double means = std::strtod(texts[0].c_str(), nullptr);
    const double df = n[0];
    const double q = n[1];
    INFO("means = ", means, ", df = ", df, ", q = ", q);
    const StudentizedRange range(means, df);
    cumulative.Take(RelativeError(range.Cumulative(q), n[2]));
    upper.Take(RelativeError(range.UpperTail(q), n[3]));
    density.Take(RelativeError(range.Density(q), n[4]));
    // A quantile is as good as its probability: what counts is the error in that.
    const bool lower = n[2] < n[3];
    const Real found = lower ? range.Quantile(n[2]) : range.UpperQuantile(n[3]);
    quantiles.Take(RelativeError(found, q) * q * n[4] / (lower ? n[2] : n[3]));
  }
  CHECK(rows >= 200);
  MESSAGE("worst relative errors: cumulative ", cumulative.most, ", upper tail ", upper.most,
          ", density ", density.most, ", quantiles ", quantiles.most);
}

TEST_CASE_FIXTURE(FloatingPointScope,
                  "the studentized range of two means is Student's |t| times the root of 2") {
  for (const double df : {0.5, 1.0, 2.7, 12.0, 51.5, 1000.0, 3e7}) {
    const StudentizedRange range(2, df);
    const boost::math::students_t_distribution<Real> student(df);
    for (const double t : {1e-12, 1e-3, 0.3, 1.0, 2.5, 7.0}) {
      INFO("df = ", df, ", t = ", t);
      const Real q = t * std::numbers::sqrt2_v<Real>;
      CHECK(RelativeError(range.UpperTail(q), 2 * cdf(complement(student, Real{t}))) <= kBound);
      CHECK(RelativeError(range.Density(q) * std::numbers::sqrt2_v<Real>,
                          2 * pdf(student, Real{t})) <= kBound);
    }
  }
}

TEST_CASE_FIXTURE(FloatingPointScope,
                  "the upper 5 % points of the studentized range are those of published tables") {
  struct Entry {
    double means, df, q;
  };
  for (const Entry& entry :
       {Entry{3, 10, 3.877}, Entry{2, 5, 3.635}, Entry{5, 20, 4.232}, Entry{10, 12, 5.395},
        Entry{4, 60, 3.737}, Entry{3, kInfinity, 3.314}, Entry{10, kInfinity, 4.474}}) {
    INFO("means = ", entry.means, ", df = ", entry.df);
    const Real point = StudentizedRange(entry.means, entry.df).UpperQuantile(0.05L);
    CHECK(point == doctest::Approx(entry.q).epsilon(1.5e-4));
  }
}

TEST_CASE_FIXTURE(
    FloatingPointScope,
    "the studentized range with ever more degrees of freedom becomes the normal range") {
  for (const double means : {2.0, 9.0, 200.0}) {
    const StudentizedRange limit(means, kInfinity);
    for (const double q : {3.0, 6.0, 11.0}) {
      INFO("means = ", means, ", q = ", q);
      for (const double df : {1e13, 1e16, 9.9e16, 1.1e17, 1e308}) {
        const double distance =
            RelativeError(StudentizedRange(means, df).UpperTail(q), limit.UpperTail(q));
        CHECK(distance <= 1e-13 + std::pow(q, 4) / df);
      }
    }
  }
}

TEST_CASE_FIXTURE(FloatingPointScope,
                  "the studentized range rises, its tails sum to 1 and its quantiles invert them") {
  for (const double means : {2.0, 3.0, 17.0, 200.0}) {
    for (const double df : {0.5, 1.3, 6.0, 35.0, 1e5, kInfinity}) {
      INFO("means = ", means, ", df = ", df);
      const StudentizedRange range(means, df);
      Real before = 0;
      for (double q = 0.01; q < 1e4; q *= 1.37) {
        const Real lower = range.Cumulative(q);
        CHECK(std::fabs(static_cast<double>(lower + range.UpperTail(q) - 1)) <= 1e-12);
        CHECK(lower >= before * (1 - 1e-13L));
        before = lower;
      }
      for (const Real p : {1e-300L, 1e-30L, 1e-9L, 0.05L, 0.5L, 0.9L}) {
        INFO("p = ", p);
        CHECK(RelativeError(range.Cumulative(range.Quantile(p)), p) <= kBound);
        if (df < 1 && p < 1e-100L) {
          CHECK_THROWS_AS(range.UpperQuantile(p), std::overflow_error);
        } else {
          CHECK(RelativeError(range.UpperTail(range.UpperQuantile(p)), p) <= kBound);
        }
      }
    }
  }
}

TEST_CASE_FIXTURE(
    FloatingPointScope,
    "the studentized range has an answer or a domain error for whatever it is asked") {
  for (const double means : {-3.0, 0.0, 1.0, 2.5, 201.0, 1e9, 1e308, kInfinity, kNaN})
    CHECK_MESSAGE(IsOutside(means, 10), means);
  for (const double df : {-1.0, 0.0, 0.49, 1e-308, -kInfinity, kNaN})
    CHECK_MESSAGE(IsOutside(3, df), df);
  for (const double means : {2.0, 200.0}) {
    for (const double df : {0.5, 30.0, 1e16, kInfinity}) {
      INFO("means = ", means, ", df = ", df);
      const StudentizedRange range(means, df);
      for (const double q : {-1e-308, -1.0, kInfinity, kNaN}) {
        CHECK_THROWS_AS(range.Density(q), std::domain_error);
        CHECK_THROWS_AS(range.Cumulative(q), std::domain_error);
        CHECK_THROWS_AS(range.UpperTail(q), std::domain_error);
      }
      for (const double p : {-0.5, 0.0, 1.0, 2.0, kNaN}) {
        CHECK_THROWS_AS(range.Quantile(p), std::domain_error);
        CHECK_THROWS_AS(range.UpperQuantile(p), std::domain_error);
      }
      for (const double q : {0.0, 5e-324, 1e-308, 1e-160, 1e160, 1.7e308}) {
        INFO("q = ", q);
        const Real lower = range.Cumulative(q);
        const Real upper = range.UpperTail(q);
        CHECK(lower >= 0);
        CHECK(upper >= 0);
        CHECK(RelativeError(lower + upper, 1) <= kBound);
        CHECK(range.Density(q) >= 0);
      }
    }
  }
}

}  // namespace zavrel::tests
