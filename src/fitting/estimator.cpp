#include "fitting/estimator.h"

#include <algorithm>

#include "fitting/maximum.h"

namespace DistLib {
namespace {

/// Greater ends of domains limit what is computed; they are no part of the distribution.
constexpr double kGreatestEnd = 1e6;
/// A greater standard error of a logarithm means that the sample does not bound the parameter.
constexpr double kGreatestLogError = 20;

/// The likelihood as a function of the searched parameters alone, on their scales.
class FreePart {
 public:
  FreePart(const LogLikelihood& likelihood, std::span<const Scale> scales, const Estimate& estimate)
      : likelihood_(likelihood), scales_(scales), parameters_(estimate.parameters) {
    for (std::size_t i = 0; i < parameters_.size(); ++i) {
      if (estimate.free[i]) free_.push_back(i);
    }
  }

  std::span<const std::size_t> free() const { return free_; }
  const Scale& scale(std::size_t k) const { return scales_[free_[k]]; }

  std::vector<double> Parameters(std::span<const double> at) const {
    std::vector<double> parameters = parameters_;
    for (std::size_t k = 0; k < free_.size(); ++k) parameters[free_[k]] = scale(k).Value(at[k]);
    return parameters;
  }
  std::vector<double> Positions() const {
    std::vector<double> at(free_.size());
    for (std::size_t k = 0; k < at.size(); ++k)
      at[k] = scale(k).Position(scale(k).Inside(parameters_[free_[k]]));
    return at;
  }
  Objective Function() const {
    return [this](std::span<const double> at) { return likelihood_(Parameters(at)); };
  }

 private:
  const LogLikelihood& likelihood_;
  std::span<const Scale> scales_;
  std::vector<double> parameters_;
  std::vector<std::size_t> free_;
};

double NearEnd(double end) {
  return std::fabs(end) < kGreatestEnd ? end : std::copysign(kInfinity, end);
}

std::size_t Index(int i) { return static_cast<std::size_t>(i); }

}  // namespace

Estimator::Estimator(const LogLikelihood& likelihood, const Method& method,
                     std::span<const double> start)
    : likelihood_(likelihood), method_(method) {
  for (const Parameter& parameter : likelihood.description().parameters)
    scales_.emplace_back(NearEnd(parameter.domain.low), NearEnd(parameter.domain.high));
  FindEnds(start);
}

/// True if the parameter is this end of the support.
bool Estimator::AreEnds(std::span<const double> parameters, std::size_t i, bool lower) const {
  const auto distribution = likelihood_.Distribution(parameters);
  return distribution &&
         parameters[i] == (lower ? distribution->Lowest() : distribution->Highest());
}

/// A parameter that is an end of the support has the sample's end as an end of its own.
void Estimator::FindEnds(std::span<const double> start) {
  const Sample& sample = likelihood_.sample();
  std::vector<double> moved(start.begin(), start.end());
  for (std::size_t i = 0; i < start.size(); ++i) {
    for (const bool lower : {true, false}) {
      if (!AreEnds(start, i, lower)) continue;
      const double room = std::min(sample.largest() - sample.smallest(), 1 + std::fabs(start[i]));
      moved[i] = start[i] + (lower ? -1 : 1) * 1e-3 * room;
      if (scales_[i].low() >= moved[i]) moved[i] = (scales_[i].low() + start[i]) / 2;
      if (AreEnds(moved, i, lower)) {
        scales_[i] = lower ? Scale(scales_[i].low(), std::min(scales_[i].high(), sample.smallest()))
                           : Scale(std::max(scales_[i].low(), sample.largest()), scales_[i].high());
      }
      moved[i] = start[i];
    }
  }
}

void Estimator::Search(Estimate& estimate) const {
  const FreePart part(likelihood_, scales_, estimate);
  const std::vector<double> positions = part.Positions();
  std::vector<Variable> variables(positions.size());
  for (std::size_t k = 0; k < positions.size(); ++k)
    variables[k] = {positions[k], part.scale(k).WithoutEnds() ? kInfinity : 2.0};
  if (variables.empty()) {
    estimate.log_likelihood = likelihood_(estimate.parameters);
    estimate.converged = true;
    return;
  }
  const Maximum maximum = Maximise(part.Function(), variables);
  estimate.parameters = part.Parameters(maximum.at);
  estimate.log_likelihood = maximum.value;
  estimate.converged = maximum.converged;
}

/// Sets searched parameters to an end where the likelihood is as great; false if there are none.
bool Estimator::PinAtEnds(Estimate& estimate) const {
  bool pinned = false;
  for (std::size_t i = 0; i < scales_.size(); ++i) {
    if (!estimate.free[i]) continue;
    for (const double end : {scales_[i].low(), scales_[i].high()}) {
      if (!std::isfinite(end)) continue;
      std::vector<double> parameters = estimate.parameters;
      parameters[i] = end;
      const double value = likelihood_(parameters);
      if (!(value >= estimate.log_likelihood) || value == -kInfinity) continue;
      estimate.parameters = std::move(parameters);
      estimate.log_likelihood = value;
      estimate.free[i] = false;
      pinned = true;
      break;
    }
  }
  return pinned;
}

void Estimator::SearchWithEnds(Estimate& estimate) const {
  do {
    Search(estimate);
  } while (PinAtEnds(estimate));
}

/// Moves a parameter to the best of the sample's values near it; false if none is as good.
bool Estimator::MoveToValue(Estimate& estimate, std::size_t i) const {
  constexpr std::ptrdiff_t kWindow = 16;
  const auto values = likelihood_.sample().values();
  const auto last = static_cast<std::ptrdiff_t>(values.size()) - 1;
  double best = estimate.log_likelihood - 1e-9;
  std::ptrdiff_t found = -1;
  std::ptrdiff_t centre = std::ranges::lower_bound(values, estimate.parameters[i]) - values.begin();
  for (bool moved = true; moved;) {
    moved = false;
    const std::ptrdiff_t from = std::max<std::ptrdiff_t>(centre - kWindow, 0);
    const std::ptrdiff_t to = std::min(centre + kWindow, last);
    for (std::ptrdiff_t k = from; k <= to; ++k) {
      std::vector<double> parameters = estimate.parameters;
      parameters[i] = values[Index(static_cast<int>(k))];
      const double value = likelihood_(parameters);
      if (!(value > best)) continue;
      best = value;
      found = k;
    }
    if (found >= 0 && std::abs(found - centre) > kWindow / 2) {
      centre = found;
      moved = true;
    }
  }
  if (found < 0) return false;
  estimate.parameters[i] = values[Index(static_cast<int>(found))];
  estimate.log_likelihood = std::max(best, estimate.log_likelihood);
  return true;
}

/// Improves the kinked parameter and the others in turn.
void Estimator::SearchKinked(Estimate& estimate, std::size_t kinked) const {
  constexpr int kRounds = 20;
  estimate.free[kinked] = false;
  estimate.log_likelihood = likelihood_(estimate.parameters);
  for (int round = 0; round < kRounds; ++round) {
    const double before = estimate.log_likelihood;
    MoveToValue(estimate, kinked);
    SearchWithEnds(estimate);
    if (round > 0 && estimate.log_likelihood - before < 1e-9) return;
  }
}

/// Searches the whole parameter with steps that double while they lead upwards.
void Estimator::SearchCounted(Estimate& estimate, std::size_t counted) const {
  constexpr int kTries = 200;
  estimate.free[counted] = false;
  const auto with = [&](double count) {
    Estimate other = estimate;
    other.parameters[counted] = count;
    if (likelihood_(other.parameters) != -kInfinity) SearchWithEnds(other);
    return other;
  };
  estimate = with(estimate.parameters[counted]);
  double step = 1;
  for (int tries = 0; tries < kTries && std::fabs(step) >= 1; ++tries) {
    Estimate other = with(estimate.parameters[counted] + step);
    if (other.log_likelihood > estimate.log_likelihood) {
      estimate = std::move(other);
      step *= 2;
    } else if (std::fabs(step) > 1) {
      step = std::trunc(step / 4);
      if (step == 0) step = 1;
    } else {
      if (step < 0) break;
      step = -1;
    }
  }
}

Estimate Estimator::From(Estimate start) const {
  const auto free = [&](int i) { return i != Method::kNone && start.free[Index(i)]; };
  if (free(method_.counted)) {
    SearchCounted(start, Index(method_.counted));
  } else if (free(method_.kinked)) {
    SearchKinked(start, Index(method_.kinked));
  } else {
    SearchWithEnds(start);
  }
  return start;
}

std::optional<std::string> Estimator::Unbounded(const Estimate& estimate) const {
  const Sample& sample = likelihood_.sample();
  const double near = 1e-6 * (sample.largest() - sample.smallest());
  for (std::size_t i = 0; i < scales_.size(); ++i) {
    for (const double end : {scales_[i].low(), scales_[i].high()}) {
      if (end != sample.smallest() && end != sample.largest()) continue;
      if (!estimate.free[i] || std::fabs(estimate.parameters[i] - end) > near) continue;
      const std::string& name = likelihood_.description().parameters[i].name;
      std::string reason = "the likelihood has no bound as ";
      reason += name + " approaches the value " + NumberText(end) + " of the sample: ";
      return reason += name + " must be fixed";
    }
  }
  return {};
}

/// Says if the likelihood does not fall where a parameter runs away.
std::optional<std::string> Estimator::Endless(const Estimate& estimate) const {
  const FreePart part(likelihood_, scales_, estimate);
  const std::vector<double> at = part.Positions();
  for (std::size_t k = 0; k < at.size(); ++k) {
    if (part.scale(k).WithoutEnds()) continue;
    const double here = estimate.log_likelihood;
    const auto moved = [&](double move) {
      std::vector<double> to = at;
      to[k] += move;
      return part.Function()(to);
    };
    const double above = moved(4), below = moved(-4);
    if (!(std::max(above, below) > here - 1e-3)) continue;
    const auto known = [&](double value) { return std::isfinite(value) ? value : here; };
    return "the likelihood has no maximum: " +
           likelihood_.description().parameters[part.free()[k]].name + " would " +
           (known(above) >= known(below) ? "grow" : "fall") + " for ever";
  }
  return {};
}

/// Throws unless there is nothing wrong with the place, which is sure to be no maximum or not.
void Estimator::Suspect(const Estimate& estimate, bool sure) const {
  if (const auto reason = Unbounded(estimate)) throw FitError(*reason);
  if (const auto reason = Endless(estimate)) throw FitError(*reason);
  if (sure) throw FitError("no maximum of the likelihood was found");
}

std::vector<double> Estimator::Finish(Estimate& estimate) const {
  for (std::size_t i = 0; i < scales_.size() && !estimate.converged; ++i) {
    if (!estimate.free[i] || !MoveToValue(estimate, i)) continue;
    estimate.free[i] = false;
    SearchWithEnds(estimate);
  }
  if (!estimate.converged) Suspect(estimate, true);
  const FreePart part(likelihood_, scales_, estimate);
  if (part.free().empty()) return {};
  const Refined refined =
      Refine(part.Function(), {part.Positions(), estimate.log_likelihood, true});
  estimate.parameters = part.Parameters(refined.maximum.at);
  estimate.log_likelihood = refined.maximum.value;
  if (refined.variances.empty()) Suspect(estimate, false);
  std::vector<double> errors(scales_.size(), std::nan(""));
  for (std::size_t k = 0; k < refined.variances.size(); ++k) {
    const double error = std::sqrt(refined.variances[k]);
    if (!part.scale(k).WithoutEnds() && !(error < kGreatestLogError)) Suspect(estimate, true);
    errors[part.free()[k]] = error * part.scale(k).Slope(refined.maximum.at[k]);
  }
  return errors;
}

}  // namespace DistLib
