// What a distribution is: ZavDistProperty and ZavDistNames.
#include <fmt/format.h>

#include <cmath>
#include <string>

#include "distribution_functions/argument_lists.h"
#include "distribution_functions/asked_distribution.h"
#include "frame/worksheet_function.h"
#include "numbers/floating_point_scope.h"
#include "platform/export.h"
#include "platform/letter_case.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

using DistLib::Description;
using DistLib::Kind;
using DistLib::PdfDist;
using DistLib::Real;

constexpr Reading kNamePropertyParameters("SSV", MissingDataPolicy::kPositional);

struct NumberProperty {
  std::u16string_view name;
  std::optional<Real> (*of)(const PdfDist& distribution);  // nothing if there is none
};

constexpr NumberProperty kNumberProperties[] = {
    {u"mean", [](const PdfDist& d) { return d.Moments().mean; }},
    {u"variance", [](const PdfDist& d) { return d.Moments().variance; }},
    {u"standard deviation",
     [](const PdfDist& d) -> std::optional<Real> {
       const auto variance = d.Moments().variance;
       if (!variance) return {};
       return std::sqrt(*variance);
     }},
    {u"skewness", [](const PdfDist& d) { return d.Moments().skewness; }},
    {u"kurtosis", [](const PdfDist& d) { return d.Moments().kurtosis; }},
    {u"mode", [](const PdfDist& d) { return d.Moments().mode; }},
    {u"median", [](const PdfDist& d) -> std::optional<Real> { return d.Median(); }},
    {u"entropy", [](const PdfDist& d) { return d.Entropy(); }},
    {u"lowest", [](const PdfDist& d) -> std::optional<Real> { return d.Lowest(); }},
    {u"highest", [](const PdfDist& d) -> std::optional<Real> { return d.Highest(); }},
};

/// Each with its domain and its default.
std::string ParametersText(const Description& description) {
  std::string text;
  for (const DistLib::Parameter& parameter : description.parameters) {
    if (!text.empty()) text += "; ";
    text += parameter.name + " " + parameter.domain.Text();
    if (parameter.by_default) text += fmt::format(", {} by default", *parameter.by_default);
  }
  return text;
}

std::string OtherNamesText(const Description& description) {
  std::string text;
  for (const std::string& name : description.other_names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

struct TextProperty {
  std::u16string_view name;
  std::string (*of)(const Description& description);
};

constexpr TextProperty kTextProperties[] = {
    {u"name", [](const Description& d) { return d.name; }},
    {u"other names", OtherNamesText},
    {u"kind",
     [](const Description& d) -> std::string {
       return d.kind == Kind::kContinuous ? "continuous" : "discrete";
     }},
    {u"parameters", ParametersText},
    {u"support", [](const Description& d) { return d.support; }},
    {u"formula", [](const Description& d) { return d.formula; }},
    {u"source", [](const Description& d) { return d.source; }},
};

CellResult NumberResult(const NumberProperty& property, const Description& description,
                        const GivenParameters& given) {
  const FloatingPointScope environment;
  const auto distribution = MakeAsked(description, given);
  if (!distribution.ok()) return distribution.failure();
  const std::optional<Real> exact = property.of(**distribution);
  const auto value = static_cast<double>(exact.value_or(DistLib::kInfinity));
  if (!std::isfinite(value)) return Failure(ExcelError::kNA);
  return XXloper::Number(value);
}

XXloper TextResult(const std::string& text) { return XXloper::Text(Utf16FromUtf8(text)); }

template <class Property>
const Property* Find(std::span<const Property> properties, std::u16string_view name) {
  for (const Property& property : properties) {
    if (EqualIgnoringCase(property.name, name)) return &property;
  }
  return nullptr;
}

CellResult PropertyOf(const Description& description, std::u16string_view name,
                      const GivenParameters& given) {
  if (const auto* property = Find<NumberProperty>(kNumberProperties, name))
    return NumberResult(*property, description, given);
  if (const auto* property = Find<TextProperty>(kTextProperties, name))
    return TextResult(property->of(description));
  if (EqualIgnoringCase(name, u"problem")) return TextResult(ProblemWith(description, given));
  return Failure(ExcelError::kValue);
}

XXloper TextColumn(const std::vector<std::string>& texts) {
  XXloperArray column(static_cast<std::int32_t>(texts.size()), 1);
  for (std::size_t i = 0; i < texts.size(); ++i) column.SetText(i, Utf16FromUtf8(texts[i]));
  return std::move(column).Finish();
}

}  // namespace

/// A property by its name, one of the tables above; "problem" says what is wrong with the
/// parameters. An unknown distribution, and a number that does not exist or is infinite: #N/A; an
/// unknown property: #VALUE!. What the description alone says needs no parameters.
ZAV_EXPORT XLOPER12* ZavrelDistProperty(ZAV_NAME_ARGUMENT_AND_PARAMETERS) {
  return WorksheetFunction("ZavrelDistProperty", kNamePropertyParameters,
                           ZAV_NAME_ARGUMENT_AND_PARAMETERS_LIST,
                           [](const Parameters& read) -> CellResult {
                             const auto description = DistributionNamed(read.text(0));
                             if (!description.ok()) return description.failure();
                             const auto given = ParametersIn(read.data(2));
                             if (!given.ok()) return given.failure();
                             return PropertyOf(**description, read.text(1), *given);
                           });
}

/// The names of all distributions in a column, or of those of one kind, "continuous" or "discrete".
ZAV_EXPORT XLOPER12* ZavrelDistNames(const XLOPER12* kind) {
  return WorksheetFunction(
      "ZavrelDistNames", Reading("s"), {kind}, [](const Parameters& read) -> CellResult {
        const std::u16string wanted = read.given(0) ? read.text(0) : u"";
        const bool all = wanted.empty(), discrete = EqualIgnoringCase(wanted, u"discrete");
        if (!all && !discrete && !EqualIgnoringCase(wanted, u"continuous"))
          return Failure(ExcelError::kValue);
        std::vector<std::string> names;
        for (const Description* description : DistLib::Distributions()) {
          if (all || (description->kind == Kind::kDiscrete) == discrete)
            names.push_back(description->name);
        }
        return TextColumn(names);
      });
}

}  // namespace zavrel
