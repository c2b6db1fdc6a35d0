#include <stdexcept>
#include <vector>

#include "distributions/catalogue.h"

namespace DistLib {

std::unique_ptr<PdfDist> MakeDistribution(const Description& description,
                                          std::span<const double> parameters) {
  const auto& described = description.parameters;
  if (parameters.size() > described.size())
    throw std::invalid_argument(description.name + " has only " + std::to_string(described.size()) +
                                " parameters");
  std::vector<double> values(parameters.begin(), parameters.end());
  for (std::size_t i = 0; i < described.size(); ++i) {
    const auto& [name, domain, by_default] = described[i];
    if (i == values.size()) {
      if (!by_default) throw std::invalid_argument(name + " is missing");
      values.push_back(*by_default);
    }
    if (!domain.Contains(values[i])) throw ParameterError(name, domain.Text(), values[i]);
  }
  return description.make(values);
}

}  // namespace DistLib
