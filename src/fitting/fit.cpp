#include "fitting/fit.h"

#include <algorithm>
#include <cmath>

#include "fitting/estimator.h"
#include "fitting/refit.h"
#include "numbers/floating_point_scope.h"

namespace DistLib {
namespace {

/// Searches begin with so many order statistics at most.
constexpr std::size_t kThinned = 250;

/// One fit: which parameters are given, and where the search begins.
class Fitting {
 public:
  Fitting(const Description& description, const Sample& sample, FixedParameters fixed,
          const Cancelled& cancelled)
      : description_(description),
        sample_(sample),
        cancelled_(cancelled),
        likelihood_(description, sample, cancelled),
        method_(MethodFor(description)),
        given_(fixed.begin(), fixed.end()) {
    if (!fixed.empty() && fixed.size() != description.parameters.size())
      throw std::invalid_argument(description.name + " has " +
                                  std::to_string(description.parameters.size()) +
                                  " parameters, to be fixed or not");
    given_.resize(description.parameters.size());
    CheckGiven();
    HoldDefaults();
    CheckSample();
    TakeEnds();
  }

  Fit Run() {
    Estimates found = FromStarts(TableStarts());
    if (std::ranges::none_of(found, &Estimate::converged))
      std::ranges::move(FromStarts(GridStarts(likelihood_, given_)), std::back_inserter(found));
    if (found.empty()) ThrowMisfit();
    std::ranges::stable_sort(found, [](const Estimate& a, const Estimate& b) {
      return a.converged != b.converged ? a.converged : a.log_likelihood > b.log_likelihood;
    });
    std::optional<FitError> first_failure;
    for (Estimate& estimate : found) {
      try {
        return FinishOnAll(std::move(estimate));
      } catch (const FitError& failure) {
        if (!first_failure) first_failure = failure;
      }
    }
    throw FitError(*first_failure);
  }

  /// From a start that is known to be near.
  std::optional<Fit> RunFrom(std::span<const double> near) {
    Estimate start = StartAt({near.begin(), near.end()});
    if (likelihood_(start.parameters) == -kInfinity) return {};
    const Estimator estimator(likelihood_, method_, start.parameters);
    const Estimate estimate = estimator.From(std::move(start));
    if (!estimate.converged) return {};
    return Finished(estimate, {});
  }

 private:
  using Estimates = std::vector<Estimate>;

  void CheckGiven() const {
    for (std::size_t i = 0; i < given_.size(); ++i) {
      const auto& [name, domain, by_default] = description_.parameters[i];
      if (given_[i] && !domain.Contains(*given_[i]))
        throw ParameterError(name, domain.Text(), *given_[i]);
    }
  }

  void HoldDefaults() {
    if (method_.held != Method::kNone) {
      const auto held = static_cast<std::size_t>(method_.held);
      if (!given_[held]) given_[held] = description_.parameters[held].by_default;
    }
    free_parameters_ =
        static_cast<int>(std::ranges::count(given_, false, &std::optional<double>::has_value));
    for (std::size_t i = 0; i < given_.size(); ++i) {
      const auto& [name, domain, by_default] = description_.parameters[i];
      const int index = static_cast<int>(i);
      if (!given_[i] && domain.whole && index != method_.counted && index != method_.smallest &&
          index != method_.largest)
        throw FitError(name + " is a whole number, which is not estimated: it must be fixed");
    }
  }

  void CheckSample() const {
    if (free_parameters_ == 0) return;
    const std::string count = std::to_string(sample_.count());
    if (sample_.distinct() == 1)
      throw FitError((sample_.count() == 1 ? "the only value of the sample is "
                                           : "all " + count + " values of the sample are ") +
                     NumberText(sample_.smallest()));
    if (sample_.count() <= static_cast<std::size_t>(free_parameters_))
      throw FitError("the sample has only " + count + " values for " +
                     std::to_string(free_parameters_) + " parameters");
  }

  /// Takes those parameters that are the sample's ends.
  void TakeEnds() {
    const auto take = [&](int index, double value, const char* end) {
      if (index == Method::kNone) return;
      const auto i = static_cast<std::size_t>(index);
      if (given_[i]) return;
      const auto& [name, domain, by_default] = description_.parameters[i];
      if (!domain.Contains(value))
        throw FitError(name + " " + domain.Text() + ", but the " + end +
                       " value of the sample is " + NumberText(value));
      given_[i] = value;
    };
    take(method_.smallest, sample_.smallest(), "smallest");
    take(method_.largest, sample_.largest(), "largest");
  }

  Estimate StartAt(std::vector<double> parameters) const {
    Estimate start{std::move(parameters), std::vector<bool>(given_.size())};
    for (std::size_t i = 0; i < given_.size(); ++i) {
      start.free[i] = !given_[i];
      if (given_[i]) start.parameters[i] = *given_[i];
    }
    return start;
  }

  Starts TableStarts() const {
    return method_.starts ? method_.starts(SampleFacts(sample_)) : Starts{};
  }

  /// What the starts lead to on the thinned sample, the most likely start first, until one leads
  /// to a maximum.
  Estimates FromStarts(const Starts& starts) const {
    const Sample thinned = sample_.Thinned(kThinned);
    const LogLikelihood rough(description_, thinned, cancelled_);
    Estimates begun;
    for (const std::vector<double>& parameters : starts) {
      Estimate start = StartAt(parameters);
      start.log_likelihood = rough(start.parameters);
      if (start.log_likelihood != -kInfinity) begun.push_back(std::move(start));
    }
    std::ranges::stable_sort(begun, std::greater<>(), &Estimate::log_likelihood);
    Estimates found;
    for (Estimate& start : begun) {
      const Estimator estimator(rough, method_, start.parameters);
      found.push_back(estimator.From(std::move(start)));
      if (found.back().converged && !estimator.Unbounded(found.back())) break;
    }
    return found;
  }

  Fit FinishOnAll(Estimate estimate) const {
    const Estimator estimator(likelihood_, method_, estimate.parameters);
    if (sample_.distinct() > kThinned) estimate = estimator.From(StartAt(estimate.parameters));
    std::vector<double> errors = estimator.Finish(estimate);
    TakeClosedForm(estimate);
    return Finished(estimate, std::move(errors));
  }

  /// A start that is as likely as what the search has found is the maximum in closed form, and has
  /// all digits.
  void TakeClosedForm(Estimate& estimate) const {
    constexpr double kRounding = 1e-14;
    for (const std::vector<double>& parameters : TableStarts()) {
      Estimate start = StartAt(parameters);
      start.log_likelihood = likelihood_(start.parameters);
      if (start.log_likelihood <
          estimate.log_likelihood - kRounding * std::fabs(estimate.log_likelihood))
        continue;
      estimate.parameters = std::move(start.parameters);
      estimate.log_likelihood = start.log_likelihood;
      return;
    }
  }

  Fit Finished(const Estimate& estimate, std::vector<double> errors) const {
    errors.resize(given_.size(), std::nan(""));
    Fit fit{.parameters = estimate.parameters,
            .standard_errors = std::move(errors),
            .log_likelihood = estimate.log_likelihood,
            .count = sample_.count(),
            .free_parameters = free_parameters_};
    fit.aic = 2 * fit.free_parameters - 2 * fit.log_likelihood;
    fit.bic =
        fit.free_parameters * std::log(static_cast<double>(fit.count)) - 2 * fit.log_likelihood;
    return fit;
  }

  /// No start has a likelihood: names a value that has none.
  [[noreturn]] void ThrowMisfit() const {
    for (const Starts& starts : {GridStarts(likelihood_, given_), TableStarts()}) {
      for (const std::vector<double>& start : starts) {
        const std::vector<double> parameters = StartAt(start).parameters;
        if (const auto value = likelihood_.Misfit(parameters)) {
          const auto distribution = likelihood_.Distribution(parameters);
          const bool at_end = *value == distribution->Lowest() || *value == distribution->Highest();
          throw FitError("the value " + NumberText(*value) + " of the sample is " +
                         (at_end ? "at an end of" : "outside") + " the support, " +
                         description_.support +
                         (at_end ? ", where the density is 0 or infinite" : ""));
        }
      }
    }
    throw FitError("the fixed parameters do not fit together");
  }

  const Description& description_;
  const Sample& sample_;
  const Cancelled& cancelled_;
  LogLikelihood likelihood_;
  Method method_;
  std::vector<std::optional<double>> given_;
  int free_parameters_ = 0;
};

}  // namespace

Fit FitDistribution(const Description& description, std::span<const double> values,
                    FixedParameters fixed, const Cancelled& cancelled) {
  const zavrel::FloatingPointScope scope;
  const Sample sample(values);
  return Fitting(description, sample, fixed, cancelled).Run();
}

std::optional<Fit> Refit(const Description& description, const Sample& sample,
                         FixedParameters fixed, const Cancelled& cancelled,
                         std::span<const double> near) {
  try {
    Fitting fitting(description, sample, fixed, cancelled);
    if (auto fit = fitting.RunFrom(near)) return fit;
    return fitting.Run();
  } catch (const FitError&) {
    return {};
  }
}

}  // namespace DistLib
