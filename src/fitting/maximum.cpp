#include "fitting/maximum.h"

#include <algorithm>
#include <cmath>
#include <eigen3/Eigen/Eigenvalues>
#include <numeric>
#include <optional>

namespace DistLib {
namespace {

using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr int kNewtonSteps = 60;
constexpr int kEvaluationsPerVariable = 250;  // of the simplex method
constexpr double kNegligibleGain = 1e-8;      // of a logarithm of a likelihood

/// A place, with a step in each variable that is about the width of the maximum: one that changes
/// the function by about 1.
class Place {
 public:
  Place(const Objective& objective, std::vector<double> at)
      : objective_(objective),
        at_(std::move(at)),
        steps_(at_.size(), 1.0),
        value_(objective_(at_)) {}

  std::size_t size() const { return at_.size(); }
  const std::vector<double>& at() const { return at_; }
  double value() const { return value_; }
  double step(std::size_t i) const { return steps_[i]; }
  VectorXd Steps() const {
    return Eigen::Map<const VectorXd>(steps_.data(), static_cast<Eigen::Index>(steps_.size()));
  }

  double ValueAt(std::span<const double> at) const { return objective_(at); }
  /// The function so many steps from here.
  double Beside(std::initializer_list<std::pair<std::size_t, double>> moves) const {
    std::vector<double> at = at_;
    for (const auto& [i, count] : moves) at[i] += count * steps_[i];
    return objective_(at);
  }
  double Along(const VectorXd& direction, double count) const {
    return objective_(To(direction, count));
  }
  void Go(const VectorXd& direction, double count, double value) {
    at_ = To(direction, count);
    value_ = value;
  }

  void FindSteps() {
    for (std::size_t i = 0; i < size(); ++i) FindStep(i);
  }
  void Scale(std::size_t i, double factor) { steps_[i] *= factor; }

 private:
  std::vector<double> To(const VectorXd& direction, double count) const {
    std::vector<double> at = at_;
    for (std::size_t i = 0; i < size(); ++i)
      at[i] += count * direction[static_cast<Eigen::Index>(i)] * steps_[i];
    return at;
  }

  void FindStep(std::size_t i) {
    steps_[i] = 0.05;
    double last = 1;
    for (int tries = 0; tries < 40; ++tries) {
      const double change =
          std::max(std::fabs(Beside({{i, 1}}) - value_), std::fabs(Beside({{i, -1}}) - value_));
      const double factor = change > 4 ? 0.25 : change < 0.25 ? 4 : 1;
      if (factor == 1 || factor * last < 1) return;  // there, or to and fro
      steps_[i] *= factor;
      if (steps_[i] > 1e100 || steps_[i] < 1e-100) return;
      last = factor;
    }
  }

  const Objective& objective_;
  std::vector<double> at_;
  std::vector<double> steps_;
  double value_;
};

/// The function near a place, in steps: gradient, and second derivatives with the sign changed.
struct Slopes {
  VectorXd gradient;
  MatrixXd curvature;
};

struct Slope {
  double first;
  double second;
};

/// Differences of second order over h steps. Those of a variable alone come before the mixed ones,
/// which build on them: two more values suffice then.
class Differences {
 public:
  Differences(const Place& place, double h) : place_(place), h_(h), second_(place.size()) {}

  /// Not finite if the function is not defined there.
  Slope Alone(std::size_t i) {
    const double up = place_.Beside({{i, h_}}), down = place_.Beside({{i, -h_}});
    second_[i] = (up - 2 * place_.value() + down) / (h_ * h_);
    return {(up - down) / (2 * h_), second_[i]};
  }
  double Mixed(std::size_t i, std::size_t j) const {
    const double along = place_.Beside({{i, h_}, {j, h_}}) - 2 * place_.value() +
                         place_.Beside({{i, -h_}, {j, -h_}});
    return (along / (h_ * h_) - second_[i] - second_[j]) / 2;
  }

 private:
  const Place& place_;
  double h_;
  std::vector<double> second_;
};

/// The same of fourth order, from steps h and 2h.
class FineDifferences {
 public:
  FineDifferences(const Place& place, double h) : near_(place, h), far_(place, 2 * h) {}

  Slope Alone(std::size_t i) {
    const Slope near = near_.Alone(i), far = far_.Alone(i);
    return {Extrapolated(near.first, far.first), Extrapolated(near.second, far.second)};
  }
  double Mixed(std::size_t i, std::size_t j) const {
    return Extrapolated(near_.Mixed(i, j), far_.Mixed(i, j));
  }

 private:
  static double Extrapolated(double near, double far) { return (4 * near - far) / 3; }

  Differences near_;
  Differences far_;
};

/// Shortens steps that leave the function's domain. Nothing if even short ones do.
template <class Method>
std::optional<Slopes> SlopesAt(Place& place, double h) {
  const auto size = static_cast<Eigen::Index>(place.size());
  Slopes slopes{VectorXd(size), MatrixXd(size, size)};
  Method differences(place, h);
  for (std::size_t i = 0; i < place.size(); ++i) {
    Slope slope{};
    for (int tries = 0;; ++tries) {
      slope = differences.Alone(i);
      if (std::isfinite(slope.first) && std::isfinite(slope.second)) break;
      if (tries == 12) return {};
      place.Scale(i, 0.25);
    }
    const auto row = static_cast<Eigen::Index>(i);
    slopes.gradient[row] = slope.first;
    slopes.curvature(row, row) = -slope.second;
  }
  for (std::size_t i = 0; i < place.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const double mixed = differences.Mixed(i, j);
      const auto row = static_cast<Eigen::Index>(i), column = static_cast<Eigen::Index>(j);
      slopes.curvature(row, column) = slopes.curvature(column, row) =
          std::isfinite(mixed) ? -mixed : 0;
    }
  }
  return slopes;
}

struct Direction {
  VectorXd steps;
  double gain;    // what it promises
  bool definite;  // curved as at a maximum in all directions
};

/// Newton's step. Where the function is curved upwards, it climbs as if it were curved downwards.
Direction NewtonDirection(const Slopes& slopes) {
  const Eigen::SelfAdjointEigenSolver<MatrixXd> solver(slopes.curvature);
  const VectorXd& values = solver.eigenvalues();
  const double greatest = values.cwiseAbs().maxCoeff();
  const VectorXd tamed = values.cwiseAbs().cwiseMax(std::max(1e-10 * greatest, 1e-300));
  const VectorXd along = solver.eigenvectors().transpose() * slopes.gradient;
  Direction direction{solver.eigenvectors() * along.cwiseQuotient(tamed), 0,
                      values.minCoeff() > 1e-10 * greatest};
  direction.gain = slopes.gradient.dot(direction.steps) / 2;
  return direction;
}

/// Goes so far along the direction that the function rises; false if it does not.
bool Climb(Place& place, const Direction& direction, double longest) {
  double count = longest;
  for (int tries = 0; tries < 25; ++tries, count *= 0.25) {
    double value = place.Along(direction.steps, count);
    if (!(value > place.value() + 1e-4 * count * direction.gain)) continue;
    if (count == longest && (longest < 1 || !direction.definite)) {
      for (int doublings = 0; doublings < 3; ++doublings) {
        const double further = place.Along(direction.steps, 2 * count);
        if (!(further > value)) break;
        count *= 2;
        value = further;
      }
    }
    place.Go(direction.steps, count, value);
    return true;
  }
  return false;
}

/// The part of a direction that keeps every variable's step within bounds.
double LongestPart(const Place& place, const Direction& direction,
                   std::span<const Variable> variables) {
  double part = 1;
  for (std::size_t i = 0; i < place.size(); ++i) {
    const double count = std::fabs(direction.steps[static_cast<Eigen::Index>(i)]);
    const double greatest = variables[i].greatest_step;
    const double most = std::isfinite(greatest) ? greatest / place.step(i) : 100;
    if (count > most) part = std::min(part, most / count);
  }
  return part;
}

/// Sets the steps to what the curvature says.
void AdjustSteps(Place& place, const Slopes& slopes, std::span<const Variable> variables) {
  for (std::size_t i = 0; i < place.size(); ++i) {
    const double curvature =
        slopes.curvature(static_cast<Eigen::Index>(i), static_cast<Eigen::Index>(i));
    if (curvature > 0) place.Scale(i, std::clamp(1 / std::sqrt(curvature), 0.1, 10.0));
    if (place.step(i) > variables[i].greatest_step)
      place.Scale(i, variables[i].greatest_step / place.step(i));
  }
}

bool Newton(Place& place, std::span<const Variable> variables) {
  constexpr double kStep = 0.02;
  place.FindSteps();
  for (int i = 0; i < kNewtonSteps; ++i) {
    const auto slopes = SlopesAt<Differences>(place, kStep);
    if (!slopes || !slopes->curvature.allFinite()) return false;
    const Direction direction = NewtonDirection(*slopes);
    const double part = LongestPart(place, direction, variables);
    const bool last = direction.definite && part == 1 && direction.gain < kNegligibleGain;
    const bool climbed = Climb(place, direction, part);
    if (last) return true;
    if (!climbed) return direction.definite && direction.gain < 1e-6;
    AdjustSteps(place, *slopes, variables);
  }
  return false;
}

/// The simplex method. Nelder and Mead 1965, The Computer Journal 7, 308-313.
class Simplex {
 public:
  Simplex(const Place& place, std::span<const Variable> variables) : place_(place) {
    corners_.push_back({place.at(), place.value()});
    for (std::size_t i = 0; i < place.size(); ++i) {
      Corner corner = corners_.front();
      corner.at[i] += std::min(2 * place.step(i), variables[i].greatest_step);
      corners_.push_back(At(corner.at));
    }
    Sort();
  }

  Maximum Run() {
    const std::size_t most = kEvaluationsPerVariable * place_.size();
    while (evaluations_ < most && !Narrow()) Step();
    return {corners_.front().at, corners_.front().value, Narrow()};
  }

 private:
  struct Corner {
    std::vector<double> at;
    double value;
  };

  Corner At(std::vector<double> at) {
    ++evaluations_;
    const double value = place_.ValueAt(at);
    return {std::move(at), value};
  }
  void Sort() { std::ranges::stable_sort(corners_, std::greater<>(), &Corner::value); }

  bool Narrow() const {
    if (!(corners_.front().value - corners_.back().value <= 1e-9)) return false;
    for (std::size_t i = 0; i < place_.size(); ++i) {
      if (std::fabs(corners_.front().at[i] - corners_.back().at[i]) > 1e-5 * place_.step(i))
        return false;
    }
    return true;
  }

  /// The worst corner, moved along the line through the centre of the others.
  Corner Moved(double factor) {
    std::vector<double> at(place_.size());
    const auto others = static_cast<double>(place_.size());
    for (std::size_t i = 0; i < at.size(); ++i) {
      double centre = 0;
      for (std::size_t k = 0; k + 1 < corners_.size(); ++k) centre += corners_[k].at[i] / others;
      at[i] = centre + factor * (corners_.back().at[i] - centre);
    }
    return At(std::move(at));
  }

  void Step() {
    Corner reflected = Moved(-1);
    if (reflected.value > corners_.front().value) {
      Corner expanded = Moved(-2);
      corners_.back() = std::move(expanded.value > reflected.value ? expanded : reflected);
    } else if (reflected.value > corners_[corners_.size() - 2].value) {
      corners_.back() = std::move(reflected);
    } else {
      Corner contracted = Moved(reflected.value > corners_.back().value ? -0.5 : 0.5);
      if (contracted.value > std::max(reflected.value, corners_.back().value))
        corners_.back() = std::move(contracted);
      else
        Shrink();
    }
    Sort();
  }
  void Shrink() {
    for (std::size_t k = 1; k < corners_.size(); ++k) {
      std::vector<double> at = corners_[k].at;
      for (std::size_t i = 0; i < at.size(); ++i)
        at[i] = std::midpoint(at[i], corners_.front().at[i]);
      corners_[k] = At(std::move(at));
    }
  }

  const Place& place_;
  std::vector<Corner> corners_;
  std::size_t evaluations_ = 0;
};

/// The directions in which the function is curved independently, each as long as the maximum is
/// wide. Along them differences see a narrow ridge's length, too. Nothing if this is no maximum.
std::optional<MatrixXd> PrincipalAxes(Place place, double h) {
  place.FindSteps();
  const auto slopes = SlopesAt<Differences>(place, h);
  if (!slopes || !slopes->curvature.allFinite()) return {};
  const Eigen::SelfAdjointEigenSolver<MatrixXd> solver(slopes->curvature);
  const VectorXd& values = solver.eigenvalues();
  if (!(values.minCoeff() > 0)) return {};
  return place.Steps().asDiagonal() * solver.eigenvectors() *
         values.cwiseSqrt().cwiseInverse().asDiagonal();
}

Maximum MaximumAt(const Place& place, bool converged) {
  return {place.at(), place.value(), converged};
}

}  // namespace

Maximum Maximise(const Objective& objective, std::span<const Variable> variables) {
  std::vector<double> start;
  for (const Variable& variable : variables) start.push_back(variable.start);
  Place place(objective, std::move(start));
  if (Newton(place, variables)) return MaximumAt(place, true);
  const Maximum maximum = Simplex(place, variables).Run();
  Place better(objective, maximum.at);
  if (Newton(better, variables)) return MaximumAt(better, true);
  return better.value() > maximum.value ? MaximumAt(better, maximum.converged) : maximum;
}

Refined Refine(const Objective& objective, const Maximum& maximum) {
  constexpr double kRoughStep = 0.05, kStep = 0.005;
  constexpr double kFar = 0.5;  // a step this long is none of a maximum that was found
  constexpr int kRounds = 4;
  const auto axes = PrincipalAxes(Place(objective, maximum.at), kRoughStep);
  if (!axes) return {maximum, {}};
  const auto from_axes = [&](const VectorXd& y) {
    const VectorXd x = *axes * y;
    std::vector<double> at = maximum.at;
    for (std::size_t i = 0; i < at.size(); ++i) at[i] += x[static_cast<Eigen::Index>(i)];
    return at;
  };
  const auto vector = [](std::span<const double> y) {
    return VectorXd(Eigen::Map<const VectorXd>(y.data(), static_cast<Eigen::Index>(y.size())));
  };
  const Objective on_axes = [&](std::span<const double> y) {
    return objective(from_axes(vector(y)));
  };
  Place place(on_axes, std::vector<double>(maximum.at.size()));
  std::vector<double> variances;
  for (int round = 0; round < kRounds; ++round) {
    const auto slopes = SlopesAt<FineDifferences>(place, kStep);
    if (!slopes || !slopes->curvature.allFinite()) break;
    const Direction direction = NewtonDirection(*slopes);
    if (!direction.definite) break;
    const MatrixXd to_variables = *axes * place.Steps().asDiagonal();
    const VectorXd diagonal =
        (to_variables * slopes->curvature.inverse() * to_variables.transpose()).diagonal();
    variances.assign(diagonal.begin(), diagonal.end());
    const double length = direction.steps.cwiseAbs().maxCoeff();
    const double value = place.Along(direction.steps, 1);
    if (length > kFar || !(value >= place.value() - 1e-7)) break;
    place.Go(direction.steps, 1, value);
    if (length < 1e-7) break;
  }
  return {{from_axes(vector(place.at())), place.value(), maximum.converged}, std::move(variances)};
}

}  // namespace DistLib
