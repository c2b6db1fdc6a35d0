// Statistics of two ranges read as pairs: ZavPairCount ... ZavPairCountRange, and ZavCountRange.
//
// Row i of the first range goes with row i of the second, as far as both have rows. A pair counts
// when both of its cells hold a number; the others are skipped, and the rows stay aligned. Whole
// columns are read to their last used row; where two ranges cut down to their used parts need not
// lie alike (several whole rows used to different columns, whole areas among several), no pair can
// be told and the result is #VALUE!.
#include <array>
#include <limits>

#include "bindings/target_computation.h"
#include "data/get_parameters.h"
#include "excel/double_value.h"
#include "frame/worksheet_function.h"
#include "functions/pair_arguments.h"
#include "platform/export.h"
#include "stats/moment_block.h"
#include "stats/pairs.h"
#include "stats/sort_ascending.h"
#include "stats/target.h"

namespace zavrel {
namespace {

using Arguments = std::span<const XLOPER12* const>;

XXloper NoResult() { return XXloper::Error(ExcelError::kValue); }

/// A moment of the paired differences, in the sample form.
XXloper MomentOfDifferences(StatisticId id, Arguments arguments) {
  const PairArguments pairs("RR", arguments);
  if (!pairs.accepted()) return pairs.failure();
  BlockArray<double> room = pairs.Room();
  const std::size_t count = PairedDifferences(pairs.x(), pairs.y(), Whole(room));
  if (count == 0) return NoResult();
  return ToExcelValue(ComputeMoments(Whole(room).first(count), true)[id]);
}

XXloper MeanOfQuotients(Quotient quotient, Arguments arguments) {
  const PairArguments pairs("RR", arguments);
  if (!pairs.accepted()) return pairs.failure();
  BlockArray<double> room = pairs.Room();
  const PairedQuotientsResult quotients =
      PairedQuotients(pairs.x(), pairs.y(), quotient, Whole(room));
  if (quotients.failure != 0) return ToExcelValue(quotients.failure);
  if (quotients.count == 0) return NoResult();
  return ToExcelValue(ComputeMoments(Whole(room).first(quotients.count), true).mean);
}

/// The range that four arguments from `first` on describe: low, high, low inclusive, high
/// inclusive. A bound left out is the farthest finite number, a flag left out is true.
NumericRange RangeFrom(const Parameters& parameters, std::size_t first) {
  constexpr double kFarthest = std::numeric_limits<double>::max();
  const auto bound = [&](std::size_t at, std::size_t flag, double without) {
    return Bound{parameters.given(at) ? parameters.number(at) : without,
                 !parameters.given(flag) || parameters.boolean(flag)};
  };
  return {bound(first, first + 2, -kFarthest), bound(first + 1, first + 3, kFarthest)};
}

XXloper CountOf(std::size_t count) { return XXloper::Number(static_cast<double>(count)); }

}  // namespace

/// The number of complete pairs.
ZAV_EXPORT XLOPER12* ZavrelPairCount(const XLOPER12* first, const XLOPER12* second) {
  return WorksheetFunction("ZavrelPairCount", [&]() -> XXloper {
    const PairArguments pairs("RR", std::array{first, second});
    return pairs.accepted() ? CountOf(CountPairs(pairs.x(), pairs.y())) : pairs.failure();
  });
}

/// The mean of the differences first - second. No complete pair: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelPairMean(const XLOPER12* first, const XLOPER12* second) {
  return WorksheetFunction("ZavrelPairMean", [&] {
    return MomentOfDifferences(StatisticId::kMean, std::array{first, second});
  });
}

/// The sample standard deviation of the differences. One complete pair: #DIV/0!; none: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelPairStdDev(const XLOPER12* first, const XLOPER12* second) {
  return WorksheetFunction("ZavrelPairStdDev", [&] {
    return MomentOfDifferences(StatisticId::kStdDev, std::array{first, second});
  });
}

/// The median of the differences by a percentile method -1..5 (stats/target.h). No complete pair,
/// any other method: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelPairMedian(const XLOPER12* first, const XLOPER12* second,
                                      const XLOPER12* method) {
  return WorksheetFunction("ZavrelPairMedian", [&]() -> XXloper {
    const PairArguments pairs("RRl", std::array{first, second, method});
    if (!pairs.accepted()) return pairs.failure();
    const std::int32_t code =
        pairs.parameters().given(2) ? pairs.parameters().integer(2) : Stats::kFirstPercentileMethod;
    if (code < Stats::kFirstPercentileMethod || code > Stats::kLastPercentileMethod)
      return NoResult();
    BlockArray<double> room = pairs.Room();
    const std::size_t count = PairedDifferences(pairs.x(), pairs.y(), Whole(room));
    if (count == 0) return NoResult();
    const std::span<double> differences = Whole(room).first(count);
    BlockArray<double> scratch = pairs.Room();
    SortAscending(differences, Whole(scratch));
    const auto median = PercentileOfSorted(differences, 0.5, static_cast<std::int16_t>(code));
    return median ? ToExcelValue(*median) : NoResult();
  });
}

/// The mean of the quotients first / second. A second value of 0 anywhere: #DIV/0!; a quotient that
/// overflows: #NUM!; no complete pair: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelPairMeanQuotient(const XLOPER12* first, const XLOPER12* second) {
  return WorksheetFunction("ZavrelPairMeanQuotient", [&] {
    return MeanOfQuotients(Quotient::kPlain, std::array{first, second});
  });
}

/// The same of the quotients' absolute values.
ZAV_EXPORT XLOPER12* ZavrelPairMeanAbsQuotient(const XLOPER12* first, const XLOPER12* second) {
  return WorksheetFunction("ZavrelPairMeanAbsQuotient", [&] {
    return MeanOfQuotients(Quotient::kAbsolute, std::array{first, second});
  });
}

/// How many numbers of the data lie between two bounds.
ZAV_EXPORT XLOPER12* ZavrelCountRange(const XLOPER12* data, const XLOPER12* low,
                                      const XLOPER12* high, const XLOPER12* low_inclusive,
                                      const XLOPER12* high_inclusive) {
  return WorksheetFunction("ZavrelCountRange", [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("Rddbb", MissingDataPolicy::kNumbersOnly,
                      std::array{data, low, high, low_inclusive, high_inclusive});
    if (!parameters.accepted()) return parameters.failure();
    return CountOf(CountInRange(parameters.numbers(0), RangeFrom(parameters, 1)));
  });
}

/// How many complete pairs have their difference first - second between two bounds.
ZAV_EXPORT XLOPER12* ZavrelPairCountRange(const XLOPER12* first, const XLOPER12* second,
                                          const XLOPER12* low, const XLOPER12* high,
                                          const XLOPER12* low_inclusive,
                                          const XLOPER12* high_inclusive) {
  return WorksheetFunction("ZavrelPairCountRange", [&]() -> XXloper {
    const PairArguments pairs("RRddbb",
                              std::array{first, second, low, high, low_inclusive, high_inclusive});
    if (!pairs.accepted()) return pairs.failure();
    return CountOf(CountPairsInRange(pairs.x(), pairs.y(), RangeFrom(pairs.parameters(), 2)));
  });
}

}  // namespace zavrel
