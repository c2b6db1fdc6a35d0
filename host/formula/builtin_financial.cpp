// Annuities and depreciation.

#include <cmath>

#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"
#include "host/formula/number_function.h"
#include "host/formula/root.h"

namespace zavhost {
namespace {

/// (1 + rate)^periods, and its excess over 1, exact for small rates.
double Growth(double rate, double periods) { return std::pow(1.0 + rate, periods); }
double GrowthExcess(double rate, double periods) {
  return rate > -1.0 ? std::expm1(periods * std::log1p(rate)) : Growth(rate, periods) - 1.0;
}

/// The final value of payments of 1, at the beginning or the end of each period.
double AnnuityFactor(double rate, double periods, bool at_beginning) {
  if (rate == 0.0) return periods;
  return GrowthExcess(rate, periods) / rate * (at_beginning ? 1.0 + rate : 1.0);
}

double FutureValue(double rate, double periods, double payment, double present, bool at_beginning) {
  return -(present * Growth(rate, periods) + payment * AnnuityFactor(rate, periods, at_beginning));
}
double PresentValue(double rate, double periods, double payment, double future, bool at_beginning) {
  return -(future + payment * AnnuityFactor(rate, periods, at_beginning)) / Growth(rate, periods);
}
double Payment(double rate, double periods, double present, double future, bool at_beginning) {
  return -(future + present * Growth(rate, periods)) / AnnuityFactor(rate, periods, at_beginning);
}
Value PaymentOrNum(double rate, double periods, double present, double future, bool at_beginning) {
  if (periods == 0.0) return ErrorCode::kNum;
  return NumberValue(Payment(rate, periods, present, future, at_beginning));
}

double Periods(double rate, double payment, double present, double future, bool at_beginning) {
  if (rate == 0.0) return -(present + future) / payment;
  const double paid = payment * (at_beginning ? 1.0 + rate : 1.0);
  return std::log((paid - future * rate) / (paid + present * rate)) / std::log1p(rate);
}

/// A payment at the beginning of the first period bears no interest. What is owed comes from the
/// principal paid so far, which grows with the rate: over many periods, the difference of what was
/// lent and paid, both with interest, would have no correct digit.
double Interest(double rate, double period, double periods, double present, double future,
                bool at_beginning) {
  if (period < 1.0 || period >= periods + 1.0) return kNum;
  if (at_beginning && period < 2.0) return 0.0;
  const double repaid =
      AnnuityFactor(rate, period - 1.0, false) / AnnuityFactor(rate, periods, false);
  const double owed = present - (present + future) * repaid;
  return -rate * owed / (at_beginning ? 1.0 + rate : 1.0);
}
double Principal(double rate, double period, double periods, double present, double future,
                 bool at_beginning) {
  return Payment(rate, periods, present, future, at_beginning) -
         Interest(rate, period, periods, present, future, at_beginning);
}

/// The interest or the principal of the payments from one to another.
struct Cumulative {
  double interest = kNum;
  double principal = kNum;
};
Cumulative CumulativeOf(double rate, double periods, double present, double first, double last,
                        double type) {
  first = std::ceil(first);
  last = std::trunc(last);
  const bool is_valid = rate > 0.0 && periods > 0.0 && present > 0.0 && first >= 1.0 &&
                        last >= first && last <= periods && (type == 0.0 || type == 1.0);
  if (!is_valid) return {};
  const bool at_beginning = type == 1.0;
  const double payment = Payment(rate, periods, present, 0.0, at_beginning);
  // Principal grows with the rate from payment to payment, except from the first one where that is
  // at the beginning and has no interest.
  double principal = 0.0;
  double from = first;
  if (at_beginning && first == 1.0) {
    principal = payment;
    from = 2.0;
  }
  if (from <= last) {
    principal -= present * Growth(rate, from - 1.0) *
                 AnnuityFactor(rate, last - from + 1.0, false) /
                 AnnuityFactor(rate, periods, at_beginning);
  }
  return {payment * (last - first + 1.0) - principal, principal};
}
double CumIpmt(StrictNumber rate, StrictNumber periods, StrictNumber present, StrictNumber first,
               StrictNumber last, StrictNumber type) {
  return CumulativeOf(rate, periods, present, first, last, std::trunc(type)).interest;
}
double CumPrinc(StrictNumber rate, StrictNumber periods, StrictNumber present, StrictNumber first,
                StrictNumber last, StrictNumber type) {
  return CumulativeOf(rate, periods, present, first, last, std::trunc(type)).principal;
}

double Rate(double periods, double payment, double present, double future, bool at_beginning,
            double guess) {
  if (periods <= 0.0) return kNum;
  return RateRoot(
      [=](double rate) {
        return future - FutureValue(rate, periods, payment, present, at_beginning);
      },
      guess);
}
Operand RateOf(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double periods = read.Number(0);
  const double payment = read.Number(1);
  const double present = read.Number(2);
  const double future = read.Number(3, 0.0);
  const bool at_beginning = read.Number(4, 0.0) != 0.0;
  const double guess = read.IsOmitted(5) ? 0.1 : read.Number(5);
  if (read.failed()) return read.failure();
  return NumberValue(Rate(periods, payment, present, future, at_beginning, guess));
}

double Effect(StrictNumber nominal, StrictNumber per_year) {
  const double periods = std::trunc(per_year);
  if (nominal <= 0.0 || periods < 1.0) return kNum;
  return GrowthExcess(nominal / periods, periods);
}
double Nominal(StrictNumber effective, StrictNumber per_year) {
  const double periods = std::trunc(per_year);
  if (effective <= 0.0 || periods < 1.0) return kNum;
  return periods * GrowthExcess(effective, 1.0 / periods);
}
double Rri(double periods, double present, double future) {
  if (periods <= 0.0 || present == 0.0) return kNum;
  return std::pow(future / present, 1.0 / periods) - 1.0;
}
double PDuration(double rate, double present, double future) {
  if (rate <= 0.0 || present <= 0.0 || future <= 0.0) return kNum;
  return std::log(future / present) / std::log1p(rate);
}

// ---- Depreciation

Value StraightLine(double cost, double salvage, double life) {
  if (life == 0.0) return ErrorCode::kDiv0;
  return NumberValue((cost - salvage) / life);
}
double SumOfYears(double cost, double salvage, double life, double period) {
  if (salvage < 0.0 || life <= 0.0 || period < 1.0 || period > life) return kNum;
  return (cost - salvage) * (life - period + 1.0) * 2.0 / (life * (life + 1.0));
}

/// Of a rate rounded to three places; the first year, and therefore also the last one, may be
/// incomplete.
double FixedDeclining(double cost, double salvage, Whole life, Whole period, Whole months) {
  if (cost < 0.0 || salvage < 0.0 || life <= 0.0 || months < 1.0 || months > 12.0) return kNum;
  const double last = months < 12.0 ? life + 1.0 : life.value;
  if (period < 1.0 || period > last) return kNum;
  if (cost == 0.0) return 0.0;
  const double rate = std::round((1.0 - std::pow(salvage / cost, 1.0 / life)) * 1000.0) / 1000.0;
  const double first_year = cost * rate * months / 12.0;
  if (period == 1.0) return first_year;
  const double value = (cost - first_year) * std::pow(1.0 - rate, period - 2.0);
  return value * rate * (period > life ? (12.0 - months) / 12.0 : 1.0);
}

double DoubleDeclining(double cost, double salvage, double life, double period, double factor) {
  if (cost < 0.0 || salvage < 0.0 || life <= 0.0 || period < 1.0 || period > life || factor <= 0.0)
    return kNum;
  const double kept = std::fmax(1.0 - factor / life, 0.0);
  const double before = cost * std::pow(kept, period - 1.0);
  const double after = std::fmax(cost * std::pow(kept, period), salvage);
  return std::fmax(before - after, 0.0);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"PMT", 3, 5, "s", Of<PaymentOrNum, 0, 0>},
    {u"IPMT", 4, 6, "s", Of<Interest, 0, 0>},
    {u"PPMT", 4, 6, "s", Of<Principal, 0, 0>},
    {u"PV", 3, 5, "s", Of<PresentValue, 0, 0>},
    {u"FV", 3, 5, "s", Of<FutureValue, 0, 0>},
    {u"NPER", 3, 5, "s", Of<Periods, 0, 0>},
    {u"RATE", 3, 6, "s", RateOf},
    {u"CUMIPMT", 6, 6, "s", Of<CumIpmt>},
    {u"CUMPRINC", 6, 6, "s", Of<CumPrinc>},
    {u"EFFECT", 2, 2, "s", Of<Effect>},
    {u"NOMINAL", 2, 2, "s", Of<Nominal>},
    {u"RRI", 3, 3, "s", Of<Rri>},
    {u"PDURATION", 3, 3, "s", Of<PDuration>},
    {u"SLN", 3, 3, "s", Of<StraightLine>},
    {u"SYD", 4, 4, "s", Of<SumOfYears>},
    {u"DB", 4, 5, "s", Of<FixedDeclining, 12>},
    {u"DDB", 4, 5, "s", Of<DoubleDeclining, 2>},
};

}  // namespace

std::span<const BuiltInFunction> FinancialFunctions() { return kFunctions; }

}  // namespace zavhost
