// The C functions of the distributions, with any request, parameters and values: a code, results
// only where they belong, the same twice, and probabilities that behave as such.
#include <bit>
#include <cfenv>
#include <cmath>
#include <string>
#include <vector>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "pdflib/library.h"

namespace zavrel::tests {
namespace {

using Parameters = std::vector<double>;

constexpr std::size_t kMostValues = 6;

bool IsCode(std::int16_t code) { return code >= PDFLIB_OK && code <= PDFLIB_WRONG_COUNT; }
bool IsUntouched(double value) { return value == kUntouched; }

/// What pdfEvaluate gives for the values, with a place behind them that stays untouched.
struct Evaluation {
  Evaluation(std::int32_t place, std::int16_t request, const Parameters& parameters,
             const std::vector<double>& x)
      : results(x.size() + 1, kUntouched), status(x.size() + 1, kUntouchedStatus) {
    code = List().evaluate(place, request, parameters.data(),
                           static_cast<std::int32_t>(parameters.size()), x.data(), results.data(),
                           status.data(), static_cast<std::int64_t>(x.size()));
    Require(IsCode(code), "a code that is not documented");
    Require(IsUntouched(results.back()) && status.back() == kUntouchedStatus, "writes too far");
    for (std::size_t i = 0; i < x.size(); ++i) {
      if (code != PDFLIB_OK) {
        Require(IsUntouched(results[i]) && status[i] == kUntouchedStatus, "a failed call writes");
      } else {
        Require(IsCode(status[i]), "a status that is not documented");
        Require((status[i] == PDFLIB_OK) == std::isfinite(results[i]),
                "a status without its result");
      }
    }
  }
  bool Has(std::size_t index) const { return code == PDFLIB_OK && status[index] == PDFLIB_OK; }

  std::int16_t code;
  std::vector<double> results;
  std::vector<std::int16_t> status;
};

bool AreSame(double one, double other) {
  return std::bit_cast<std::uint64_t>(one) == std::bit_cast<std::uint64_t>(other);
}

/// Probabilities of ascending values ascend, and both tails are all there is.
void CheckProbabilities(std::int32_t place, const Parameters& parameters, std::vector<double> x) {
  std::erase_if(x, [](double value) { return !std::isfinite(value); });
  std::ranges::sort(x);
  const Evaluation below(place, PDFLIB_CUMULATIVE, parameters, x);
  const Evaluation above(place, PDFLIB_UPPER_TAIL, parameters, x);
  double last = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (!below.Has(i) || !above.Has(i)) continue;
    const double p = below.results[i];
    Require(p >= 0 && p <= 1 && above.results[i] >= 0 && above.results[i] <= 1,
            "a probability outside 0 to 1");
    Require(p >= last - 1e-9, "a probability decreases");
    Require(std::abs(p + above.results[i] - 1) < 1e-9, "the two tails are not 1");
    last = p;
  }
  const Evaluation density(place, PDFLIB_DENSITY, parameters, x);
  for (std::size_t i = 0; i < x.size(); ++i)
    if (density.Has(i)) Require(density.results[i] >= 0, "a negative density");
}

void CheckMoments(std::int32_t place, const Parameters& parameters) {
  double results[PDFLIB_MOMENT_COUNT + 1];
  std::int16_t status[PDFLIB_MOMENT_COUNT + 1];
  std::ranges::fill(results, kUntouched);
  std::ranges::fill(status, kUntouchedStatus);
  const std::int16_t code = List().moments(
      place, parameters.data(), static_cast<std::int32_t>(parameters.size()), results, status);
  Require(IsCode(code) && IsUntouched(results[PDFLIB_MOMENT_COUNT]), "writes too far");
  if (code != PDFLIB_OK) return Require(IsUntouched(results[0]), "a failed call writes");
  for (int i = 0; i < PDFLIB_MOMENT_COUNT; ++i)
    Require((status[i] == 0) == std::isfinite(results[i]), "a moment without its status");
  if (status[PDFLIB_VARIANCE] == 0) Require(results[PDFLIB_VARIANCE] >= 0, "a negative variance");
  if (status[PDFLIB_SKEWNESS] == 0 && status[PDFLIB_KURTOSIS] == 0) {
    const double least = 1 + results[PDFLIB_SKEWNESS] * results[PDFLIB_SKEWNESS];
    Require(results[PDFLIB_KURTOSIS] >= least * (1 - 1e-6), "a kurtosis below its least");
  }
}

void CheckProblem(std::int32_t place, const Parameters& parameters, std::int32_t room) {
  std::vector<char> text(static_cast<std::size_t>(std::max(room, 0)) + 1, '#');
  const std::int16_t code = List().problem(
      place, parameters.data(), static_cast<std::int32_t>(parameters.size()), text.data(), room);
  Require(IsCode(code) && text.back() == '#', "a text beyond its room");
  if (code == PDFLIB_OK && room > 0)
    Require(std::string_view(text.data(), static_cast<std::size_t>(room)).find('\0') !=
                std::string_view::npos,
            "a text without an end");
}

void CheckRandom(std::int32_t place, const Parameters& parameters, std::uint32_t seed) {
  double one[4] = {kUntouched, kUntouched, kUntouched, kUntouched};
  double two[4] = {kUntouched, kUntouched, kUntouched, kUntouched};
  const auto count = static_cast<std::int32_t>(parameters.size());
  const std::int16_t code = List().random(place, parameters.data(), count, seed, one, 3);
  Require(List().random(place, parameters.data(), count, seed, two, 3) == code, "another code");
  for (int i = 0; i < 4; ++i) Require(AreSame(one[i], two[i]), "a seed gives other values");
  Require(IsUntouched(one[3]) && (code == PDFLIB_OK) == !IsUntouched(one[0]), "writes too far");
}

double AnyNumber(Bytes& bytes) {
  switch (bytes.Below(4)) {
    case 0:
      return bytes.Take<double>();
    case 1:
      return static_cast<double>(bytes.Take<std::int16_t>());
    default:
      return static_cast<double>(bytes.Take<std::int16_t>()) / 256;
  }
}

/// Of the five with a function of their own.
void AskFive(Bytes& bytes) {
  static constexpr const char* kNames[] = {"normal", "student", "chisq", "f", "binomial"};
  const Distribution distribution{kNames[bytes.Below(5)], AnyNumber(bytes), AnyNumber(bytes)};
  if (distribution.discrete() && !(std::abs(distribution.a) <= INT32_MAX)) return;
  const auto request = static_cast<int>(bytes.Below(10)) - 1;
  const double x = AnyNumber(bytes);
  const Reply reply = Ask(distribution, request, x);
  Require(IsCode(reply.code), "a code that is not documented");
  for (std::size_t i = 0; i < reply.results.size(); ++i) {
    const bool belongs = reply.code == PDFLIB_OK && (request == PDFLIB_MOMENTS || i == 0);
    Require(belongs != IsUntouched(reply.results[i]), "a result where none belongs");
  }
}

void Answer(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  const std::size_t way = bytes.Below(8);
  if (way == 0) return AskFive(bytes);
  if (way == 1) {
    const std::int32_t place = List().find(std::string(bytes.Rest()).c_str());
    return Require(place >= -1 && place < List().count(), "a place outside the list");
  }
  const std::int32_t place = static_cast<std::int32_t>(bytes.Below(100)) - 2;
  const auto request = static_cast<std::int16_t>(bytes.Below(11) - 1);
  Parameters parameters(bytes.Below(6));
  for (double& parameter : parameters) parameter = AnyNumber(bytes);
  std::vector<double> x(bytes.Below(kMostValues + 1));
  for (double& value : x) value = AnyNumber(bytes);
  const int rounding = std::fegetround();
  const Evaluation first(place, request, parameters, x);
  const Evaluation second(place, request, parameters, x);
  for (std::size_t i = 0; i < x.size(); ++i)
    Require(AreSame(first.results[i], second.results[i]), "another result the second time");
  CheckProbabilities(place, parameters, x);
  CheckMoments(place, parameters);
  CheckProblem(place, parameters, static_cast<std::int32_t>(bytes.Below(80)) - 3);
  CheckRandom(place, parameters, bytes.Take<std::uint32_t>());
  Require(std::fegetround() == rounding, "the floating-point mode is another one");
}

const FuzzTarget target("pdflib", Answer);

}  // namespace
}  // namespace zavrel::tests
