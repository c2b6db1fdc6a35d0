// Values of a distribution: ZavDistDensity ... ZavDistUpperQuantile, and ZavDistRandom.
//
// x may be a range: the result has its shape, and a failure affects only its own cell. A blank cell
// gives the empty text, since an empty result would show as 0.
#include <cmath>
#include <stdexcept>

#include "distribution_functions/argument_lists.h"
#include "distribution_functions/asked_distribution.h"
#include "frame/calling_array.h"
#include "frame/worksheet_function.h"
#include "numbers/floating_point_scope.h"
#include "platform/export.h"
#include "random/mersenne_twister.h"

namespace zavrel {
namespace {

using DistLib::PdfDist;

constexpr Reading kNameValuesParameters("SRV", MissingDataPolicy::kPositional);
constexpr Reading kNameSeedParameters("SLV", MissingDataPolicy::kPositional);

/// A function of the distribution at a number; it may throw std::exception, or be infinite, if
/// there is no value.
using ValueAt = double (*)(const PdfDist& distribution, double x);

// Outside the support nothing is left to chance.
double Density(const PdfDist& distribution, double x) {
  return x < distribution.Lowest() || x > distribution.Highest() ? 0 : distribution.Density(x);
}
double Cumulative(const PdfDist& distribution, double x) {
  if (x < distribution.Lowest()) return 0;
  return x > distribution.Highest() ? 1 : distribution.Cumulative(x);
}
double UpperTail(const PdfDist& distribution, double x) {
  if (x < distribution.Lowest()) return 1;
  return x > distribution.Highest() ? 0 : distribution.UpperTail(x);
}
double Quantile(const PdfDist& distribution, double p) { return distribution.Quantile(p); }
double UpperQuantile(const PdfDist& distribution, double p) {
  return distribution.UpperQuantile(p);
}

/// #NUM! for a value that is infinite or that the distribution does not have.
template <class Compute>
void PutComputed(XXloperArray& values, std::size_t index, Compute compute) {
  try {
    values.SetNumber(index, compute());
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    values.SetError(index, xlerrNum);
  }
}

void PutValue(XXloperArray& values, std::size_t index, const SingleValue& x,
              const PdfDist& distribution, ValueAt value_at) {
  switch (x.tag) {
    case CellTag::kNumber:
      return PutComputed(values, index, [&] { return value_at(distribution, x.number); });
    case CellTag::kInteger:
      return PutComputed(values, index, [&] { return value_at(distribution, x.code); });
    case CellTag::kBlank:
      return values.SetText(index, u"");
    case CellTag::kError:
      return values.SetError(index, x.code);
    default:
      return values.SetError(index, xlerrValue);
  }
}

/// In the shape of the cells, or in one column if they do not form a block.
CellResult ValuesAt(const ExcelData& cells, const PdfDist& distribution, ValueAt value_at) {
  const CellBlock block = cells.block().value_or(CellBlock{cells.size(), 1});
  if (cells.size() == 0) return XXloper::EmptyText();
  if (block.rows > kExcelRows) return Failure(ExcelError::kValue);
  XXloperArray values(static_cast<std::int32_t>(block.rows),
                      static_cast<std::int32_t>(block.columns));
  for (std::size_t i = 0; i < cells.size(); ++i)
    PutValue(values, i, cells[i], distribution, value_at);
  const XXloper all = std::move(values).Finish();
  return cells.size() == 1 ? all.Element(0).Owned() : all;
}

OrFailure<std::unique_ptr<PdfDist>> Asked(const Parameters& read) {
  const auto description = DistributionNamed(read.text(0));
  if (!description.ok()) return description.failure();
  const auto given = ParametersIn(read.data(2));
  if (!given.ok()) return given.failure();
  return MakeAsked(**description, *given);
}

XLOPER12* ValuesFunction(const char* name, Arguments arguments, ValueAt value_at) noexcept {
  return WorksheetFunction(name, kNameValuesParameters, arguments,
                           [&](const Parameters& read) -> CellResult {
                             const FloatingPointScope environment;
                             const auto distribution = Asked(read);
                             if (!distribution.ok()) return distribution.failure();
                             return ValuesAt(read.data(1), **distribution, value_at);
                           });
}

}  // namespace

// The values at x of the distribution with this name and these parameters, each a number, or a
// range with several. An unknown name: #N/A; a parameter outside its domain, a probability outside
// 0 to 1, and a value that is infinite: #NUM!.
#define ZAV_VALUES_FUNCTION(function, value_at)                                         \
  ZAV_EXPORT XLOPER12* function(ZAV_NAME_ARGUMENT_AND_PARAMETERS) {                     \
    return ValuesFunction(#function, ZAV_NAME_ARGUMENT_AND_PARAMETERS_LIST, &value_at); \
  }

ZAV_VALUES_FUNCTION(ZavrelDistDensity, Density)
ZAV_VALUES_FUNCTION(ZavrelDistCumulative, Cumulative)
ZAV_VALUES_FUNCTION(ZavrelDistUpperTail, UpperTail)
ZAV_VALUES_FUNCTION(ZavrelDistQuantile, Quantile)
ZAV_VALUES_FUNCTION(ZavrelDistUpperQuantile, UpperQuantile)

/// Random values over the calling range, row by row; the same for the same seed.
ZAV_EXPORT XLOPER12* ZavrelDistRandom(ZAV_NAME_ARGUMENT_AND_PARAMETERS) {
  return WorksheetFunction(
      "ZavrelDistRandom", kNameSeedParameters, ZAV_NAME_ARGUMENT_AND_PARAMETERS_LIST,
      [](const Parameters& read) -> CellResult {
        const FloatingPointScope environment;
        const auto distribution = Asked(read);
        if (!distribution.ok()) return distribution.failure();
        OrFailure<XXloperArray> array = ArrayOfCaller();
        if (!array.ok()) return array.failure();
        MersenneTwister generator(static_cast<std::uint32_t>(read.integer(1)));
        for (std::size_t i = 0; i < array->size(); ++i) {
          PutComputed(*array, i, [&] { return (*distribution)->Random(generator); });
        }
        return (*std::move(array)).Finish();
      });
}

}  // namespace zavrel
