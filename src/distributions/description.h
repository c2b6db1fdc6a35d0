#pragma once
// A distribution as data: what error messages, help pages and lists of distributions are made from.

#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "distributions/pdf_dist.h"

namespace DistLib {

/// A number as messages show it.
std::string NumberText(double value);

/// The values that a parameter may have. An infinite end bounds nothing; no parameter is infinite.
struct Domain {
  double low = -std::numeric_limits<double>::infinity();
  double high = std::numeric_limits<double>::infinity();
  bool with_low = false;
  bool with_high = false;
  bool whole = false;

  bool Contains(double value) const;
  /// Such as "must be greater than 0 and at most 1e+10".
  std::string Text() const;
};

inline constexpr Domain kAnyNumber{};
inline constexpr Domain kPositive{.low = 0};
inline constexpr Domain kFromZero{.low = 0, .with_low = true};
/// A probability whose ends would leave nothing to chance.
inline constexpr Domain kOpenProbability{.low = 0, .high = 1};
inline constexpr Domain kProbability{.low = 0, .high = 1, .with_low = true, .with_high = true};
/// Degrees of freedom, and shapes of the incomplete gamma and beta functions: with more, these
/// functions would take seconds.
inline constexpr Domain kDegrees{.low = 0, .high = 1e10, .with_high = true};
inline constexpr Domain kTrials{
    .low = 0, .high = 2147483647, .with_low = true, .with_high = true, .whole = true};

struct Parameter {
  std::string name;
  Domain domain;
  std::optional<double> by_default;  // a parameter without default must be given
};

enum class Kind { kContinuous, kDiscrete };

/// A parameter outside its domain; the message names both.
class ParameterError : public std::domain_error {
 public:
  ParameterError(const std::string& name, const std::string& domain_text, double value);
};

/// Throws ParameterError unless `value` is greater than `other`.
void RequireAbove(const std::string& name, double value, const std::string& other_name,
                  double other);
/// Throws ParameterError if `value` is less than `other`.
void RequireAtLeast(const std::string& name, double value, const std::string& other_name,
                    double other);

struct Description {
  std::string name;
  std::vector<std::string> other_names;
  std::vector<Parameter> parameters;  // those with defaults are the last
  Kind kind = Kind::kContinuous;
  std::string support;
  std::string formula;  // of the cumulative probability or density, whichever is simpler
  std::string source;
  /// Makes the distribution from all its parameters, each in its domain. Throws ParameterError if
  /// they do not fit together.
  std::unique_ptr<PdfDist> (*make)(std::span<const double> parameters) = nullptr;
};

namespace detail {
template <class Distribution, std::size_t... index>
std::unique_ptr<PdfDist> MakeFrom(std::span<const double> parameters,
                                  std::index_sequence<index...> /*unused*/) {
  return std::make_unique<Distribution>(parameters[index]...);
}
}  // namespace detail

/// Description::make of a class whose constructor takes so many doubles.
template <class Distribution, std::size_t count>
std::unique_ptr<PdfDist> Make(std::span<const double> parameters) {
  return detail::MakeFrom<Distribution>(parameters, std::make_index_sequence<count>());
}

}  // namespace DistLib
