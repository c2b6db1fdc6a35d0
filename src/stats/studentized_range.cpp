#include "stats/studentized_range.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "numbers/elementary.h"
#include "numbers/floating_point_scope.h"
#include "stats/normal.h"

namespace zavrel {
namespace {

constexpr int kSteps = 15;      // to each side, in both integrals
constexpr int kEarlySteps = 7;  // of the outer integral: within these a small term does not end it
constexpr int kEarlyNodes = 3;  // the same for the inner integral
constexpr double kSmallSum = 1e-4;
constexpr double kSmallTerm = 3e-5;
constexpr double kMostDegrees = 120;
constexpr double kStep = 0.45;
constexpr double kNormalDensityAt0 = 0.39894228;

/// The probability for given degrees of freedom and means: a sum over a grid of normal deviates z
/// (outer) and of logarithms t of the estimated standard deviation (inner). Everything that is
/// independent of q is computed once.
class StudentizedRange {
 public:
  StudentizedRange(double df, double means) : inner_(df <= kMostDegrees), power_(means - 1) {
    const double step = kStep * elementary::Exp(-0.2 * elementary::Log(means));
    const double middle = 0.5 * elementary::Log(means);
    double scale = means * step;
    if (inner_) {
      const double inner_step = kStep / std::sqrt(df);
      scale *= inner_step * DensityConstant(df);
      for (int j = 1; j <= kSteps; ++j) {
        nodes_[0][Index(j)] = NodeAt(inner_step * j, df);
        nodes_[1][Index(j)] = NodeAt(-inner_step * j, df);
      }
    } else {
      scale *= kNormalDensityAt0;
    }
    const double log_scale = elementary::Log(scale);
    for (int k = 1; k <= kSteps; ++k) {
      deviates_[0][Index(k)] = DeviateAt(middle + step * (k - 1), log_scale);
      deviates_[1][Index(k)] = DeviateAt(middle - step * (k - 1), log_scale);
    }
  }

  double Probability(double q) {
    ++evaluations_;
    if (!(q > 0)) return 0;
    double total = 0;
    double previous = 1;
    double one_before = 1;
    for (int k = 1; k <= kSteps; ++k) {
      for (std::size_t side = 0; side < (k == 1 ? 1u : 2u); ++side) {
        const bool faded = k > kEarlySteps && one_before <= kSmallSum;
        const double sum = faded ? 0 : SumAt(deviates_[side][Index(k)], q, k > kEarlySteps);
        total += sum;
        if (k > kEarlySteps && sum <= kSmallSum && previous <= kSmallSum) return total;
        one_before = previous;
        previous = sum;
      }
    }
    return total;
  }

  int evaluations() const { return evaluations_; }

 private:
  struct Deviate {
    double z;
    double log_weight;  // of the density, including the constants of both integrals
    double tail;        // beyond z, on the side of z
  };
  struct Node {
    double scale;  // e^t
    double log_weight;
  };

  static std::size_t Index(int one_based) { return static_cast<std::size_t>(one_based - 1); }

  /// 1 / sqrt(2 pi) times the constant of the density of ln s, without its power of e: exact for
  /// one and two degrees of freedom, by Stirling's series for more.
  static double DensityConstant(double df) {
    if (df == 1) return 0.193064705;
    if (df == 2) return 0.293525326;
    const double w = df / 2;
    return std::sqrt(w) * 0.318309886 /
           (1 + ((-0.00268132716 / w + 0.00347222222) / w + 0.0833333333) / w);
  }

  static Deviate DeviateAt(double z, double log_scale) {
    return {z, log_scale - z * z / 2, NormalUpperTail(std::abs(z))};
  }

  static Node NodeAt(double t, double df) {
    const double scale = elementary::Exp(t);
    return {scale, df * (t + 0.5 - scale * scale / 2)};
  }

  /// weight * (probability between x and z) ^ power, x = z - q * scale; 0 if x rounds to z. The
  /// probability is computed as a difference of small numbers, or as 1 minus a small number: with
  /// thousands of means, the power would magnify the rounding of a number near 1.
  double Term(const Deviate& deviate, double q, double scale, double log_weight) const {
    const double x = deviate.z - q * scale;
    const double tail = NormalUpperTail(std::abs(x));
    double log_between = 0;
    if (deviate.z >= 0 && x < 0) {
      const double outside = tail + deviate.tail;
      if (outside >= 1) return 0;
      log_between = elementary::Log1p(-outside);
    } else {
      const double between = deviate.z < 0 ? deviate.tail - tail : tail - deviate.tail;
      if (between <= 0) return 0;
      log_between = elementary::Log(between);
    }
    return elementary::Exp(log_weight + power_ * log_between);
  }

  /// The inner integral at one deviate. `late` means so far out that the first small term ends a
  /// side; the negative side always ends in this way.
  double SumAt(const Deviate& deviate, double q, bool late) const {
    double sum = Term(deviate, q, 1, deviate.log_weight);
    if (!inner_) return sum;
    for (std::size_t side = 0; side < 2; ++side) {
      for (int j = 1; j <= kSteps; ++j) {
        const Node& node = nodes_[side][Index(j)];
        const double term = Term(deviate, q, node.scale, deviate.log_weight + node.log_weight);
        sum += term;
        if (term <= kSmallTerm && (late || side == 1 || j > kEarlyNodes)) break;
      }
    }
    return sum;
  }

  bool inner_;
  double power_;
  int evaluations_ = 0;
  std::array<std::array<Deviate, kSteps>, 2> deviates_{};
  std::array<std::array<Node, kSteps>, 2> nodes_{};
};

/// A first approximation of the quantile, fitted with the constant 0.8843 (other sources have
/// 0.8832).
double StartingValue(double p, double df, double means) {
  double t = NormalQuantile(0.5 + 0.5 * p);
  const bool few = df < kMostDegrees;
  if (few) t += (t * t * t + t) / df / 4;
  double slope = 0.8843 - 0.2368 * t;
  if (few) slope += -1.214 / df + 1.208 * t / df;
  const double value = t * (slope * elementary::Log(means - 1) + 1.4142);
  return value > 0 ? value : 0;  // 0 also for a not-a-number, from the infinite t of a p next to 1
}

/// A point and its probability.
struct End {
  double x;
  double probability;
};

constexpr int kMostWidenings = 200;
constexpr int kMostBisections = 100;

/// Moves an end outwards by growing factors until it is `beyond` p. Reaching the outermost point
/// would take all the steps.
template <class Beyond>
void Widen(StudentizedRange& range, End& end, double outermost, Beyond beyond) {
  if (end.x <= 0) return;  // a factor would not move it
  constexpr double kAllFactors = kMostWidenings * (kMostWidenings + 1) / 2.0;
  const bool outside = outermost < 1 ? end.x <= outermost : end.x >= outermost;
  const double growth =
      outside
          ? 1
          : elementary::Exp((elementary::Log(outermost) - elementary::Log(end.x)) / kAllFactors);
  double factor = growth;
  for (int i = 1; i < kMostWidenings && !beyond(end.probability); ++i) {
    end.x *= factor;
    factor *= growth;
    end.probability = range.Probability(end.x);
  }
}

void Bisect(StudentizedRange& range, double p, End& low, End& high) {
  constexpr double kClose = 1e-14;
  for (int i = 0; i < kMostBisections; ++i) {
    if ((p - low.probability) / p < kClose || (high.probability - p) / p < kClose ||
        (high.x - low.x) / high.x < kClose) {
      return;
    }
    End middle{(low.x + high.x) / 2, 0};
    middle.probability = range.Probability(middle.x);
    (middle.probability <= p ? low : high) = middle;
  }
}

}  // namespace

StudentizedRangeResult StudentizedRangeProbability(double q, std::int32_t df, std::int32_t means) {
  if (df < 1 || means < 2) return {0, true};
  if (!(q > 0)) return {0, false};
  const FloatingPointScope environment;
  StudentizedRange range(df, means);
  return {Settled(range.Probability(q)), false, 1};
}

StudentizedRangeResult StudentizedRangeQuantile(double p, std::int32_t df, std::int32_t means) {
  if (p == 0) return {0, false};
  if (!(p > 0 && p < 1) || df < 1 || means < 2) return {0, true};
  const FloatingPointScope environment;
  StudentizedRange range(df, means);

  const double start = StartingValue(p, df, means);
  End low{start, range.Probability(start)};
  // On the other side of p and as far away; a distance above p counts for less.
  double first = low.probability;
  if (first > p) first = 1.75 * p - 0.75 * first;
  const double second = p > first ? p + 0.75 * (p - first) * (1 - p) / (1 - first) : 0;
  const double further = StartingValue(second, df, means);
  End high{further, range.Probability(further)};

  Widen(range, low, 1e-300, [p](double probability) { return p >= probability; });
  Widen(range, high, 1e300, [p](double probability) { return probability >= p; });
  if (!(low.probability <= p && p <= high.probability)) return {0, true, range.evaluations()};

  Bisect(range, p, low, high);
  const End& nearer = std::abs(high.probability - p) < std::abs(low.probability - p) ? high : low;
  const bool missed = std::abs(p - nearer.probability) / p > 1e-4;
  return {Settled(nearer.x), missed, range.evaluations()};
}

}  // namespace zavrel
