// Statistics of two ranges read as pairs: ZavPairCount ... ZavPairCountRange, and ZavCountRange.
//
// Row i of the first range is paired with row i of the second, as far as both have rows. A pair is
// complete if both of its cells hold a number; other pairs are skipped, and the rows stay aligned.
// Whole columns are read to their last used row. If two ranges were cut down to their used parts in
// ways that may not match (several whole rows used to different columns, whole areas among
// several), the rows cannot be paired and the result is #VALUE!.
#include <limits>
#include <string>

#include "bindings/target_computation.h"
#include "data/latest_map.h"
#include "frame/session.h"
#include "frame/worksheet_function.h"
#include "functions/pairs_read.h"
#include "numbers/numeric_range.h"
#include "platform/export.h"
#include "stats/moment_block.h"
#include "stats/pairs.h"
#include "stats/sort_ascending.h"
#include "stats/target.h"

namespace zavrel {
namespace {

Failure NoPair() { return Failure(ExcelError::kValue); }

/// The moments of the latest differences, by the serials of the two data sets.
struct KeptDifferences {
  LatestMap<std::string, MomentBlock> moments{1024};
  void Clear() noexcept { moments.Clear(); }
};

/// The moments of the paired differences, in the sample form.
MomentBlock MomentsOfDifferences(const Parameters& read) {
  auto& kept = Session::Current()->Kept<KeptDifferences>().moments;
  const std::string key =
      std::to_string(read.data(0).serial()) + ',' + std::to_string(read.data(1).serial());
  if (const MomentBlock* known = kept.Use(key)) return *known;
  RoomForPairs room(read);
  const std::size_t count = PairedDifferences(read.numbers(0), read.numbers(1), room.all());
  const MomentBlock moments = ComputeMoments(room.all().first(count), Form::kSample);
  kept.Put(key, moments);
  return moments;
}

/// A worksheet function that shows a moment of the paired differences.
XLOPER12* MomentOfDifferences(const char* name, StatisticId id, const XLOPER12* first,
                              const XLOPER12* second) noexcept {
  return WorksheetFunction(name, kPairs, {first, second},
                           [&](const Parameters& read) -> CellResult {
                             const MomentBlock moments = MomentsOfDifferences(read);
                             if (moments.presented == 0) return NoPair();
                             return moments[id];
                           });
}

XLOPER12* MeanOfQuotients(const char* name, Quotient quotient, const XLOPER12* first,
                          const XLOPER12* second) noexcept {
  return WorksheetFunction(
      name, kPairs, {first, second}, [&](const Parameters& read) -> CellResult {
        RoomForPairs room(read);
        const PairedQuotientsResult quotients =
            PairedQuotients(read.numbers(0), read.numbers(1), quotient, room.all());
        if (quotients.failure != 0) return quotients.failure;
        if (quotients.count == 0) return NoPair();
        return ComputeMoments(room.all().first(quotients.count), Form::kSample).mean;
      });
}

/// The range in the four arguments from `first` on: low, high, low inclusive, high inclusive. An
/// omitted bound is the farthest finite number, an omitted flag is true.
NumericRange RangeFrom(const Parameters& read, std::size_t first) {
  constexpr double kFarthest = std::numeric_limits<double>::max();
  return {Bound{read.number_or(first, -kFarthest), read.boolean_or(first + 2, true)},
          Bound{read.number_or(first + 1, kFarthest), read.boolean_or(first + 3, true)}};
}

}  // namespace

/// The number of complete pairs.
ZAV_EXPORT XLOPER12* ZavrelPairCount(const XLOPER12* first, const XLOPER12* second) {
  return WorksheetFunction("ZavrelPairCount", kPairs, {first, second}, [](const Parameters& read) {
    return CountPairs(read.numbers(0), read.numbers(1));
  });
}

/// The mean of the differences first - second. No complete pair: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelPairMean(const XLOPER12* first, const XLOPER12* second) {
  return MomentOfDifferences("ZavrelPairMean", StatisticId::kMean, first, second);
}

/// The sample standard deviation of the differences. One complete pair: #DIV/0!; none: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelPairStdDev(const XLOPER12* first, const XLOPER12* second) {
  return MomentOfDifferences("ZavrelPairStdDev", StatisticId::kStdDev, first, second);
}

/// The median of the differences by a percentile method -1..5 (stats/target.h). No complete pair,
/// or any other method: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelPairMedian(const XLOPER12* first, const XLOPER12* second,
                                      const XLOPER12* method) {
  return WorksheetFunction(
      "ZavrelPairMedian", kPairsAndMethod, {first, second, method},
      [](const Parameters& read) -> CellResult {
        const std::int32_t code = read.integer_or(2, Stats::kFirstPercentileMethod);
        if (code < Stats::kFirstPercentileMethod || code > Stats::kLastPercentileMethod)
          return Failure(ExcelError::kValue);
        RoomForPairs room(read);
        const std::size_t count = PairedDifferences(read.numbers(0), read.numbers(1), room.all());
        if (count == 0) return NoPair();
        const std::span<double> differences = room.all().first(count);
        if (code == static_cast<int>(Stats::PercentileMethod::kAutomatic)) {  // looks at all
          SortAscending(differences);
        } else {
          RoomForPairs scratch(read);
          SortMiddle(differences, scratch.all());
        }
        const auto median = PercentileOfSorted(differences, 0.5, static_cast<std::int16_t>(code));
        if (!median) return Failure(ExcelError::kValue);
        return *median;
      });
}

/// The mean of the quotients first / second. A second value of 0 anywhere: #DIV/0!; a quotient that
/// overflows: #NUM!; no complete pair: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelPairMeanQuotient(const XLOPER12* first, const XLOPER12* second) {
  return MeanOfQuotients("ZavrelPairMeanQuotient", Quotient::kPlain, first, second);
}

/// The mean of the quotients' absolute values, with the same errors.
ZAV_EXPORT XLOPER12* ZavrelPairMeanAbsQuotient(const XLOPER12* first, const XLOPER12* second) {
  return MeanOfQuotients("ZavrelPairMeanAbsQuotient", Quotient::kAbsolute, first, second);
}

/// The number of values in the data between two bounds.
ZAV_EXPORT XLOPER12* ZavrelCountRange(const XLOPER12* data, const XLOPER12* low,
                                      const XLOPER12* high, const XLOPER12* low_inclusive,
                                      const XLOPER12* high_inclusive) {
  return WorksheetFunction(
      "ZavrelCountRange", Reading("Rddbb", MissingDataPolicy::kNumbersOnly),
      {data, low, high, low_inclusive, high_inclusive},
      [](const Parameters& read) { return CountInRange(read.numbers(0), RangeFrom(read, 1)); });
}

/// The number of complete pairs whose difference first - second lies between two bounds.
ZAV_EXPORT XLOPER12* ZavrelPairCountRange(const XLOPER12* first, const XLOPER12* second,
                                          const XLOPER12* low, const XLOPER12* high,
                                          const XLOPER12* low_inclusive,
                                          const XLOPER12* high_inclusive) {
  return WorksheetFunction(
      "ZavrelPairCountRange", kPairsAndRange,
      {first, second, low, high, low_inclusive, high_inclusive}, [](const Parameters& read) {
        return CountPairsInRange(read.numbers(0), read.numbers(1), RangeFrom(read, 2));
      });
}

}  // namespace zavrel
