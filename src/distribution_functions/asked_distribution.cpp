#include "distribution_functions/asked_distribution.h"

#include <stdexcept>

#include "platform/utf.h"

namespace zavrel {
namespace {

/// Throws what MakeDistribution throws.
std::unique_ptr<DistLib::PdfDist> Make(const DistLib::Description& description,
                                       const GivenParameters& given) {
  std::vector<double> parameters;
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (given[i] || i >= description.parameters.size()) {
      parameters.push_back(given[i].value_or(0));  // one too many is refused
      continue;
    }
    const DistLib::Parameter& described = description.parameters[i];
    if (!described.by_default) throw std::invalid_argument(described.name + " is missing");
    parameters.push_back(*described.by_default);
  }
  return DistLib::MakeDistribution(description, parameters);
}

}  // namespace

OrFailure<const DistLib::Description*> DistributionNamed(std::u16string_view name) {
  const DistLib::Description* const found = DistLib::FindDistribution(Utf8FromUtf16(name));
  if (found == nullptr) return Failure(ExcelError::kNA);
  return found;
}

OrFailure<GivenParameters> ParametersIn(const ExcelData& data) {
  GivenParameters given;
  for (std::size_t i = 0; i < data.size(); ++i) {
    const SingleValue cell = data[i];
    switch (cell.tag) {
      case CellTag::kNumber:
        given.emplace_back(cell.number);
        break;
      case CellTag::kInteger:
        given.emplace_back(cell.code);
        break;
      case CellTag::kBlank:
      case CellTag::kMissing:
        given.emplace_back();
        break;
      case CellTag::kError:
        return Failure::ByCode(cell.code);
      default:
        return Failure(ExcelError::kValue);
    }
  }
  while (!given.empty() && !given.back()) given.pop_back();
  return given;
}

OrFailure<std::unique_ptr<DistLib::PdfDist>> MakeAsked(const DistLib::Description& description,
                                                       const GivenParameters& given) {
  try {
    return Make(description, given);
  } catch (const std::domain_error&) {
    return Failure(ExcelError::kNum);
  } catch (const std::invalid_argument&) {
    return Failure(ExcelError::kValue);
  }
}

std::string ProblemWith(const DistLib::Description& description, const GivenParameters& given) {
  try {
    Make(description, given);
    return {};
  } catch (const std::logic_error& problem) {
    return problem.what();
  }
}

}  // namespace zavrel
