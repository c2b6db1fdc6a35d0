#pragma once
// The list of all distributions.
//
// A new distribution is one file with its class and its description, and a line in the list in
// catalogue.cpp. Close relatives may share a file.

#include <memory>
#include <span>
#include <string_view>

#include "companions/pdflib/distributions/description.h"

namespace DistLib {

extern const Description kNormal;
extern const Description kStudent;
extern const Description kChiSquare;
extern const Description kF;
extern const Description kBinomial;

/// All distributions, by name.
std::span<const Description* const> Distributions();

/// The distribution with this name or other name, or null. The case of ASCII letters does not
/// matter, nor do spaces, hyphens and underscores.
const Description* FindDistribution(std::string_view name);

/// Makes a distribution; parameters that are not given have their defaults. Throws ParameterError
/// for one outside its domain, std::invalid_argument for too many or too few. As all computation,
/// it needs a zavrel::FloatingPointScope around it.
std::unique_ptr<PdfDist> MakeDistribution(const Description& description,
                                          std::span<const double> parameters);

}  // namespace DistLib
