#include "distributions/description.h"

#include <cmath>
#include <sstream>

namespace DistLib {

std::string NumberText(double value) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text.precision(10);
  text << value;
  return text.str();
}

bool Domain::Contains(double value) const {
  if (!std::isfinite(value) || (whole && value != std::floor(value))) return false;
  const bool above = with_low ? value >= low : value > low;
  return above && (with_high ? value <= high : value < high);
}

std::string Domain::Text() const {
  std::string text = whole ? "must be a whole number" : "must be";
  const bool bounded_below = std::isfinite(low), bounded_above = std::isfinite(high);
  if (!bounded_below && !bounded_above) return whole ? text : "must be a number";
  if (bounded_below) text += (with_low ? " at least " : " greater than ") + NumberText(low);
  if (bounded_below && bounded_above) text += " and";
  if (bounded_above) text += (with_high ? " at most " : " less than ") + NumberText(high);
  return text;
}

ParameterError::ParameterError(const std::string& name, const std::string& domain_text,
                               double value)
    : std::domain_error(name + " " + domain_text + ", is " + NumberText(value)) {}

void RequireAbove(const std::string& name, double value, const std::string& other_name,
                  double other) {
  if (value > other) return;
  throw ParameterError(name, "must be greater than " + other_name + " (" + NumberText(other) + ")",
                       value);
}

void RequireAtLeast(const std::string& name, double value, const std::string& other_name,
                    double other) {
  if (value >= other) return;
  throw ParameterError(name, "must be at least " + other_name + " (" + NumberText(other) + ")",
                       value);
}

}  // namespace DistLib
