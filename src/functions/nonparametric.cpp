// Nonparametric tests: those of Mann and Whitney (ZavMW...), of Wilcoxon for one sample and for
// pairs (ZavWSR..., ZavWSRPair...) and of Kruskal and Wallis (ZavKW...).
//
// Two companion libraries compute them; contracts/nonparametric_tests.h and
// contracts/eutility.h say what. The functions are registered only where the first of
// them is. Without the other, and with arguments that a library refuses, each is #VALUE!. Only
// numbers are used.
//
// The functions over samples each show one number of the same ranks, so these are kept until a cell
// changes.
#include <array>
#include <bit>
#include <cmath>
#include <string>
#include <vector>

#include "bindings/nonparametric_library.h"
#include "data/data_argument.h"
#include "data/get_parameters.h"
#include "diagnostics/log_line.h"
#include "excel/double_value.h"
#include "frame/session.h"
#include "frame/worksheet_function.h"
#include "functions/pair_arguments.h"
#include "functions/rank_sum_records.h"
#include "platform/export.h"

namespace zavrel {
namespace {

using Arguments = std::span<const XLOPER12* const>;
using Field = double RankSumRecord::*;

XXloper NoValue() { return XXloper::Error(ExcelError::kValue); }

XXloper PValueOrNone(double p_value) {
  return std::isnan(p_value) ? NoValue() : XXloper::Number(p_value);
}

/// A body over the companions' functions and arguments without data.
template <class Compute>
XXloper FromNumbers(std::string_view kinds, Arguments arguments, Compute compute) {
  const Parameters parameters = GetParameters(kinds, MissingDataPolicy::kNumbersOnly, arguments);
  if (!parameters.accepted()) return parameters.failure();
  const NonparametricFunctions* const functions = NonparametricCompanions();
  return functions != nullptr ? compute(*functions, parameters) : NoValue();
}

bool AreSizes(const Parameters& given) { return given.integer(0) >= 1 && given.integer(1) >= 1; }

/// A field of the record with this key and these data sets, which `compute` fills for (functions,
/// sums) where it is not known yet; no value when it returns another code than NPT_OK.
template <class Compute>
XXloper FieldOf(Field field, const std::string& key, const RankSumRecords::Serials& serials,
                Compute compute) {
  RankSumRecords& records = Session::Current()->Kept<RankSumRecords>();
  if (const RankSumRecord* known = records.Find(key, serials)) return ToExcelValue(known->*field);
  const NonparametricFunctions* const functions = NonparametricCompanions();
  NptRankSums sums{};
  if (functions == nullptr || compute(*functions, sums) != NPT_OK) return NoValue();
  const RankSumRecord record{sums.ties, sums.tie_correction_term, sums.rank_sum_1, sums.rank_sum_2};
  records.Put(key, serials, record);
  return ToExcelValue(record.*field);
}

std::int32_t CountOf(std::span<const double> values) {
  return static_cast<std::int32_t>(values.size());
}

XLOPER12* MannWhitney(const char* name, Field field, const XLOPER12* sample_1,
                      const XLOPER12* sample_2) noexcept {
  return WorksheetFunction(name, [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("RR", MissingDataPolicy::kNumbersOnly, std::array{sample_1, sample_2});
    if (!parameters.accepted()) return parameters.failure();
    const ExcelData& data_1 = parameters.data(0);
    const ExcelData& data_2 = parameters.data(1);
    return FieldOf(field, fmt::format("MW:{}_{}", data_1.key(), data_2.key()),
                   {data_1.serial(), data_2.serial()}, [&](const auto& functions, auto& sums) {
                     const auto x = parameters.numbers(0), y = parameters.numbers(1);
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
  return WorksheetFunction(name, [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("RD", MissingDataPolicy::kNumbersOnly, std::array{sample, median});
    if (!parameters.accepted()) return parameters.failure();
    const ExcelData& data = parameters.data(0);
    const double hypothesized = parameters.number(1);
    return FieldOf(field, fmt::format("WSR:{}_{}", data.key(), MedianText(hypothesized)),
                   {data.serial(), 0}, [&](const auto& functions, auto& sums) {
                     const auto x = parameters.numbers(0);
                     return functions.wsr_ties_and_sums(x.data(), CountOf(x), hypothesized, &sums);
                   });
  });
}

XLOPER12* SignedRankOfPairs(const char* name, Field field, const XLOPER12* sample_1,
                            const XLOPER12* sample_2, const XLOPER12* median) noexcept {
  return WorksheetFunction(name, [&]() -> XXloper {
    const PairArguments pairs("RRD", std::array{sample_1, sample_2, median});
    if (!pairs.accepted()) return pairs.failure();
    const ExcelData& data_1 = pairs.parameters().data(0);
    const ExcelData& data_2 = pairs.parameters().data(1);
    const double hypothesized = pairs.parameters().number(2);
    return FieldOf(
        field, fmt::format("WSR:{}_{}_{}", data_1.key(), data_2.key(), MedianText(hypothesized)),
        {data_1.serial(), data_2.serial()}, [&](const auto& functions, auto& sums) {
          BlockArray<double> room = pairs.Room();
          const std::size_t count = PairedDifferences(pairs.x(), pairs.y(), Whole(room));
          return functions.wsr_ties_and_sums(room.data(), static_cast<std::int32_t>(count),
                                             hypothesized, &sums);
        });
  });
}

XXloper FromUtility(std::int16_t code, double value) {
  switch (code) {
    case EUTILITY_OK:
      return ToExcelValue(value);
    case EUTILITY_NO_SPREAD:
      return XXloper::Error(ExcelError::kDiv0);
    case EUTILITY_TOO_MANY:
      return XXloper::Error(ExcelError::kNum);
    default:
      return NoValue();
  }
}

/// The whole number in front, and the groups that follow it, each an argument.
template <class Compute>
XLOPER12* KruskalWallis(const char* name, Arguments arguments, Compute compute) noexcept {
  return WorksheetFunction(name, [&]() -> XXloper {
    while (arguments.size() > 1 &&
           (arguments.back() == nullptr || TypeOf(*arguments.back()) == xltypeMissing))
      arguments = arguments.first(arguments.size() - 1);
    const std::string kinds = "L" + std::string(arguments.size() - 1, 'R');
    const Parameters parameters = GetParameters(kinds, MissingDataPolicy::kNumbersOnly, arguments);
    if (!parameters.accepted()) return parameters.failure();
    std::vector<const double*> values;
    std::vector<std::int32_t> counts;
    for (std::size_t i = 1; i < kinds.size(); ++i) {
      values.push_back(parameters.numbers(i).data());
      counts.push_back(CountOf(parameters.numbers(i)));
    }
    const NonparametricFunctions* const functions = NonparametricCompanions();
    if (functions == nullptr) return NoValue();
    double result = 0;
    const std::int16_t code =
        compute(*functions, parameters.integer(0), static_cast<std::int32_t>(counts.size()),
                values.data(), counts.data(), &result);
    return FromUtility(code, result);
  });
}

/// The sizes of groups, as the numbers of a range; nothing when one is no size.
std::vector<std::int32_t> SizesIn(std::span<const double> numbers) {
  std::vector<std::int32_t> sizes;
  for (const double number : numbers) {
    if (!(number >= 1 && number <= kMostCells) || number != std::floor(number)) return {};
    sizes.push_back(static_cast<std::int32_t>(number));
  }
  return sizes;
}

}  // namespace

/// The largest number of differences whose p-value is exact.
ZAV_EXPORT XLOPER12* ZavrelWSRExactPValMaxSample() {
  return WorksheetFunction("ZavrelWSRExactPValMaxSample", [] {
    const NonparametricFunctions* const functions = NonparametricCompanions();
    return functions != nullptr ? XXloper::Number(functions->wsr_exact_largest()) : NoValue();
  });
}

/// The p-value of a rank sum of the positive among n differences other than 0, by an alternative 0
/// (two-sided), -1 (less) or 1 (greater).
ZAV_EXPORT XLOPER12* ZavrelWSRpValue(const XLOPER12* n, const XLOPER12* statistic,
                                     const XLOPER12* alternative) {
  return WorksheetFunction("ZavrelWSRpValue", [&] {
    return FromNumbers("LDL", std::array{n, statistic, alternative},
                       [](const auto& functions, const Parameters& given) {
                         return PValueOrNone(functions.wsr_p_value(
                             given.integer(0), given.number(1), given.integer(2)));
                       });
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

// The same of the differences, sample 1 less sample 2, of the complete pairs.

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
  return WorksheetFunction("ZavrelMWUsingNormalApproximation", [&] {
    return FromNumbers(
        "LL", std::array{size_1, size_2}, [](const auto& functions, const Parameters& given) {
          if (!AreSizes(given)) return NoValue();
          return XXloper::Boolean(
              functions.mw_using_normal_approximation(given.integer(0), given.integer(1)) != 0);
        });
  });
}

/// The p-value of the rank sum of sample 1, by an alternative 0 (two-sided), -1 (sample 1 tends to
/// smaller values) or 1 (to greater ones).
ZAV_EXPORT XLOPER12* ZavrelMWpValue(const XLOPER12* size_1, const XLOPER12* size_2,
                                    const XLOPER12* rank_sum, const XLOPER12* alternative) {
  return WorksheetFunction("ZavrelMWpValue", [&] {
    return FromNumbers(
        "LLDL", std::array{size_1, size_2, rank_sum, alternative},
        [](const auto& functions, const Parameters& given) {
          if (!AreSizes(given)) return NoValue();
          return PValueOrNone(functions.mw_p_value(given.integer(0), given.integer(1),
                                                   given.number(2), given.integer(3)));
        });
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
/// its degrees of freedom, 3 the number of values, 4 of groups of equal values, 5 the divisor that
/// corrects for them, 100 + i the rank sum of group i. All values equal: item 0 is #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelKWData(ZAV_THIRTY_PARAMETERS) {
  const std::array arguments = ZAV_THIRTY_ARGUMENTS;
  return KruskalWallis("ZavrelKWData", arguments, [](const auto& functions, auto... given) {
    return functions.kw_data(given...);
  });
}

/// The p-value of the test by a method: 0 exact where there are few enough arrangements, else by
/// chi-square; 1 chi-square; 2 exact, #NUM! where there are too many. All values equal: #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelKWpValue(ZAV_THIRTY_PARAMETERS) {
  const std::array arguments = ZAV_THIRTY_ARGUMENTS;
  return KruskalWallis("ZavrelKWpValue", arguments, [](const auto& functions, auto... given) {
    return functions.kw_p_value(given...);
  });
}

/// The method that ZavKWpValue's method 0 takes for groups of these sizes, the numbers of a range
/// or array: 1 chi-square, 2 exact.
ZAV_EXPORT XLOPER12* ZavrelKWpValueComputationMethod(const XLOPER12* sizes) {
  return WorksheetFunction("ZavrelKWpValueComputationMethod", [&] {
    return FromNumbers("R", std::array{sizes}, [](const auto& functions, const Parameters& given) {
      const std::vector<std::int32_t> counts = SizesIn(given.numbers(0));
      const std::int16_t method = functions.kw_p_value_computation_method(
          static_cast<std::int32_t>(counts.size()), counts.data());
      return method != 0 ? XXloper::Number(method) : NoValue();
    });
  });
}

}  // namespace zavrel
