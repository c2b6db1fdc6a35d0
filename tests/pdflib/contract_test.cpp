// Codes, statuses, conventions and what nobody should pass.
#include <doctest/doctest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "pdflib/library.h"
#include "support/foreign_environment.h"

namespace zavrel::tests {
namespace {

const std::vector<Distribution> kOrdinary = {
    {"normal", 10, 2}, {"student", 9}, {"chisq", 4}, {"f", 3, 12}, {"binomial", 10, 0.3}};
constexpr int kRequests[] = {PDFLIB_MOMENTS,  PDFLIB_DENSITY,    PDFLIB_CUMULATIVE,
                             PDFLIB_QUANTILE, PDFLIB_UPPER_TAIL, PDFLIB_UPPER_QUANTILE};

/// The moments; a not-a-number where the status says that there is none.
std::vector<double> MomentsOf(const Distribution& distribution) {
  const Reply reply = Ask(distribution, PDFLIB_MOMENTS, kNaN);
  REQUIRE(reply.code == PDFLIB_OK);
  for (std::size_t i = 0; i < reply.status.size(); ++i) {
    CHECK((reply.status[i] == 0 || reply.status[i] == PDFLIB_NO_SUCH_MOMENT));
    CHECK(std::isnan(reply.results[i]) == (reply.status[i] != 0));
  }
  return {reply.results.begin(), reply.results.end()};
}

auto Bits(const Reply& reply) {
  return std::bit_cast<std::array<std::uint64_t, PDFLIB_MOMENT_COUNT>>(reply.results);
}

void CheckUntouched(const Reply& reply) {
  for (const double result : reply.results) CHECK(result == kUntouched);
  for (const std::int16_t status : reply.status) CHECK(status == kUntouchedStatus);
}

}  // namespace

TEST_CASE("moments, and those that there are not") {
  const double exact = std::ldexp(1, -530);
  const std::pair<Distribution, std::vector<double>> cases[] = {
      {{"normal", -3, 0.5}, {-3, 0.25, 0, 3, -3, kNaN}},
      {{"normal", 0, 1e200}, {0, kNaN, 0, 3, 0, kNaN}},   // no double holds the variance
      {{"normal", 0, 1e-160}, {0, kNaN, 0, 3, 0, kNaN}},  // nor this one to its last digits
      {{"normal", 5e-324, exact}, {5e-324, exact * exact, 0, 3, 5e-324, kNaN}},
      {{"student", 1}, {kNaN, kNaN, kNaN, kNaN, 0, kNaN}},
      {{"student", 2}, {0, kNaN, kNaN, kNaN, 0, kNaN}},
      {{"student", 3}, {0, 3, kNaN, kNaN, 0, kNaN}},
      {{"student", 4}, {0, 2, 0, kNaN, 0, kNaN}},
      {{"student", 10}, {0, 1.25, 0, 4, 0, kNaN}},
      {{"chisq", 1}, {1, 2, std::sqrt(8), 15, 0, kNaN}},
      {{"chisq", 8}, {8, 16, 1, 4.5, 6, kNaN}},
      {{"f", 1, 2}, {kNaN, kNaN, kNaN, kNaN, 0, kNaN}},
      {{"f", 4, 4}, {2, kNaN, kNaN, kNaN, 1.0 / 3, kNaN}},
      {{"f", 4, 6}, {1.5, 4.5, kNaN, kNaN, 0.375, kNaN}},
      {{"f", 4, 8}, {4.0 / 3, 20.0 / 9, 7 * std::sqrt(0.8), kNaN, 0.4, kNaN}},
      {{"f", 5, 10}, {1.25, 65.0 / 48, 4.5 * std::sqrt(48.0 / 65), 3 + 661.2 / 13, 0.5, kNaN}},
      {{"binomial", 10, 0.25},
       {2.5, 1.875, 0.5 / std::sqrt(1.875), 3 - 1.0 / 16 * 2 / 1.875, 2, 3}},
      {{"binomial", 9, 0.125},
       {1.125, 0.984375, 0.75 / std::sqrt(0.984375), 3 + 0.34375 / 0.984375, 1, 1}},
      // The means 1.5 and 0.5 as doubles, from a p just below.
      {{"binomial", 5, 0.3}, {1.5, 1.05, 0.4 / std::sqrt(1.05), 3 - 0.26 / 1.05, 1, 2}},
      {{"binomial", 7, 1}, {7, 0, kNaN, kNaN, 7, 7}},
      {{"binomial", 0, 0.5}, {0, 0, kNaN, kNaN, 0, 0}},
  };
  for (const auto& [distribution, expected] : cases) {
    INFO("name = ", distribution.name, ", a = ", distribution.a, ", b = ", distribution.b);
    const std::vector<double> moments = MomentsOf(distribution);
    for (std::size_t i = 0; i < expected.size(); ++i) {
      CAPTURE(i);
      CHECK(std::isnan(moments[i]) == std::isnan(expected[i]));
      if (!std::isnan(expected[i]))
        CHECK(std::fabs(moments[i] - expected[i]) <= 4 * kEpsilon * std::fabs(expected[i]));
    }
  }
}

TEST_CASE("requests that there are not, and places that are missing") {
  double results[PDFLIB_MOMENT_COUNT];
  std::int16_t status[PDFLIB_MOMENT_COUNT];
  for (const Distribution& distribution : kOrdinary) {
    CAPTURE(distribution.name);
    for (const int request : {-32768, -1, 0, 5, 8, 256, 257, 32767}) {
      const Reply reply = Ask(distribution, request, 0.5);
      CHECK(reply.code == PDFLIB_UNKNOWN_REQUEST);
      CheckUntouched(reply);
    }
    for (const int request : kRequests) {
      CHECK(AskRaw(distribution, request, 1, 0.5, results, status) == PDFLIB_UNKNOWN_REQUEST);
      CHECK(AskRaw(distribution, request, 0, 0.5, nullptr, status) == PDFLIB_NULL_POINTER);
      const bool moments = request == PDFLIB_MOMENTS;
      CHECK(AskRaw(distribution, request, 0, 0.5, results, nullptr) ==
            (moments ? PDFLIB_NULL_POINTER : PDFLIB_OK));
    }
  }
}

TEST_CASE("whatever is passed, the answer is a finite number or a code") {
  const std::vector<double> hostile = {
      kNaN, -kInfinity, kInfinity, -1,   -0.0,  0,     5e-324,  1e-308, 1e-20,  0.5,    1,
      1.5,  1e6,        1e10,      1e15, 1e100, 1e300, 1.7e308, -1e300, -1e-10, 2.5e-7, 400};
  const std::vector<double> counts = {-2147483648.0, -1,           0,           1, 2, 1000,
                                      1e6,           2147483646.0, 2147483647.0};
  std::vector<Distribution> distributions;
  for (const Distribution& ordinary : kOrdinary) {
    const bool two = ordinary.name != "student" && ordinary.name != "chisq";
    for (const double a : ordinary.discrete() ? counts : hostile)
      for (const double b : two ? hostile : std::vector<double>{0})
        distributions.push_back({ordinary.name, a, b});
  }
  for (const Distribution& distribution : distributions) {
    INFO("name = ", distribution.name, ", a = ", distribution.a, ", b = ", distribution.b);
    for (const double x : hostile) {
      CAPTURE(x);
      for (const int request : kRequests) {
        CAPTURE(request);
        const bool moments = request == PDFLIB_MOMENTS;
        const Reply reply = Ask(distribution, request, x);
        if (!std::isfinite(distribution.a) || !std::isfinite(distribution.b) ||
            (!moments && !std::isfinite(x))) {
          CHECK(reply.code == PDFLIB_OUTSIDE_DOMAIN);
        }
        if (reply.code != PDFLIB_OK) CheckUntouched(reply);
        if (reply.code == PDFLIB_OK && !moments) CHECK(std::isfinite(reply.results[0]));
      }
    }
  }
}

TEST_CASE("outside the support and at its ends") {
  for (const Distribution& distribution : kOrdinary) {
    CAPTURE(distribution.name);
    for (const double p : {-1e-300, 1.0000000000000002, kInfinity, kNaN}) {
      CHECK(Ask(distribution, PDFLIB_QUANTILE, p).code == PDFLIB_OUTSIDE_DOMAIN);
      CHECK(Ask(distribution, PDFLIB_UPPER_QUANTILE, p).code == PDFLIB_OUTSIDE_DOMAIN);
    }
    const Reply first = Ask(distribution, PDFLIB_QUANTILE, 0);
    CHECK(first.code == (distribution.from_zero() ? PDFLIB_OK : PDFLIB_NO_VALUE));
    if (distribution.from_zero()) {
      CHECK(first.results[0] == 0);
      for (const int request : {PDFLIB_DENSITY, PDFLIB_CUMULATIVE, PDFLIB_UPPER_TAIL})
        CHECK(Ask(distribution, request, -1e-300).code == PDFLIB_OUTSIDE_DOMAIN);
      CHECK(Value(distribution, PDFLIB_UPPER_QUANTILE, 1) == 0);
    }
    if (!distribution.discrete()) {
      CHECK(Ask(distribution, PDFLIB_QUANTILE, 1).code == PDFLIB_NO_VALUE);
      CHECK(Ask(distribution, PDFLIB_UPPER_QUANTILE, 0).code == PDFLIB_NO_VALUE);
    }
  }
  for (const int median : {PDFLIB_QUANTILE, PDFLIB_UPPER_QUANTILE})
    CHECK(!std::signbit(Value({"student", 9}, median, 0.5)));
  // Densities without bound at 0.
  CHECK(Ask({"chisq", 1}, PDFLIB_DENSITY, 0).code == PDFLIB_NO_VALUE);
  CHECK(Ask({"f", 1, 5}, PDFLIB_DENSITY, 0).code == PDFLIB_NO_VALUE);
  CHECK(Value({"chisq", 2}, PDFLIB_DENSITY, 0) == 0.5);
  CHECK(Value({"f", 2, 5}, PDFLIB_DENSITY, 0) == 1);
  CHECK(Value({"chisq", 1}, PDFLIB_UPPER_TAIL, 0) == 1);
}

TEST_CASE("a binomial distribution between, below and above its whole numbers") {
  const Distribution ten{"binomial", 10, 0.5};
  const struct {
    int request;
    double x, value;
  } cases[] = {{PDFLIB_DENSITY, 3, 120},        {PDFLIB_DENSITY, 10, 1},
               {PDFLIB_DENSITY, 2.5, 0},        {PDFLIB_CUMULATIVE, 2.999, 56},
               {PDFLIB_UPPER_TAIL, 2.999, 968}, {PDFLIB_UPPER_TAIL, 9, 1},
               {PDFLIB_CUMULATIVE, 10, 1024},   {PDFLIB_UPPER_TAIL, 10, 0}};
  for (const auto& [request, x, value] : cases) CHECK(Value(ten, request, x) == value / 1024);
  CHECK(Ask(ten, PDFLIB_CUMULATIVE, 10.5).code == PDFLIB_OUTSIDE_DOMAIN);
  for (const auto& [p, k] : {std::pair{56.0, 2}, {56.1, 3}, {1024.0, 10}})
    CHECK(Value(ten, PDFLIB_QUANTILE, p / 1024) == k);
  for (const auto& [p, k] : {std::pair{56.0, 7}, {55.9, 8}, {0.0, 10}})
    CHECK(Value(ten, PDFLIB_UPPER_QUANTILE, p / 1024) == k);
  // The quantile of what the cumulative probability shows is the value again, up to where it shows
  // 1 from some value on.
  for (const double p : {0.1, 0.3, 0.9}) {
    const Distribution thirty{"binomial", 30, p};
    for (double k = 0; k < 30; ++k) {
      const double below = Value(thirty, PDFLIB_CUMULATIVE, k);
      if (below < 1) CHECK(Value(thirty, PDFLIB_QUANTILE, below) == k);
      const double above = Value(thirty, PDFLIB_UPPER_TAIL, k);
      if (above < 1) CHECK(Value(thirty, PDFLIB_UPPER_QUANTILE, above) == k);
    }
  }
  CHECK(Value({"binomial", 1000, 0.5}, PDFLIB_QUANTILE, 1) == 1000);
  // All of the probability at one value.
  for (const Distribution& certain :
       {Distribution{"binomial", 5, 0}, {"binomial", 5, 1}, {"binomial", 0, 0.3}}) {
    const double value = certain.b == 1 ? 5 : 0;
    CHECK(Value(certain, PDFLIB_DENSITY, value) == 1);
    CHECK(Value(certain, PDFLIB_CUMULATIVE, value) == 1);
    CHECK(Value(certain, PDFLIB_UPPER_TAIL, value) == 0);
    for (const double p : {1e-300, 0.5, 1.0}) CHECK(Value(certain, PDFLIB_QUANTILE, p) == value);
    for (const double q : {0.0, 1e-300, 0.5})
      CHECK(Value(certain, PDFLIB_UPPER_QUANTILE, q) == value);
  }
}

TEST_CASE("the caller's floating-point mode changes nothing and is left alone") {
  // Masked all: 24 bits downwards, 53 bits upwards, and 64 bits towards 0 with subnormals as zero.
  constexpr std::pair<std::uint32_t, std::uint16_t> kModes[] = {
      {0x3F80, 0x047F}, {0x5F80, 0x0A7F}, {0xFFC0, 0x0F7F}};
  for (const Distribution& distribution : kOrdinary) {
    CAPTURE(distribution.name);
    for (const int request : kRequests) {
      CAPTURE(request);
      const bool value =
          request == PDFLIB_DENSITY || request == PDFLIB_CUMULATIVE || request == PDFLIB_UPPER_TAIL;
      const double x = value ? 3 : 1e-300;
      const Reply expected = Ask(distribution, request, x);
      CHECK(expected.code == PDFLIB_OK);
      for (const auto& [mxcsr, x87] : kModes) {
        CAPTURE(mxcsr);
        Reply reply;
        bool left_alone = false;
        {
          const ForeignEnvironment environment(mxcsr, x87);
          reply = Ask(distribution, request, x);
          left_alone = ForeignEnvironment::Stands(mxcsr, x87);
        }
        CHECK(left_alone);
        CHECK(reply.code == expected.code);
        CHECK(Bits(reply) == Bits(expected));
        CHECK(reply.status == expected.status);
      }
    }
  }
}

}  // namespace zavrel::tests
