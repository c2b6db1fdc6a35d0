// Distributions fitted to data: ZavDistFit, ZavDistFitTest, ZavDistRank and ZavDistQQ.
//
// Only the numbers of the data are used. Where there is no result, the first cell says why and the
// other cells of its row show #NUM!. A fit is computed once for all formulas over the same cells.
#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <stdexcept>

#include "distribution_functions/argument_lists.h"
#include "distribution_functions/asked_distribution.h"
#include "distribution_functions/kept_results.h"
#include "distribution_functions/result_table.h"
#include "excel/coerce.h"
#include "excel/excel_call.h"
#include "fitting/goodness_of_fit.h"
#include "fitting/rank.h"
#include "frame/session.h"
#include "frame/worksheet_function.h"
#include "numbers/floating_point_scope.h"
#include "platform/export.h"
#include "platform/letter_case.h"

namespace zavrel {
namespace {

using DistLib::Description;
using DistLib::Fit;
using DistLib::FitTest;
using DistLib::FitTestResult;
using DistLib::RankedFit;

constexpr Reading kNameSampleParameters("SRV", MissingDataPolicy::kNumbersOnly);
constexpr Reading kNameSampleTest("SRsllV", MissingDataPolicy::kNumbersOnly);
constexpr Reading kSampleAndCount("Rl", MissingDataPolicy::kNumbersOnly);

/// True once the user has pressed Esc or Excel wants the call to end. Excel keeps the break, so
/// that its calculation ends too.
bool UserCancelled() {
  const ExcelResult answer = CallExcel(xlAbort, {XXloper::Boolean(true)});
  if (WantsReturn(answer)) return true;
  return answer.ok() && answer.value.Is(xltypeBool) && answer.value.record().val.xbool != 0;
}

/// The result of compute(), from memory if the session has it; the reason for people if a sample or
/// a parameter does not allow it; a failure if the user has cancelled it.
template <class Result, class Compute>
OrFailure<typename KeptResults<Result>::Pointer> Computed(const std::string& key,
                                                          const ExcelData& sample,
                                                          Compute compute) {
  auto& kept = Session::Current()->Kept<KeptResults<Result>>();
  if (auto known = kept.Find(key, sample)) return known;
  try {
    const FloatingPointScope environment;
    return kept.Put(key, sample, compute());
  } catch (const DistLib::FitCancelled&) {
    return Failure(ExcelError::kNA);
  } catch (const std::logic_error& reason) {  // FitError, ParameterError, std::invalid_argument
    return kept.Put(key, sample, std::string(reason.what()));
  }
}

std::string KeyOf(std::string_view computation, const Description* description,
                  const ExcelData& sample, const GivenParameters& given) {
  std::string key = fmt::format("{}:{}:{}", computation,
                                description == nullptr ? "" : description->name, sample.key());
  for (const auto& parameter : given)
    key += parameter ? fmt::format(":{:016X}", std::bit_cast<std::uint64_t>(*parameter)) : ":";
  return key;
}

OrFailure<KeptResults<Fit>::Pointer> FitOf(const Description& description, ExcelData& sample,
                                           const GivenParameters& given) {
  return Computed<Fit>(KeyOf("fit", &description, sample, given), sample, [&] {
    if (given.size() > description.parameters.size())
      throw std::invalid_argument(ProblemWith(description, given));
    GivenParameters fixed = given;
    if (!fixed.empty()) fixed.resize(description.parameters.size());
    return DistLib::FitDistribution(description, sample.Numbers(MissingDataPolicy::kNumbersOnly),
                                    fixed, &UserCancelled);
  });
}

/// The result that `show` makes, or the reason why there is none in a row of `columns` cells.
template <class Result, class Show>
CellResult Shown(const OrFailure<typename KeptResults<Result>::Pointer>& computed,
                 std::size_t columns, Show show) {
  if (!computed.ok()) return computed.failure();
  if (const std::string* reason = std::get_if<std::string>(&**computed))
    return ReasonRow(*reason, columns);
  return show(std::get<Result>(**computed));
}

XXloper FitTable(const Description& description, const Fit& fit) {
  constexpr std::size_t kColumns = 3;
  ResultTable table(kColumns);
  for (std::size_t i = 0; i < description.parameters.size(); ++i)
    table.Add(description.parameters[i].name, {fit.parameters[i], fit.standard_errors[i]});
  table.Add("log-likelihood", {fit.log_likelihood});
  table.Add("AIC", {fit.aic});
  table.Add("BIC", {fit.bic});
  table.Add("count", {static_cast<double>(fit.count)});
  return std::move(table).Finish();
}

struct NamedTest {
  std::u16string_view name;
  FitTest test;
};
constexpr NamedTest kTests[] = {
    {u"Anderson-Darling", FitTest::kAndersonDarling},     {u"AD", FitTest::kAndersonDarling},
    {u"Kolmogorov-Smirnov", FitTest::kKolmogorovSmirnov}, {u"KS", FitTest::kKolmogorovSmirnov},
    {u"chi-square", FitTest::kPearsonChiSquare},
};

/// Anderson-Darling if no name is given, chi-square for a discrete distribution.
OrFailure<FitTest> TestNamed(const Parameters& read, std::size_t position,
                             const Description& description) {
  if (!read.given(position))
    return description.kind == DistLib::Kind::kContinuous ? FitTest::kAndersonDarling
                                                          : FitTest::kPearsonChiSquare;
  for (const NamedTest& named : kTests) {
    if (EqualIgnoringCase(named.name, read.text(position))) return named.test;
  }
  return Failure(ExcelError::kValue);
}

/// What makes the p-value of a fitted distribution.
struct Bootstrap {
  std::int32_t replicates;
  std::uint32_t seed;
};

FitTestResult RunTest(FitTest test, const Description& description, ExcelData& sample,
                      const GivenParameters& given, const Bootstrap& bootstrap) {
  const std::span<const double> numbers = sample.Numbers(MissingDataPolicy::kNumbersOnly);
  if (!given.empty()) {
    const std::string problem = ProblemWith(description, given);
    if (!problem.empty()) throw std::invalid_argument(problem);
    std::vector<double> parameters(given.size());
    for (std::size_t i = 0; i < given.size(); ++i)
      parameters[i] = given[i] ? *given[i] : *description.parameters[i].by_default;
    return DistLib::TestFit(test, description, parameters, numbers);
  }
  const Fit fit = DistLib::FitDistribution(description, numbers, {}, &UserCancelled);
  return DistLib::TestFitted(test, description, fit, numbers, bootstrap.seed, bootstrap.replicates,
                             {}, &UserCancelled);
}

XXloper TestTable(const FitTestResult& result) {
  ResultTable table(2);
  table.Add("statistic", {result.statistic});
  table.Add("p-value", {result.p_value});
  if (!std::isnan(result.degrees_of_freedom))
    table.Add("degrees of freedom", {result.degrees_of_freedom});
  return std::move(table).Finish();
}

XXloper RankTable(const std::vector<RankedFit>& ranked, std::size_t most) {
  constexpr std::size_t kColumns = 5;
  ResultTable table(kColumns);
  for (const RankedFit& entry : ranked) {
    if (table.rows() == most) break;
    if (!entry.fit) break;  // those without a fit are the last
    const Fit& fit = *entry.fit;
    table.Add(entry.description->name,
              {fit.aic, fit.bic, fit.log_likelihood, static_cast<double>(fit.free_parameters)});
  }
  if (table.rows() == 0) return ReasonRow("no distribution has a fit", kColumns);
  return std::move(table).Finish();
}

/// Quantile i of n is that of the probability (i - 0.5) / n, beside the i-th smallest value.
XXloper QuantileTable(const DistLib::PdfDist& distribution, std::span<const double> sorted) {
  XXloperArray table(static_cast<std::int32_t>(sorted.size()), 2);
  const auto count = static_cast<double>(sorted.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    const double p = (static_cast<double>(i) + 0.5) / count;
    table.SetNumber(2 * i, p <= 0.5 ? distribution.Quantile(p) : distribution.UpperQuantile(1 - p));
    table.SetNumber(2 * i + 1, sorted[i]);
  }
  return std::move(table).Finish();
}

/// A function of a description, a sample and parameters.
template <class Body>
XLOPER12* OfSample(const char* name, const Reading& reading, Arguments arguments,
                   std::size_t parameters, const Body& body) noexcept {
  return WorksheetFunction(name, reading, arguments, [&](const Parameters& read) -> CellResult {
    const auto description = DistributionNamed(read.text(0));
    if (!description.ok()) return description.failure();
    const auto given = ParametersIn(read.data(parameters));
    if (!given.ok()) return given.failure();
    return body(**description, read, *given);
  });
}

}  // namespace

/// The parameters of greatest likelihood: a row for each with its name, estimate and standard
/// error, then log-likelihood, AIC, BIC and the number of values. Parameters that are given are
/// fixed.
ZAV_EXPORT XLOPER12* ZavrelDistFit(ZAV_NAME_ARGUMENT_AND_PARAMETERS) {
  return OfSample("ZavrelDistFit", kNameSampleParameters, ZAV_NAME_ARGUMENT_AND_PARAMETERS_LIST, 2,
                  [](const Description& description, const Parameters& read,
                     const GivenParameters& given) -> CellResult {
                    return Shown<Fit>(FitOf(description, read.data(1), given), 3,
                                      [&](const Fit& fit) { return FitTable(description, fit); });
                  });
}

/// Statistic and p-value of a test of fit. With parameters the distribution is known; without, it
/// is fitted and the p-value comes from a parametric bootstrap of that many replicates.
ZAV_EXPORT XLOPER12* ZavrelDistFitTest(ZAV_NAME_ARGUMENT_AND_PARAMETERS, const XLOPER12* a11,
                                       const XLOPER12* a12, const XLOPER12* a13) {
  const std::array<const XLOPER12*, 13> arguments = {a1, a2, a3,  a4,  a5,  a6, a7,
                                                     a8, a9, a10, a11, a12, a13};
  return OfSample("ZavrelDistFitTest", kNameSampleTest, arguments, 5,
                  [](const Description& description, const Parameters& read,
                     const GivenParameters& given) -> CellResult {
                    const auto test = TestNamed(read, 2, description);
                    if (!test.ok()) return test.failure();
                    constexpr std::int32_t kReplicates = 199, kMostReplicates = 100'000;
                    const Bootstrap bootstrap{read.integer_or(3, kReplicates),
                                              static_cast<std::uint32_t>(read.integer_or(4, 1))};
                    if (bootstrap.replicates < 1 || bootstrap.replicates > kMostReplicates)
                      return Failure(ExcelError::kNum);
                    ExcelData& sample = read.data(1);
                    const std::string computation =
                        fmt::format("test {} {} {}", static_cast<int>(*test), bootstrap.replicates,
                                    bootstrap.seed);
                    return Shown<FitTestResult>(
                        Computed<FitTestResult>(
                            KeyOf(computation, &description, sample, given), sample,
                            [&] { return RunTest(*test, description, sample, given, bootstrap); }),
                        2, TestTable);
                  });
}

/// The distributions that fit best: name, AIC, BIC, log-likelihood and number of parameters, the
/// least AIC first.
ZAV_EXPORT XLOPER12* ZavrelDistRank(const XLOPER12* data, const XLOPER12* most) {
  return WorksheetFunction(
      "ZavrelDistRank", kSampleAndCount, {data, most}, [](const Parameters& read) -> CellResult {
        const std::int32_t rows = read.integer_or(1, kExcelRows);
        if (rows < 1) return Failure(ExcelError::kNum);
        ExcelData& sample = read.data(0);
        return Shown<std::vector<RankedFit>>(
            Computed<std::vector<RankedFit>>(KeyOf("rank", nullptr, sample, {}), sample,
                                             [&] {
                                               return DistLib::RankFits(
                                                   sample.Numbers(MissingDataPolicy::kNumbersOnly),
                                                   &UserCancelled);
                                             }),
            5, [&](const std::vector<RankedFit>& ranked) {
              return RankTable(ranked, static_cast<std::size_t>(rows));
            });
      });
}

/// The points of a Q-Q plot: in each row the distribution's quantile and the value of the data.
/// Without parameters the distribution is fitted.
ZAV_EXPORT XLOPER12* ZavrelDistQQ(ZAV_NAME_ARGUMENT_AND_PARAMETERS) {
  return OfSample("ZavrelDistQQ", kNameSampleParameters, ZAV_NAME_ARGUMENT_AND_PARAMETERS_LIST, 2,
                  [](const Description& description, const Parameters& read,
                     const GivenParameters& given) -> CellResult {
                    ExcelData& sample = read.data(1);
                    const std::span<const double> sorted = sample.SortedNumbers();
                    if (sorted.empty() || sorted.size() > kExcelRows)
                      return Failure(ExcelError::kValue);
                    const auto points = [&](const GivenParameters& parameters) -> CellResult {
                      const FloatingPointScope environment;
                      const auto distribution = MakeAsked(description, parameters);
                      if (!distribution.ok()) return distribution.failure();
                      return QuantileTable(**distribution, sorted);
                    };
                    if (!given.empty()) return points(given);
                    return Shown<Fit>(FitOf(description, sample, {}), 2, [&](const Fit& fit) {
                      return points({fit.parameters.begin(), fit.parameters.end()});
                    });
                  });
}

}  // namespace zavrel
