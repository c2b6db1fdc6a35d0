// Nonparametric tests: Mann-Whitney (ZavMW...), Wilcoxon signed-rank for one sample and for pairs
// (ZavWSR..., ZavWSRPair...) and Kruskal-Wallis (ZavKW...).
//
// Two companion libraries compute them, as contracts/nonparametric_tests.h and contracts/eutility.h
// describe. The functions are registered only if the first library is present. Without the second
// one, and for arguments that a library refuses, a function is #VALUE!. Only numbers are used.
//
// Several functions over the same samples each show one number from the same ranks, so the ranks'
// sums are kept until a cell changes.
#include <fmt/format.h>

#include <bit>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "bindings/nonparametric_library.h"
#include "data/data_argument.h"
#include "frame/session.h"
#include "frame/worksheet_function.h"
#include "functions/pairs_read.h"
#include "functions/rank_sum_records.h"
#include "platform/export.h"
#include "stats/pairs.h"

namespace zavrel {
namespace {

constexpr Reading kTwoSamples("RR", MissingDataPolicy::kNumbersOnly);
constexpr Reading kSampleAndMedian("RD", MissingDataPolicy::kNumbersOnly);

using Field = double RankSumRecord::*;

CellResult PValueOrNone(double p_value) {
  if (std::isnan(p_value)) return Failure(ExcelError::kValue);
  return XXloper::Number(p_value);
}

/// A worksheet function that computes its result with the companions' functions from the arguments
/// read.
template <class Compute>
XLOPER12* FromCompanions(const char* name, const Reading& reading,
                         std::initializer_list<const XLOPER12*> arguments,
                         Compute compute) noexcept {
  return WorksheetFunction(name, reading, arguments, [&](const Parameters& read) -> CellResult {
    const NonparametricFunctions* const functions = NonparametricCompanions();
    if (functions == nullptr) return Failure(ExcelError::kValue);
    return compute(*functions, read);
  });
}

bool AreSizes(const Parameters& read) { return read.integer(0) >= 1 && read.integer(1) >= 1; }

/// A field of the record with this key and these data sets. If the record is not known yet,
/// compute(functions, sums) fills it; #VALUE! if that returns a code other than NPT_OK.
template <class Compute>
CellResult FieldOf(Field field, const std::string& key, const RankSumRecords::Serials& serials,
                   Compute compute) {
  auto& records = Session::Current()->Kept<RankSumRecords>();
  if (const RankSumRecord* known = records.Find(key, serials)) return known->*field;
  const NonparametricFunctions* const functions = NonparametricCompanions();
  NptRankSums sums{};
  if (functions == nullptr || compute(*functions, sums) != NPT_OK)
    return Failure(ExcelError::kValue);
  const RankSumRecord record{sums.ties, sums.tie_correction_term, sums.rank_sum_1, sums.rank_sum_2};
  records.Put(key, serials, record);
  return record.*field;
}

std::int32_t CountOf(std::span<const double> values) {
  return static_cast<std::int32_t>(values.size());
}

XLOPER12* MannWhitney(const char* name, Field field, const XLOPER12* sample_1,
                      const XLOPER12* sample_2) noexcept {
  return WorksheetFunction(name, kTwoSamples, {sample_1, sample_2}, [&](const Parameters& read) {
    const ExcelData& data_1 = read.data(0);
    const ExcelData& data_2 = read.data(1);
    return FieldOf(field, fmt::format("MW:{}_{}", data_1.key(), data_2.key()),
                   {data_1.serial(), data_2.serial()}, [&](const auto& functions, auto& sums) {
                     const auto x = read.numbers(0), y = read.numbers(1);
                     return functions.mw_ties_and_sums(x.data(), CountOf(x), y.data(), CountOf(y),
                                                       &sums);
                   });
  });
}

std::string MedianText(double median) {
  return fmt::format("hypothesizedMedian={:016X}", std::bit_cast<std::uint64_t>(median));
}

XLOPER12* SignedRank(const char* name, Field field, const XLOPER12* sample,
                     const XLOPER12* median) noexcept {
  return WorksheetFunction(name, kSampleAndMedian, {sample, median}, [&](const Parameters& read) {
    const ExcelData& data = read.data(0);
    const double hypothesized = read.number(1);
    return FieldOf(field, fmt::format("WSR:{}_{}", data.key(), MedianText(hypothesized)),
                   {data.serial(), 0}, [&](const auto& functions, auto& sums) {
                     const auto x = read.numbers(0);
                     return functions.wsr_ties_and_sums(x.data(), CountOf(x), hypothesized, &sums);
                   });
  });
}

XLOPER12* SignedRankOfPairs(const char* name, Field field, const XLOPER12* sample_1,
                            const XLOPER12* sample_2, const XLOPER12* median) noexcept {
  return WorksheetFunction(
      name, kPairsAndNumber, {sample_1, sample_2, median}, [&](const Parameters& read) {
        const ExcelData& data_1 = read.data(0);
        const ExcelData& data_2 = read.data(1);
        const double hypothesized = read.number(2);
        return FieldOf(
            field,
            fmt::format("WSR:{}_{}_{}", data_1.key(), data_2.key(), MedianText(hypothesized)),
            {data_1.serial(), data_2.serial()}, [&](const auto& functions, auto& sums) {
              RoomForPairs room(read);
              const std::size_t count =
                  PairedDifferences(read.numbers(0), read.numbers(1), room.all());
              return functions.wsr_ties_and_sums(
                  room.all().data(), static_cast<std::int32_t>(count), hypothesized, &sums);
            });
      });
}

CellResult FromUtility(std::int16_t code, double value) {
  switch (code) {
    case EUTILITY_OK:
      return value;
    case EUTILITY_NO_SPREAD:
      return Failure(ExcelError::kDiv0);
    case EUTILITY_TOO_MANY:
      return Failure(ExcelError::kNum);
    default:
      return Failure(ExcelError::kValue);
  }
}

/// A function of a whole number and of groups, each a further argument.
template <class Compute>
XLOPER12* KruskalWallis(const char* name, Arguments arguments, Compute compute) noexcept {
  constexpr std::string_view kNumberAndGroups = "LRRRRRRRRRRRRRRRRRRRRRRRRRRRRR";
  while (arguments.size() > 1 && IsOmitted(arguments.back()))
    arguments = arguments.first(arguments.size() - 1);
  const Reading reading(kNumberAndGroups.substr(0, arguments.size()),
                        MissingDataPolicy::kNumbersOnly);
  return WorksheetFunction(name, reading, arguments, [&](const Parameters& read) -> CellResult {
    std::vector<const double*> values;
    std::vector<std::int32_t> counts;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
      values.push_back(read.numbers(i).data());
      counts.push_back(CountOf(read.numbers(i)));
    }
    const NonparametricFunctions* const functions = NonparametricCompanions();
    if (functions == nullptr) return Failure(ExcelError::kValue);
    double result = 0;
    const std::int16_t code =
        compute(*functions, read.integer(0), static_cast<std::int32_t>(counts.size()),
                values.data(), counts.data(), &result);
    return FromUtility(code, result);
  });
}

/// The sizes of groups in the numbers of a range; empty if a number is not a size.
std::vector<std::int32_t> SizesIn(std::span<const double> numbers) {
  std::vector<std::int32_t> sizes;
  for (const double number : numbers) {
    if (!(number >= 1 && number <= kMostCells) || number != std::floor(number)) return {};
    sizes.push_back(static_cast<std::int32_t>(number));
  }
  return sizes;
}

}  // namespace

/// The largest number of differences for which the p-value is exact.
ZAV_EXPORT XLOPER12* ZavrelWSRExactPValMaxSample() {
  return FromCompanions("ZavrelWSRExactPValMaxSample", Reading(""), {},
                        [](const auto& functions, const Parameters&) {
                          return XXloper::Number(functions.wsr_exact_largest());
                        });
}

/// The p-value of the rank sum of the positive differences among n that are not 0, for the
/// alternative 0 (two-sided), -1 (less) or 1 (greater).
ZAV_EXPORT XLOPER12* ZavrelWSRpValue(const XLOPER12* n, const XLOPER12* statistic,
                                     const XLOPER12* alternative) {
  return FromCompanions("ZavrelWSRpValue", Reading("LDL"), {n, statistic, alternative},
                        [](const auto& functions, const Parameters& read) {
                          return PValueOrNone(functions.wsr_p_value(read.integer(0), read.number(1),
                                                                    read.integer(2)));
                        });
}

// One sample against a hypothesized median: the number of groups of equal absolute differences, the
// correction for them, the rank sums of the negative and of the positive differences.

ZAV_EXPORT XLOPER12* ZavrelWSRTies(const XLOPER12* sample, const XLOPER12* median) {
  return SignedRank("ZavrelWSRTies", &RankSumRecord::ties, sample, median);
}
ZAV_EXPORT XLOPER12* ZavrelWSRTieCorrectionTerm(const XLOPER12* sample, const XLOPER12* median) {
  return SignedRank("ZavrelWSRTieCorrectionTerm", &RankSumRecord::tie_correction_term, sample,
                    median);
}
ZAV_EXPORT XLOPER12* ZavrelWSRNegative(const XLOPER12* sample, const XLOPER12* median) {
  return SignedRank("ZavrelWSRNegative", &RankSumRecord::rank_sum_1, sample, median);
}
ZAV_EXPORT XLOPER12* ZavrelWSRPositive(const XLOPER12* sample, const XLOPER12* median) {
  return SignedRank("ZavrelWSRPositive", &RankSumRecord::rank_sum_2, sample, median);
}

// The same for the differences, sample 1 minus sample 2, of the complete pairs.

ZAV_EXPORT XLOPER12* ZavrelWSRPairTies(const XLOPER12* sample_1, const XLOPER12* sample_2,
                                       const XLOPER12* median) {
  return SignedRankOfPairs("ZavrelWSRPairTies", &RankSumRecord::ties, sample_1, sample_2, median);
}
ZAV_EXPORT XLOPER12* ZavrelWSRPairTieCorrectionTerm(const XLOPER12* sample_1,
                                                    const XLOPER12* sample_2,
                                                    const XLOPER12* median) {
  return SignedRankOfPairs("ZavrelWSRPairTieCorrectionTerm", &RankSumRecord::tie_correction_term,
                           sample_1, sample_2, median);
}
ZAV_EXPORT XLOPER12* ZavrelWSRPairNegative(const XLOPER12* sample_1, const XLOPER12* sample_2,
                                           const XLOPER12* median) {
  return SignedRankOfPairs("ZavrelWSRPairNegative", &RankSumRecord::rank_sum_1, sample_1, sample_2,
                           median);
}
ZAV_EXPORT XLOPER12* ZavrelWSRPairPositive(const XLOPER12* sample_1, const XLOPER12* sample_2,
                                           const XLOPER12* median) {
  return SignedRankOfPairs("ZavrelWSRPairPositive", &RankSumRecord::rank_sum_2, sample_1, sample_2,
                           median);
}

/// Whether the p-value for samples of these sizes, 1 or more, comes from the normal approximation.
ZAV_EXPORT XLOPER12* ZavrelMWUsingNormalApproximation(const XLOPER12* size_1,
                                                      const XLOPER12* size_2) {
  return FromCompanions("ZavrelMWUsingNormalApproximation", Reading("LL"), {size_1, size_2},
                        [](const auto& functions, const Parameters& read) -> CellResult {
                          if (!AreSizes(read)) return Failure(ExcelError::kValue);
                          return XXloper::Boolean(functions.mw_using_normal_approximation(
                                                      read.integer(0), read.integer(1)) != 0);
                        });
}

/// The p-value of the rank sum of sample 1, for the alternative 0 (two-sided), -1 (sample 1 tends
/// to smaller values) or 1 (to greater ones).
ZAV_EXPORT XLOPER12* ZavrelMWpValue(const XLOPER12* size_1, const XLOPER12* size_2,
                                    const XLOPER12* rank_sum, const XLOPER12* alternative) {
  return FromCompanions("ZavrelMWpValue", Reading("LLDL"), {size_1, size_2, rank_sum, alternative},
                        [](const auto& functions, const Parameters& read) -> CellResult {
                          if (!AreSizes(read)) return Failure(ExcelError::kValue);
                          return PValueOrNone(functions.mw_p_value(
                              read.integer(0), read.integer(1), read.number(2), read.integer(3)));
                        });
}

// Two samples ranked together: the number of groups of equal values, the correction for them, the
// rank sums of the samples.

ZAV_EXPORT XLOPER12* ZavrelMWTies(const XLOPER12* sample_1, const XLOPER12* sample_2) {
  return MannWhitney("ZavrelMWTies", &RankSumRecord::ties, sample_1, sample_2);
}
ZAV_EXPORT XLOPER12* ZavrelMWTieCorrectionTerm(const XLOPER12* sample_1, const XLOPER12* sample_2) {
  return MannWhitney("ZavrelMWTieCorrectionTerm", &RankSumRecord::tie_correction_term, sample_1,
                     sample_2);
}
ZAV_EXPORT XLOPER12* ZavrelMWRankSum1(const XLOPER12* sample_1, const XLOPER12* sample_2) {
  return MannWhitney("ZavrelMWRankSum1", &RankSumRecord::rank_sum_1, sample_1, sample_2);
}
ZAV_EXPORT XLOPER12* ZavrelMWRankSum2(const XLOPER12* sample_1, const XLOPER12* sample_2) {
  return MannWhitney("ZavrelMWRankSum2", &RankSumRecord::rank_sum_2, sample_1, sample_2);
}

/// An item of the test of two or more groups: 0 the statistic corrected for ties, 1 uncorrected, 2
/// its degrees of freedom, 3 the number of values, 4 the number of groups of equal values, 5 the
/// divisor that corrects for them, 100 + i the rank sum of group i. All values equal: item 0 is
/// #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelKWData(ZAV_THIRTY_PARAMETERS) {
  const std::array arguments = ZAV_THIRTY_ARGUMENTS;
  return KruskalWallis("ZavrelKWData", arguments, [](const auto& functions, auto... given) {
    return functions.kw_data(given...);
  });
}

/// The p-value of the test by a method: 0 exact if there are few enough arrangements, otherwise
/// chi-square; 1 chi-square; 2 exact, #NUM! if there are too many. All values equal: #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelKWpValue(ZAV_THIRTY_PARAMETERS) {
  const std::array arguments = ZAV_THIRTY_ARGUMENTS;
  return KruskalWallis("ZavrelKWpValue", arguments, [](const auto& functions, auto... given) {
    return functions.kw_p_value(given...);
  });
}

/// The method that ZavKWpValue chooses under method 0 for groups of these sizes (the numbers of a
/// range or array): 1 chi-square, 2 exact.
ZAV_EXPORT XLOPER12* ZavrelKWpValueComputationMethod(const XLOPER12* sizes) {
  return FromCompanions("ZavrelKWpValueComputationMethod",
                        Reading("R", MissingDataPolicy::kNumbersOnly), {sizes},
                        [](const auto& functions, const Parameters& read) -> CellResult {
                          const std::vector<std::int32_t> counts = SizesIn(read.numbers(0));
                          const std::int16_t method = functions.kw_p_value_computation_method(
                              static_cast<std::int32_t>(counts.size()), counts.data());
                          if (method == 0) return Failure(ExcelError::kValue);
                          return XXloper::Number(method);
                        });
}

}  // namespace zavrel
