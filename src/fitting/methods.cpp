#include "fitting/methods.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace DistLib {
namespace {

using std::numbers::pi, std::numbers::sqrt2, std::numbers::sqrt3, std::numbers::egamma;
using Facts = SampleFacts;
using Values = std::vector<double>;

double Square(double x) { return x * x; }

/// Gumbel's scale, whose standard deviation is pi / sqrt(6) of it.
constexpr double kGumbelScale = 0.779696801233676;

/// Rules of two parameters, from the mean and the deviation of log(x - low).
Values LogNormal(const Facts::Shape& logs) { return {logs.mean, logs.deviation}; }
Values LogWeibull(const Facts::Shape& logs) {
  const double scale = logs.deviation * kGumbelScale;
  return {1 / scale, std::exp(logs.mean + egamma * scale)};
}
Values LogInverseWeibull(const Facts::Shape& logs) {
  const double scale = logs.deviation * kGumbelScale;
  return {1 / scale, std::exp(logs.mean - egamma * scale)};
}
Values LogLogistic(const Facts::Shape& logs) {
  return {pi / (sqrt3 * logs.deviation), std::exp(logs.mean)};
}
/// The variance of a gamma variable's logarithm is about 1 / (shape - 1 / 2), its mean about that
/// of log(shape - 1 / 2).
Values LogGamma(const Facts::Shape& logs) {
  const double shape = 1 / Square(logs.deviation);
  return {shape + 0.5, std::exp(logs.mean) / shape};
}
Values LogInverseGamma(const Facts::Shape& logs) {
  const double shape = 1 / Square(logs.deviation);
  return {shape + 0.5, std::exp(logs.mean) * shape};
}

template <Values (*rule)(const Facts::Shape&)>
Starts FromLogs(const Facts& facts) {
  return {rule(facts.LogsFrom(0))};
}

/// A rule with the location as third parameter, at several distances from the smallest value.
template <Values (*rule)(const Facts::Shape&)>
Starts WithLocation(const Facts& facts) {
  Starts starts;
  for (const double distance : {0.05, 0.4, 2.0, 10.0}) {
    const double location = facts.smallest() - distance * facts.range();
    starts.push_back(rule(facts.LogsFrom(location)));
    starts.back().push_back(location);
  }
  return starts;
}

Starts JohnsonSL(const Facts& facts) {
  Starts starts = WithLocation<LogNormal>(facts);
  for (Values& start : starts) start = {-start[0] / start[1], 1 / start[1], start[2], 1.0};
  return starts;
}

/// (log x - location) / scale has a gamma distribution, mirrored if the scale is negative.
Starts LogPearsonIII(const Facts& facts) {
  const Facts::Shape logs = facts.LogsFrom(0);
  Starts starts;
  for (const double skewness : {logs.skewness, 0.5, -0.5}) {
    starts.push_back({4 / Square(skewness), logs.deviation * skewness / 2,
                      logs.mean - 2 * logs.deviation / skewness});
  }
  return starts;
}

Starts Beta(const Facts& facts) {
  const double mean = facts.mean();
  const double sum = std::max(mean * (1 - mean) / Square(facts.deviation()) - 1, 0.5);
  return {{mean * sum, (1 - mean) * sum}};
}

Starts FourParameterBeta(const Facts& facts) {
  Starts starts;
  for (const double margin : {0.05, 0.3, 1.0}) {
    const double low = facts.smallest() - margin * facts.range();
    const double width = facts.range() * (1 + 2 * margin);
    const double mean = (facts.mean() - low) / width;
    const double sum = std::max(mean * (1 - mean) / Square(facts.deviation() / width) - 1, 2.5);
    starts.push_back({mean * sum, (1 - mean) * sum, low, low + width});
  }
  return starts;
}

Starts Pert(const Facts& facts) {
  const double low = facts.smallest() - 0.1 * facts.range();
  const double high = facts.largest() + 0.1 * facts.range();
  const double mode =
      std::clamp((6 * facts.mean() - low - high) / 4, facts.smallest(), facts.largest());
  return {{low, mode, high, 4.0}};
}

Starts Triangular(const Facts& facts) {
  const double low = facts.smallest() - 0.05 * facts.range();
  const double high = facts.largest() + 0.05 * facts.range();
  return {{low, std::clamp(3 * facts.mean() - low - high, low, high), high}};
}

Starts Erlang(const Facts& facts) {
  const double shape = std::max(std::round(Square(facts.mean() / facts.deviation())), 1.0);
  return {{shape, shape / facts.mean()}};
}

Starts GeneralizedExtremeValue(const Facts& facts) {
  const double scale = facts.deviation() * kGumbelScale;
  const double location = facts.mean() - egamma * scale;
  return {{location, scale, 0.05}, {location, scale, -0.1}};
}

Starts GeneralizedPareto(const Facts& facts) {
  const double mean = facts.mean() - facts.smallest();
  const double ratio = Square(mean / facts.deviation());
  return {{facts.smallest(), mean * (ratio + 1) / 2, (1 - ratio) / 2},
          {facts.smallest(), mean, 0.05}};
}

Starts GeneralizedGamma(const Facts& facts) {
  const Facts::Shape logs = facts.LogsFrom(0);
  const Values gamma = LogGamma(logs), weibull = LogWeibull(logs);
  return {{gamma[0], 1.0, gamma[1]}, {1.0, weibull[0], weibull[1]}};
}

Starts JohnsonSU(const Facts& facts) {
  const double gamma = facts.skewness() > 0 ? -0.5 : 0.5;
  return {{gamma, 1.5, facts.median() + gamma * facts.deviation() / 2, facts.deviation()},
          {0.0, 1.0, facts.median(), facts.deviation()}};
}

Starts Burr(const Facts& facts) {
  const Values start = LogLogistic(facts.LogsFrom(0));
  return {{start[0], 1.0, start[1]}};
}

Starts NegativeBinomial(const Facts& facts) {
  const double excess = std::max(Square(facts.deviation()) - facts.mean(), 0.05 * facts.mean());
  const double successes = Square(facts.mean()) / excess;
  return {{successes, successes / (successes + facts.mean())}};
}

// clang-format off
const Method kMethods[] = {
    {.distribution = "Bernoulli", .starts = [](const Facts& f) -> Starts { return {{f.mean()}}; }},
    {.distribution = "beta", .starts = Beta},
    {.distribution = "Birnbaum-Saunders",
     .starts = [](const Facts& f) -> Starts { return {{f.LogsFrom(0).deviation, f.median()}}; }},
    {.distribution = "Burr III", .starts = Burr},
    {.distribution = "Burr XII", .starts = Burr},
    {.distribution = "Cauchy",
     .starts = [](const Facts& f) -> Starts {
       return {{f.median(), (f.Quantile(0.75) - f.Quantile(0.25)) / 2}};
     }},
    {.distribution = "chi",
     .starts = [](const Facts& f) -> Starts { return {{Square(f.RootMeanSquare())}}; }},
    {.distribution = "chi-square", .starts = [](const Facts& f) -> Starts { return {{f.mean()}}; }},
    {.distribution = "discrete uniform",
     .starts = [](const Facts& f) -> Starts { return {{f.smallest(), f.largest()}}; },
     .smallest = 0, .largest = 1},
    {.distribution = "Erlang", .starts = Erlang, .counted = 0},
    {.distribution = "exponential",
     .starts = [](const Facts& f) -> Starts { return {{1 / f.mean()}}; }},
    {.distribution = "extreme value of minima",
     .starts = [](const Facts& f) -> Starts {
       const double scale = f.deviation() * kGumbelScale;
       return {{f.mean() + egamma * scale, scale}};
     }},
    {.distribution = "four-parameter beta", .starts = FourParameterBeta},
    {.distribution = "Frechet", .starts = WithLocation<LogInverseWeibull>},
    {.distribution = "gamma", .starts = FromLogs<LogGamma>},
    {.distribution = "generalised extreme value", .starts = GeneralizedExtremeValue},
    {.distribution = "generalised gamma", .starts = GeneralizedGamma},
    {.distribution = "generalised Pareto", .starts = GeneralizedPareto, .smallest = 0},
    {.distribution = "geometric",
     .starts = [](const Facts& f) -> Starts { return {{1 / (1 + f.mean())}}; }},
    {.distribution = "Gumbel",
     .starts = [](const Facts& f) -> Starts {
       const double scale = f.deviation() * kGumbelScale;
       return {{f.mean() - egamma * scale, scale}};
     }},
    {.distribution = "half-Cauchy",
     .starts = [](const Facts& f) -> Starts { return {{f.median()}}; }},
    {.distribution = "half-normal",
     .starts = [](const Facts& f) -> Starts { return {{f.RootMeanSquare()}}; }},
    {.distribution = "hyperbolic secant",
     .starts = [](const Facts& f) -> Starts { return {{f.mean(), f.deviation()}}; }},
    {.distribution = "inverse gamma", .starts = FromLogs<LogInverseGamma>},
    {.distribution = "inverse Weibull", .starts = FromLogs<LogInverseWeibull>},
    {.distribution = "Johnson SL", .starts = JohnsonSL, .held = 3},
    {.distribution = "Johnson SU", .starts = JohnsonSU},
    {.distribution = "Laplace",
     .starts = [](const Facts& f) -> Starts {
       return {{f.median(), f.MeanAbsoluteDeviation(false)}};
     },
     .kinked = 0},
    {.distribution = "log-Laplace",
     .starts = [](const Facts& f) -> Starts {
       return {{1 / f.MeanAbsoluteDeviation(true), f.median()}};
     },
     .kinked = 1},
    {.distribution = "log-logistic", .starts = FromLogs<LogLogistic>},
    {.distribution = "log-Pearson III", .starts = LogPearsonIII},
    {.distribution = "logistic",
     .starts = [](const Facts& f) -> Starts { return {{f.mean(), f.deviation() * sqrt3 / pi}}; }},
    {.distribution = "lognormal", .starts = FromLogs<LogNormal>},
    {.distribution = "Maxwell",
     .starts = [](const Facts& f) -> Starts { return {{f.RootMeanSquare() / sqrt3}}; }},
    {.distribution = "Nakagami",
     .starts = [](const Facts& f) -> Starts {
       return {{std::max(0.25 / Square(f.LogsFrom(0).deviation), 0.6),
                Square(f.RootMeanSquare())}};
     }},
    {.distribution = "negative binomial", .starts = NegativeBinomial},
    {.distribution = "normal",
     .starts = [](const Facts& f) -> Starts { return {{f.mean(), f.deviation()}}; }},
    {.distribution = "Pareto",
     .starts = [](const Facts& f) -> Starts {
       return {{1 / (f.LogsFrom(0).mean - std::log(f.smallest())), f.smallest()}};
     },
     .smallest = 1},
    {.distribution = "Pearson III", .starts = WithLocation<LogGamma>},
    {.distribution = "Pearson V", .starts = WithLocation<LogInverseGamma>},
    {.distribution = "PERT", .starts = Pert, .held = 3},
    {.distribution = "Poisson", .starts = [](const Facts& f) -> Starts { return {{f.mean()}}; }},
    {.distribution = "power function",
     .starts = [](const Facts& f) -> Starts {
       return {{1 / (std::log(f.largest()) - f.LogsFrom(0).mean), f.largest()}};
     },
     .largest = 1},
    {.distribution = "Rayleigh",
     .starts = [](const Facts& f) -> Starts { return {{f.RootMeanSquare() / sqrt2}}; }},
    {.distribution = "reciprocal",
     .starts = [](const Facts& f) -> Starts { return {{f.smallest(), f.largest()}}; },
     .smallest = 0, .largest = 1},
    {.distribution = "three-parameter lognormal", .starts = WithLocation<LogNormal>},
    {.distribution = "three-parameter Weibull", .starts = WithLocation<LogWeibull>},
    {.distribution = "triangular", .starts = Triangular, .kinked = 1},
    {.distribution = "uniform",
     .starts = [](const Facts& f) -> Starts { return {{f.smallest(), f.largest()}}; },
     .smallest = 0, .largest = 1},
    {.distribution = "Weibull", .starts = FromLogs<LogWeibull>},
};
// clang-format on

/// What a parameter's name and domain say about where it may be, relative to the sample.
Values Candidates(const Parameter& parameter, const Facts& facts) {
  const auto named = [&](auto... parts) {
    return ((parameter.name.find(parts) != std::string::npos) || ...);
  };
  const double deviation = facts.deviation(), median = facts.median(), range = facts.range();
  const bool any_number = parameter.domain.low == -kInfinity;
  if (parameter.domain.high == 1) return {0.5, 0.1, 0.9, 0.01, 0.3, 0.7};
  if (named("lower", "minimum"))
    return {facts.smallest(), facts.smallest() - 0.05 * range, facts.smallest() - 0.5 * range};
  if (named("upper", "maximum", "radius"))
    return {facts.largest(), facts.largest() + 0.05 * range, facts.largest() + 0.5 * range};
  if (named("log ")) {
    const Facts::Shape logs = facts.LogsFrom(0);
    return {logs.mean, logs.deviation, 1.0};
  }
  if (named("rate")) return {1 / facts.mean(), 3 / facts.mean(), 0.3 / facts.mean(), 1 / deviation};
  if (named("scale", "deviation", "spread"))
    return {deviation, 0.4 * deviation, 2.5 * deviation, std::fabs(median), Square(deviation)};
  if (named("location", "mean", "mode"))
    return {median, facts.mean(), median - deviation, median + deviation,
            facts.smallest() - 0.1 * range};
  if (any_number) return {0.1, -0.5, 0.5, 2.0, -2.0, median, 10.0, -10.0};
  return {0.7, 2.0, 6.0, 0.2, 25.0, std::fabs(median), 150.0, 0.05};
}

/// All combinations of one entry of each list.
class Combinations {
 public:
  explicit Combinations(std::vector<Values> lists)
      : lists_(std::move(lists)), places_(lists_.size()) {
    constexpr std::size_t kMost = 700;
    while (Count() > kMost) std::ranges::max_element(lists_, {}, &Values::size)->pop_back();
  }

  Values Current() const {
    Values values;
    for (std::size_t i = 0; i < lists_.size(); ++i) values.push_back(lists_[i][places_[i]]);
    return values;
  }
  /// False after the last one.
  bool Advance() {
    for (std::size_t i = 0; i < lists_.size(); ++i) {
      if (++places_[i] < lists_[i].size()) return true;
      places_[i] = 0;
    }
    return false;
  }

 private:
  std::size_t Count() const {
    std::size_t count = 1;
    for (const Values& list : lists_) count *= list.size();
    return count;
  }

  std::vector<Values> lists_;
  std::vector<std::size_t> places_;
};

}  // namespace

Method MethodFor(const Description& description) {
  const auto* const found =
      std::ranges::find(kMethods, std::string_view(description.name), &Method::distribution);
  return found != std::end(kMethods) ? *found : Method{};
}

Starts GridStarts(const LogLikelihood& likelihood, std::span<const std::optional<double>> given) {
  constexpr std::size_t kKept = 3;
  const Facts facts(likelihood.sample());
  std::vector<Values> lists;
  for (std::size_t i = 0; i < given.size(); ++i) {
    const Parameter& parameter = likelihood.description().parameters[i];
    Values list = given[i] ? Values{*given[i]} : Candidates(parameter, facts);
    std::erase_if(list, [&](double value) { return !parameter.domain.Contains(value); });
    if (list.empty()) list.push_back(parameter.by_default.value_or(1));
    lists.push_back(std::move(list));
  }
  const Sample few = likelihood.sample().Thinned(40);
  const Cancelled& cancelled = likelihood.cancelled();
  const LogLikelihood rough(likelihood.description(), few, cancelled);
  std::vector<std::pair<double, Values>> best;
  Combinations combinations(std::move(lists));
  do {
    Values values = combinations.Current();
    if (!rough.Distribution(values)) continue;
    const double value = rough(values);
    best.emplace_back(value, std::move(values));
    std::ranges::sort(best, std::greater<>(), &std::pair<double, Values>::first);
    if (best.size() > kKept) best.pop_back();
  } while (combinations.Advance());
  Starts starts;
  for (auto& [value, values] : best) starts.push_back(std::move(values));
  return starts;
}

}  // namespace DistLib
