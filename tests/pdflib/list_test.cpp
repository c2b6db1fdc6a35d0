// The functions that serve the whole list of distributions.
#include <doctest/doctest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

#include "pdflib/library.h"
#include "support/foreign_environment.h"

namespace zavrel::tests {
namespace {

constexpr int kRequests[] = {PDFLIB_DENSITY,  PDFLIB_LOG_DENSITY,    PDFLIB_CUMULATIVE,
                             PDFLIB_QUANTILE, PDFLIB_UPPER_QUANTILE, PDFLIB_UPPER_TAIL};

struct Answers {
  std::int16_t code;
  std::vector<double> results;
  std::vector<std::int16_t> status;
};

Answers Evaluate(std::int32_t place, int request, const std::vector<double>& parameters,
                 const std::vector<double>& x) {
  Answers answers{0, std::vector<double>(x.size(), kUntouched),
                  std::vector<std::int16_t>(x.size(), kUntouchedStatus)};
  answers.code = List().evaluate(place, static_cast<std::int16_t>(request), parameters.data(),
                                 static_cast<std::int32_t>(parameters.size()), x.data(),
                                 answers.results.data(), answers.status.data(),
                                 static_cast<std::int64_t>(x.size()));
  return answers;
}

Answers Evaluate(const char* name, int request, const std::vector<double>& parameters,
                 const std::vector<double>& x) {
  return Evaluate(List().find(name), request, parameters, x);
}

std::string Problem(std::int32_t place, const std::vector<double>& parameters, std::int32_t room) {
  std::vector<char> text(static_cast<std::size_t>(room) + 1, '#');
  CHECK(List().problem(place, parameters.data(), static_cast<std::int32_t>(parameters.size()),
                       text.data(), room) == PDFLIB_OK);
  CHECK(text.back() == '#');
  return text.data();
}

/// A value in the domain of each parameter, as far as they fit together.
std::vector<double> SomeParameters(const pdfDescription& description) {
  std::vector<double> parameters;
  for (std::int32_t i = 0; i < description.parameter_count; ++i) {
    const pdfParameter& parameter = description.parameters[i];
    const double low = std::max(parameter.low, -100.0), high = std::min(parameter.high, 100.0);
    const double share = (i + 1.0) / (description.parameter_count + 1);
    const double value = low + share * (high - low);
    parameters.push_back(parameter.whole != 0 ? std::ceil(value) : value);
  }
  return parameters;
}

}  // namespace

TEST_CASE("every distribution describes itself and is found by its names") {
  const std::int32_t count = List().count();
  CHECK(count >= 60);
  for (std::int32_t place = 0; place < count; ++place) {
    const pdfDescription* const description = List().describe(place);
    REQUIRE(description != nullptr);
    CAPTURE(description->name);
    CHECK(List().describe(place) == description);
    CHECK(List().find(description->name) == place);
    for (const char* text : {description->support, description->formula, description->source})
      CHECK(std::strlen(text) > 0);
    CHECK(description->parameter_count > 0);
    for (std::int32_t i = 0; i < description->parameter_count; ++i) {
      const pdfParameter& parameter = description->parameters[i];
      CHECK(parameter.low < parameter.high);
      CHECK(std::isnan(parameter.by_default) == (parameter.has_default == 0));
    }
  }
  CHECK(List().find("GAMMA 3P") == List().find("pearson-iii"));
  CHECK(List().find("gamma 4P") == -1);
  CHECK(List().find(nullptr) == -1);
  CHECK(List().describe(-1) == nullptr);
  CHECK(List().describe(count) == nullptr);
}

TEST_CASE("arrays have the values of the functions with a distribution of their own") {
  const std::vector<double> x = {0.125, 0.25, 0.5, 0.75, 0.999, 1e-300, 0, 1, 2.5, -1, kNaN};
  const std::tuple<Distribution, const char*, std::vector<double>> cases[] = {
      {{"normal", 1, 2}, "normal", {1, 2}},
      {{"student", 9}, "Student", {9}},
      {{"chisq", 4}, "chi-square", {4}},
      {{"f", 3, 12}, "F", {3, 12}},
      {{"binomial", 10, 0.3}, "binomial", {10, 0.3}}};
  for (const auto& [distribution, name, parameters] : cases) {
    CAPTURE(name);
    for (const int request : kRequests) {
      CAPTURE(request);
      if (request == PDFLIB_LOG_DENSITY) continue;
      const Answers answers = Evaluate(name, request, parameters, x);
      CHECK(answers.code == PDFLIB_OK);
      for (std::size_t i = 0; i < x.size(); ++i) {
        CAPTURE(x[i]);
        const Reply reply = Ask(distribution, request, x[i]);
        CHECK(answers.status[i] == reply.code);
        if (reply.code != PDFLIB_OK) {
          CHECK(std::isnan(answers.results[i]));
        } else {
          CHECK(answers.results[i] == reply.results[0]);
        }
      }
    }
    const Reply moments = Ask(distribution, PDFLIB_MOMENTS, 0);
    Reply listed;
    CHECK(List().moments(List().find(name), parameters.data(),
                         static_cast<std::int32_t>(parameters.size()), listed.results.data(),
                         listed.status.data()) == PDFLIB_OK);
    CHECK(listed.status == moments.status);
    for (std::size_t i = 0; i < listed.results.size(); ++i)
      CHECK((listed.results[i] == moments.results[i] || moments.status[i] != 0));
  }
}

TEST_CASE("what is wrong has a code, and the parameters' mistakes a text") {
  const std::int32_t weibull = List().find("Weibull");
  CHECK(Problem(weibull, {-2}, 100) == "shape must be greater than 0, is -2");
  CHECK(Problem(weibull, {-2}, 6) == "shape");
  CHECK(Problem(weibull, {-2}, 1).empty());
  CHECK(Problem(weibull, {}, 100) == "shape is missing");
  CHECK(Problem(weibull, {1, 2}, 100).empty());
  char text[8];
  CHECK(List().problem(-1, nullptr, 0, text, 8) == PDFLIB_NO_SUCH_DISTRIBUTION);
  CHECK(List().problem(weibull, nullptr, 0, nullptr, 8) == PDFLIB_NULL_POINTER);

  const std::tuple<std::int32_t, int, std::vector<double>, int> cases[] = {
      {-1, PDFLIB_DENSITY, {1.0}, PDFLIB_NO_SUCH_DISTRIBUTION},
      {weibull, PDFLIB_MOMENTS, {1.0}, PDFLIB_UNKNOWN_REQUEST},
      {weibull, 5, {1.0}, PDFLIB_UNKNOWN_REQUEST},
      {weibull, PDFLIB_DENSITY, {-1.0}, PDFLIB_OUTSIDE_DOMAIN},
      {weibull, PDFLIB_DENSITY, {kNaN}, PDFLIB_OUTSIDE_DOMAIN},
      {weibull, PDFLIB_DENSITY, {}, PDFLIB_WRONG_COUNT},
      {weibull, PDFLIB_DENSITY, {1, 2, 3}, PDFLIB_WRONG_COUNT}};
  for (const auto& [place, request, parameters, code] : cases) {
    const Answers answers = Evaluate(place, request, parameters, {1, 2});
    CHECK(answers.code == code);
    CHECK(answers.results == std::vector<double>(2, kUntouched));
  }
  const double shape = 1;
  double result = kUntouched;
  CHECK(List().evaluate(weibull, PDFLIB_DENSITY, &shape, 1, nullptr, &result, nullptr, 1) ==
        PDFLIB_NULL_POINTER);
  CHECK(List().evaluate(weibull, PDFLIB_DENSITY, nullptr, 1, &shape, &result, nullptr, 1) ==
        PDFLIB_NULL_POINTER);
  CHECK(List().evaluate(weibull, PDFLIB_DENSITY, &shape, -1, &shape, &result, nullptr, 1) ==
        PDFLIB_WRONG_COUNT);
  CHECK(List().evaluate(weibull, PDFLIB_DENSITY, &shape, 1, &shape, &result, nullptr, -1) ==
        PDFLIB_WRONG_COUNT);
  CHECK(List().evaluate(weibull, PDFLIB_DENSITY, &shape, 1, nullptr, nullptr, nullptr, 0) ==
        PDFLIB_OK);
  CHECK(result == kUntouched);
  CHECK(List().evaluate(weibull, PDFLIB_DENSITY, &shape, 1, &shape, &result, nullptr, 1) ==
        PDFLIB_OK);
  CHECK(result == std::exp(-1.0));
}

TEST_CASE("the same in every floating-point mode and thread, whatever the parameters and values") {
  const std::vector<double> x = {0.5, 0.01, 0.9,   1,          3,         -2,  1e-300,
                                 1e6, 1e17, 1e300, -kInfinity, kInfinity, kNaN};
  for (std::int32_t place = 0; place < List().count(); ++place) {
    const pdfDescription& description = *List().describe(place);
    CAPTURE(description.name);
    const std::vector<double> parameters = SomeParameters(description);
    for (const int request : kRequests) {
      CAPTURE(request);
      const Answers plain = Evaluate(place, request, parameters, x);
      for (std::size_t i = 0; i < x.size(); ++i)
        CHECK(std::isfinite(plain.results[i]) == (plain.status[i] == 0 || plain.code != 0));
      Answers foreign, threaded;
      bool left_alone = false;
      {
        const ForeignEnvironment environment;
        foreign = Evaluate(place, request, parameters, x);
        left_alone = ForeignEnvironment::Stands();
      }
      CHECK(left_alone);
      std::thread([&] { threaded = Evaluate(place, request, parameters, x); }).join();
      for (const Answers* other : {&foreign, &threaded}) {
        CHECK(other->code == plain.code);
        CHECK(other->status == plain.status);
        CHECK(std::ranges::equal(other->results, plain.results, {},
                                 std::bit_cast<std::int64_t, double>,
                                 std::bit_cast<std::int64_t, double>));
      }
    }
  }
}

// What takes unbounded time here ends the test program by its limit.
TEST_CASE("whatever the parameters and values, the answer is a finite number or a code") {
  const std::vector<double> hostile = {-1e300, -1e10,  -2,  -1,  -1e-10, -0.0, 0,    5e-324, 1e-300,
                                       1e-20,  1e-5,   0.3, 0.5, 1,      1.5,  2,    3,      17,
                                       100,    1234.5, 1e5, 1e9, 1e10,   1e15, 1e17, 1e300,  kNaN};
  std::mt19937_64 random(20261126);
  const auto pick = [&] { return hostile[random() % hostile.size()]; };
  int accepted = 0;
  for (std::int32_t place = 0; place < List().count(); ++place) {
    const pdfDescription& description = *List().describe(place);
    for (int round = 0; round < 60; ++round) {
      std::vector<double> parameters(static_cast<std::size_t>(description.parameter_count));
      std::ranges::generate(parameters, pick);
      std::string text = description.name;
      for (const double parameter : parameters) text += " " + std::to_string(parameter);
      CAPTURE(text);
      for (const int request : kRequests) {
        CAPTURE(request);
        const Answers answers = Evaluate(place, request, parameters, hostile);
        CHECK((answers.code == PDFLIB_OK || answers.code == PDFLIB_OUTSIDE_DOMAIN ||
               answers.code == PDFLIB_NO_VALUE));
        if (answers.code != PDFLIB_OK) continue;
        ++accepted;
        for (std::size_t i = 0; i < hostile.size(); ++i)
          CHECK(std::isfinite(answers.results[i]) == (answers.status[i] == PDFLIB_OK));
      }
      Reply moments;
      CHECK(List().moments(place, parameters.data(), description.parameter_count,
                           moments.results.data(), moments.status.data()) >= 0);
    }
  }
  CHECK(accepted > 1000);
}

TEST_CASE("random values are those of their seed") {
  const std::int32_t gamma = List().find("gamma");
  const double shape = 2.5;
  std::vector<double> first(100), again(100), other(100);
  CHECK(List().random(gamma, &shape, 1, 7, first.data(), 100) == PDFLIB_OK);
  CHECK(List().random(gamma, &shape, 1, 7, again.data(), 100) == PDFLIB_OK);
  CHECK(List().random(gamma, &shape, 1, 8, other.data(), 100) == PDFLIB_OK);
  CHECK(first == again);
  CHECK(first != other);
  CHECK(std::ranges::all_of(first, [](double value) { return value > 0 && value < 100; }));
  CHECK(List().random(gamma, &shape, 1, 7, nullptr, 1) == PDFLIB_NULL_POINTER);
  CHECK(List().random(gamma, &shape, 1, 7, first.data(), -1) == PDFLIB_WRONG_COUNT);
}

}  // namespace zavrel::tests
