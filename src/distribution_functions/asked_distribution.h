#pragma once
// A distribution as a formula asks for it: by name and parameters.

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/excel_data.h"
#include "distributions/catalogue.h"
#include "excel/or_failure.h"

namespace zavrel {

/// One of the list's; #N/A if none has the name.
OrFailure<const DistLib::Description*> DistributionNamed(std::u16string_view name);

/// Parameters in their order; nothing where one is left out.
using GivenParameters = std::vector<std::optional<double>>;

/// The numbers of the cells and arguments, in order. What is blank or omitted is left out. Text and
/// truth values: #VALUE!; an error is passed on.
OrFailure<GivenParameters> ParametersIn(const ExcelData& data);

/// With its defaults for parameters that are left out. One outside its domain: #NUM!; too many of
/// them, or none where there is no default: #VALUE!.
OrFailure<std::unique_ptr<DistLib::PdfDist>> MakeAsked(const DistLib::Description& description,
                                                       const GivenParameters& given);

/// What is wrong with the parameters, for people; empty if nothing is.
std::string ProblemWith(const DistLib::Description& description, const GivenParameters& given);

}  // namespace zavrel
