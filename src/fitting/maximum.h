#pragma once
// Maxima of smooth functions of a few variables that have no bounds.

#include <functional>
#include <span>
#include <vector>

namespace DistLib {

/// Minus infinity says that the function is not defined there.
using Objective = std::function<double(std::span<const double>)>;

/// Where the search begins, and how far one step of it may go.
struct Variable {
  double start = 0;
  double greatest_step = 0;  // infinite for a variable whose scale is unknown
};

struct Maximum {
  std::vector<double> at;
  double value = 0;
  bool converged = false;
};

/// Newton's method with differences, from a start where the function is finite. Without
/// convergence, as at a kink, the simplex method of Nelder and Mead takes over.
Maximum Maximise(const Objective& objective, std::span<const Variable> variables);

/// A maximum to more digits, and its curvature there.
struct Refined {
  Maximum maximum;
  /// Of each variable the variance that the negative inverse of the second derivatives gives.
  /// Empty unless the second derivatives are those of a maximum.
  std::vector<double> variances;
};
Refined Refine(const Objective& objective, const Maximum& maximum);

}  // namespace DistLib
