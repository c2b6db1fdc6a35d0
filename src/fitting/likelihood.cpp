#include "fitting/likelihood.h"

#include <cmath>
#include <new>

namespace DistLib {
namespace {

constexpr std::size_t kValuesBetweenQuestions = 1024;

/// Minus infinity where there is no finite density: nothing is learnt from such a place.
double LogDensity(const PdfDist& distribution, double x) {
  if (!(x >= distribution.Lowest() && x <= distribution.Highest())) return -kInfinity;
  try {
    const double value = distribution.LogDensity(x);
    return std::isfinite(value) ? value : -kInfinity;
  } catch (const std::bad_alloc&) {
    throw;  // says nothing about the density
  } catch (const std::exception&) {
    return -kInfinity;
  }
}

}  // namespace

std::unique_ptr<PdfDist> LogLikelihood::Distribution(std::span<const double> parameters) const {
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    if (!description_.parameters[i].domain.Contains(parameters[i])) return nullptr;
  }
  try {
    return description_.make(parameters);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    return nullptr;
  }
}

double LogLikelihood::operator()(std::span<const double> parameters) const {
  MaybeCancel();
  const auto distribution = Distribution(parameters);
  if (!distribution) return -kInfinity;
  // The ends of the sample are the first to leave a support.
  if (sample_.smallest() < distribution->Lowest() || sample_.largest() > distribution->Highest())
    return -kInfinity;
  Real sum = 0;
  for (std::size_t i = 0; i < sample_.distinct(); ++i) {
    if ((i + 1) % kValuesBetweenQuestions == 0) MaybeCancel();
    sum += Real{sample_.times()[i]} * LogDensity(*distribution, sample_.values()[i]);
    if (std::isinf(sum)) break;
  }
  return static_cast<double>(sum);
}

std::optional<double> LogLikelihood::Misfit(std::span<const double> parameters) const {
  const auto distribution = Distribution(parameters);
  if (!distribution) return {};
  for (const double x : sample_.values()) {
    if (LogDensity(*distribution, x) == -kInfinity) return x;
  }
  return {};
}

}  // namespace DistLib
