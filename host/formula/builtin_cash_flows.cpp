// Values and rates of return of cash flows.

#include <algorithm>
#include <cmath>

#include "host/formula/builtin_groups.h"
#include "host/formula/compensated_sum.h"
#include "host/formula/data_values.h"
#include "host/formula/number_function.h"
#include "host/formula/root.h"

namespace zavhost {
namespace {

using Flows = std::span<const double>;

/// The value one period before the first flow.
double PresentValueOf(Flows flows, double rate) {
  const double discount = 1.0 / (1.0 + rate);
  double factor = 1.0;
  return SumOf(flows, [&](double flow) { return flow * (factor *= discount); });
}

/// At least one flow in each direction.
bool HasBothSigns(Flows flows) {
  const auto is_paid = [](double flow) { return flow < 0.0; };
  const auto is_received = [](double flow) { return flow > 0.0; };
  return std::any_of(flows.begin(), flows.end(), is_paid) &&
         std::any_of(flows.begin(), flows.end(), is_received);
}

Operand Npv(const BuiltInCall& call) {
  const DataValues flows = NumbersOf({call.arguments.subspan(1), call.context, call.as_array});
  if (flows.error) return Value(*flows.error);
  return ForEachElement(call, {0}, [&](ArgumentReader& read) -> Value {
    const double rate = read.Number(0);
    if (rate == -1.0) return ErrorCode::kDiv0;
    return NumberValue(PresentValueOf(flows.numbers, rate));
  });
}

Operand Irr(const BuiltInCall& call) {
  const DataValues flows = NumbersOfArgument(call, 0);
  if (flows.error) return Value(*flows.error);
  ArgumentReader read(call);
  const double guess = read.IsOmitted(1) ? 0.1 : read.Number(1);
  read.Require(HasBothSigns(flows.numbers));
  if (read.failed()) return read.failure();
  return NumberValue(RateRoot(
      [&](double rate) { return PresentValueOf(flows.numbers, rate) * (1.0 + rate); }, guess));
}

/// Paid flows at one rate, received ones reinvested at another.
Operand Mirr(const BuiltInCall& call) {
  const DataValues flows = NumbersOfArgument(call, 0);
  if (flows.error) return Value(*flows.error);
  ArgumentReader read(call);
  const double finance_rate = read.Number(1);
  const double reinvestment_rate = read.Number(2);
  read.Require(HasBothSigns(flows.numbers), ErrorCode::kDiv0);
  read.Require(finance_rate != -1.0 && reinvestment_rate != -1.0, ErrorCode::kDiv0);
  if (read.failed()) return read.failure();
  std::vector<double> paid = flows.numbers;
  std::vector<double> received = flows.numbers;
  for (double& flow : paid) flow = std::fmin(flow, 0.0);
  for (double& flow : received) flow = std::fmax(flow, 0.0);
  const auto count = static_cast<double>(flows.numbers.size());
  const double final_value =
      PresentValueOf(received, reinvestment_rate) * std::pow(1.0 + reinvestment_rate, count);
  const double invested = PresentValueOf(paid, finance_rate) * (1.0 + finance_rate);
  return NumberValue(std::pow(-final_value / invested, 1.0 / (count - 1.0)) - 1.0);
}

/// Flows on days, none of which is before the first one.
struct DatedFlows {
  std::vector<double> flows;
  std::vector<double> years;  // since the first, of 365 days each

  double PresentValue(double rate) const {
    CompensatedSum sum;
    const double growth = std::log1p(rate);
    for (std::size_t i = 0; i < flows.size(); ++i) sum.Add(flows[i] * std::exp(-growth * years[i]));
    return sum.value();
  }
};

std::vector<double> ReadNumbers(ArgumentReader& read, std::size_t index) {
  const ArrayPtr array = read.Array(index);
  std::vector<double> numbers;
  for (const Value& value : array->values) {
    if (value.error() != nullptr) read.Fail(*value.error());
    read.Require(value.number() != nullptr, ErrorCode::kValue);
    numbers.push_back(value.number() != nullptr ? *value.number() : 0.0);
  }
  return numbers;
}

DatedFlows ReadDatedFlows(ArgumentReader& read, std::size_t flows_index, std::size_t dates_index) {
  constexpr double kDatesEnd = 2958466.0;  // the day after 31 December 9999
  DatedFlows dated{ReadNumbers(read, flows_index), ReadNumbers(read, dates_index)};
  read.Require(dated.flows.size() == dated.years.size());
  const double first = std::trunc(dated.years.front());
  for (double& date : dated.years) {
    date = std::trunc(date);
    read.Require(date >= 0.0 && date < kDatesEnd, ErrorCode::kValue);
    read.Require(date >= first);
    date = (date - first) / 365.0;
  }
  return dated;
}

Operand Xnpv(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double rate = read.Number(0);
  const DatedFlows dated = ReadDatedFlows(read, 1, 2);
  read.Require(rate > -1.0);
  return read.failed() ? read.failure() : NumberValue(dated.PresentValue(rate));
}

Operand Xirr(const BuiltInCall& call) {
  ArgumentReader read(call);
  const DatedFlows dated = ReadDatedFlows(read, 0, 1);
  const double guess = read.IsOmitted(2) ? 0.1 : read.Number(2);
  read.Require(HasBothSigns(dated.flows));
  if (read.failed()) return read.failure();
  return NumberValue(RateRoot([&](double rate) { return dated.PresentValue(rate); }, guess));
}

/// The final value after a different rate in each period.
Operand FvSchedule(const BuiltInCall& call) {
  ArgumentReader read(call);
  double value = read.Number(0);
  const ArrayPtr schedule = read.Array(1, RangeExtent::kUsed);
  for (const Value& rate : schedule->values) {
    if (rate.error() != nullptr) read.Fail(*rate.error());
    read.Require(rate.IsBlank() || rate.number() != nullptr, ErrorCode::kValue);
    if (rate.number() != nullptr) value *= 1.0 + *rate.number();
  }
  return read.failed() ? read.failure() : NumberValue(value);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"NPV", 2, kAnyNumberOfArguments, "r", Npv},
    {u"IRR", 1, 2, "rs", Irr},
    {u"MIRR", 3, 3, "rs", Mirr},
    {u"XNPV", 3, 3, "saa", Xnpv},
    {u"XIRR", 2, 3, "aas", Xirr},
    {u"FVSCHEDULE", 2, 2, "sa", FvSchedule},
};

}  // namespace

std::span<const BuiltInFunction> CashFlowFunctions() { return kFunctions; }

}  // namespace zavhost
