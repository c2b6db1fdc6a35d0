// Divisors, combinatorics and bits: functions of whole numbers.

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <numeric>

#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"
#include "host/formula/number_function.h"
#include "host/formula/special_functions.h"

namespace zavhost {
namespace {

constexpr double kLargestWhole = 9007199254740992.0;  // 2^53

/// Calls visit(number) for the whole numbers of all arguments, which must not be negative; text,
/// also in cells, and booleans are #VALUE!, blank cells do not count.
template <typename Visit>
std::optional<ErrorCode> VisitWholes(const BuiltInCall& call, const Visit& visit) {
  return VisitValues(call, [&](const Value& value, bool is_direct) -> std::optional<ErrorCode> {
    if (value.IsBlank() && !is_direct) return std::nullopt;
    if (value.boolean() != nullptr) return ErrorCode::kValue;
    const Converted<double> number = ToNumber(value);
    if (number.error) return number.error;
    const double whole = std::trunc(number.value);
    if (whole < 0.0 || whole >= kLargestWhole) return ErrorCode::kNum;
    return visit(whole);
  });
}

Operand Gcd(const BuiltInCall& call) {
  std::uint64_t divisor = 0;
  const auto error = VisitWholes(call, [&](double whole) -> std::optional<ErrorCode> {
    divisor = std::gcd(divisor, static_cast<std::uint64_t>(whole));
    return std::nullopt;
  });
  return error ? Value(*error) : Value(static_cast<double>(divisor));
}

Operand Lcm(const BuiltInCall& call) {
  double multiple = 1.0;
  const auto error = VisitWholes(call, [&](double whole) -> std::optional<ErrorCode> {
    if (multiple == 0.0 || whole == 0.0) {
      multiple = 0.0;
      return std::nullopt;
    }
    const auto divisor =
        std::gcd(static_cast<std::uint64_t>(multiple), static_cast<std::uint64_t>(whole));
    multiple *= whole / static_cast<double>(divisor);
    if (multiple >= kLargestWhole) return ErrorCode::kNum;
    return std::nullopt;
  });
  return error ? Value(*error) : Value(multiple);
}

double Fact(Whole n) {
  return n >= 0.0 && n <= 170.0 ? special::Factorial(static_cast<int>(n.value)) : kNum;
}
double FactDouble(StrictNumber number) {
  const double n = std::trunc(number);
  return number >= 0.0 && n <= 300.0 ? special::DoubleFactorial(static_cast<int>(n)) : kNum;
}

// These products overflow after at most 1,024 factors, since all but the last are at least 2. The
// wider type keeps those exact that a double can hold.
constexpr long double kOverflow = std::numeric_limits<double>::max();

/// The binomial coefficient, 0 <= k <= n.
double Binomial(double n, double k) {
  k = std::fmin(k, n - k);
  long double product = 1.0L;
  for (double i = 1.0; i <= k && product <= kOverflow; i += 1.0) {
    product = product * static_cast<long double>(n - k + i) / i;
  }
  return static_cast<double>(product);
}

double Combin(Whole n, Whole k) { return n >= 0.0 && k >= 0.0 && k <= n ? Binomial(n, k) : kNum; }
double CombinA(Whole n, Whole k) {
  if (n < 0.0 || k < 0.0 || (n == 0.0 && k > 0.0)) return kNum;
  return k == 0.0 ? 1.0 : Binomial(n + k - 1.0, k);
}
double Permut(Whole n, Whole k) {
  if (n <= 0.0 || k < 0.0 || k > n) return kNum;
  long double product = 1.0L;
  for (double i = 0.0; i < k && product <= kOverflow; i += 1.0) product *= n - i;
  return static_cast<double>(product);
}
double PermutationA(Whole n, Whole k) { return n < 0.0 || k < 0.0 ? kNum : std::pow(n, k); }

/// (a + b + ...)! / (a! b! ...) as a product of binomial coefficients.
Operand Multinomial(const BuiltInCall& call) {
  double total = 0.0;
  double coefficient = 1.0;
  const auto error = VisitWholes(call, [&](double whole) -> std::optional<ErrorCode> {
    total += whole;
    coefficient *= Binomial(total, whole);
    if (!std::isfinite(coefficient)) return ErrorCode::kNum;
    return std::nullopt;
  });
  return error ? Value(*error) : NumberValue(coefficient);
}

constexpr double kBitLimit = 281474976710656.0;  // 2^48

/// A whole number that is not negative and has at most 48 bits.
bool HasBits(double number) {
  return number >= 0.0 && number < kBitLimit && std::trunc(number) == number;
}

template <typename Operation>
double OfBits(double a, double b) {
  if (!HasBits(a) || !HasBits(b)) return kNum;
  return static_cast<double>(
      Operation()(static_cast<std::uint64_t>(a), static_cast<std::uint64_t>(b)));
}

/// Shifts to the left, or to the right by a negative number of bits.
double ShiftLeft(double number, double bits) {
  if (!HasBits(number) || std::fabs(bits) > 53.0) return kNum;
  const double shifted = std::floor(std::ldexp(number, static_cast<int>(bits)));
  return shifted < kBitLimit ? shifted : kNum;
}
double BitLShift(double number, Whole bits) { return ShiftLeft(number, bits); }
double BitRShift(double number, Whole bits) { return ShiftLeft(number, -bits); }

constexpr BuiltInFunction kFunctions[] = {
    {u"GCD", 1, kAnyNumberOfArguments, "r", Gcd},
    {u"LCM", 1, kAnyNumberOfArguments, "r", Lcm},
    {u"FACT", 1, 1, "s", Of<Fact>},
    {u"FACTDOUBLE", 1, 1, "s", Of<FactDouble>},
    {u"COMBIN", 2, 2, "s", Of<Combin>},
    {u"COMBINA", 2, 2, "s", Of<CombinA>},
    {u"PERMUT", 2, 2, "s", Of<Permut>},
    {u"PERMUTATIONA", 2, 2, "s", Of<PermutationA>},
    {u"MULTINOMIAL", 1, kAnyNumberOfArguments, "r", Multinomial},
    {u"BITAND", 2, 2, "s", Of<OfBits<std::bit_and<>>>},
    {u"BITOR", 2, 2, "s", Of<OfBits<std::bit_or<>>>},
    {u"BITXOR", 2, 2, "s", Of<OfBits<std::bit_xor<>>>},
    {u"BITLSHIFT", 2, 2, "s", Of<BitLShift>},
    {u"BITRSHIFT", 2, 2, "s", Of<BitRShift>},
};

}  // namespace

std::span<const BuiltInFunction> IntegerFunctions() { return kFunctions; }

}  // namespace zavhost
