#pragma once

#include "fitting/fit.h"
#include "fitting/sample.h"

namespace DistLib {

/// A fit of a sample like one that was fitted before, searched from its parameters: quickly, and
/// without standard errors. Nothing if there is none. Needs a zavrel::FloatingPointScope around it.
std::optional<Fit> Refit(const Description& description, const Sample& sample,
                         FixedParameters fixed, const Cancelled& cancelled,
                         std::span<const double> near);

}  // namespace DistLib
