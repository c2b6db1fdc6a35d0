#include "excel/scalar_argument.h"

#include <cmath>
#include <limits>

#include "excel/coerce.h"

namespace zavrel {
namespace {

using enum ScalarStatus;

template <class T>
Scalar<T> Given(T value) {
  return {kGiven, std::move(value)};
}

template <class T>
Scalar<T> FailedWith(std::int32_t error) {
  return {kFailed, T{}, error};
}

/// The status of another scalar that is not given.
template <class T, class Other>
Scalar<T> WithoutValue(const Scalar<Other>& other) {
  return {other.status, T{}, other.error};
}

/// The one value that an argument comes down to: a number, text, boolean, integer or nil.
Scalar<XXloper> SingleValue(const XXloper& argument) {
  XXloper single = argument;
  if (single.Is(xltypeRef | xltypeSRef)) {
    const ExcelResult cell = LookUpFirstCell(single);
    if (WantsReturn(cell)) return {kUncalculated};
    if (!cell.ok()) return {};
    single = cell.value;
  }
  if (const auto error = FirstError(single.record())) return FailedWith<XXloper>(*error);
  if (!single.elements().empty()) single = single.Element(0);
  if (single.IsMissing()) return {kNotGiven};
  if (!single.Is(xltypeNum | xltypeStr | xltypeBool | xltypeInt | xltypeNil)) return {};
  return Given(std::move(single));
}

/// Reads an argument: `convert` makes a Scalar<T> of its single value, which is not nil.
template <class T, class Convert>
Scalar<T> Read(const XXloper& argument, Presence presence, Convert convert) {
  const Scalar<XXloper> single = SingleValue(argument);
  const bool left_out =
      single.status == kNotGiven || (single.given() && single.value.Is(xltypeNil));
  if (left_out && presence == Presence::kOptional) return {kNotGiven};
  if (single.status == kNotGiven) return {};
  if (!single.given()) return WithoutValue<T>(single);
  return single.value.Is(xltypeNil) ? Given(T{}) : convert(single.value);
}

/// The value as one of the host's, through the host; `take` makes the result of it.
template <class T, class Take>
Scalar<T> Through(const XXloper& value, std::uint32_t type, Take take) {
  const ExcelResult coerced = CoerceTo(value, type);
  if (WantsReturn(coerced)) return {kUncalculated};
  if (!coerced.ok() || coerced.value.type() != type) return {};
  return take(coerced.value);
}

Scalar<double> FiniteNumber(double number) {
  return std::isfinite(number) ? Given(number) : Scalar<double>{};
}

Scalar<double> NumberFrom(const XXloper& value) {
  const XLOPER12& record = value.record();
  switch (value.type()) {
    case xltypeNum:
      return FiniteNumber(record.val.num);
    case xltypeInt:
      return Given<double>(record.val.w);
    case xltypeBool:
      return Given(record.val.xbool != 0 ? 1.0 : 0.0);
    default:
      return Through<double>(value, xltypeNum, [](const XXloper& number) {
        return FiniteNumber(number.record().val.num);
      });
  }
}

Scalar<std::int32_t> IntegerFrom(const XXloper& value) {
  const Scalar<double> number = NumberFrom(value);
  if (!number.given()) return WithoutValue<std::int32_t>(number);
  const double whole = std::trunc(number.value);
  using Limits = std::numeric_limits<std::int32_t>;
  if (whole < Limits::min() || whole > Limits::max()) return {};
  return Given(static_cast<std::int32_t>(whole));
}

Scalar<std::u16string> TextFrom(const XXloper& value) {
  const auto take = [](const XXloper& text) { return Given(std::u16string(text.text())); };
  return value.Is(xltypeStr) ? take(value) : Through<std::u16string>(value, xltypeStr, take);
}

Scalar<bool> BooleanFrom(const XXloper& value) {
  if (value.Is(xltypeStr)) {
    Scalar<bool> word = Through<bool>(value, xltypeBool, [](const XXloper& boolean) {
      return Given(boolean.record().val.xbool != 0);
    });
    if (word.status != kFailed) return word;
  }
  const Scalar<double> number = NumberFrom(value);
  return number.given() ? Given(number.value != 0) : WithoutValue<bool>(number);
}

template <class T>
Scalar<ScalarValue> AsVariant(Scalar<T> scalar) {
  if (!scalar.given()) return WithoutValue<ScalarValue>(scalar);
  return Given(ScalarValue(std::move(scalar.value)));
}

}  // namespace

Scalar<double> ReadNumber(const XXloper& argument, Presence presence) {
  return Read<double>(argument, presence, NumberFrom);
}

Scalar<std::int32_t> ReadInteger(const XXloper& argument, Presence presence) {
  return Read<std::int32_t>(argument, presence, IntegerFrom);
}

Scalar<std::u16string> ReadText(const XXloper& argument, Presence presence) {
  return Read<std::u16string>(argument, presence, TextFrom);
}

Scalar<bool> ReadBoolean(const XXloper& argument, Presence presence) {
  return Read<bool>(argument, presence, BooleanFrom);
}

std::optional<ScalarKind> ScalarKindOf(char letter) {
  switch (letter) {
    case 'D':
      return ScalarKind{ScalarType::kNumber, Presence::kRequired};
    case 'd':
      return ScalarKind{ScalarType::kNumber, Presence::kOptional};
    case 'L':
      return ScalarKind{ScalarType::kInteger, Presence::kRequired};
    case 'l':
      return ScalarKind{ScalarType::kInteger, Presence::kOptional};
    case 'S':
      return ScalarKind{ScalarType::kText, Presence::kRequired};
    case 's':
      return ScalarKind{ScalarType::kText, Presence::kOptional};
    case 'B':
      return ScalarKind{ScalarType::kBoolean, Presence::kRequired};
    case 'b':
      return ScalarKind{ScalarType::kBoolean, Presence::kOptional};
    default:
      return std::nullopt;
  }
}

Scalar<ScalarValue> ReadScalar(ScalarKind kind, const XXloper& argument) {
  switch (kind.type) {
    case ScalarType::kNumber:
      return AsVariant(ReadNumber(argument, kind.presence));
    case ScalarType::kInteger:
      return AsVariant(ReadInteger(argument, kind.presence));
    case ScalarType::kText:
      return AsVariant(ReadText(argument, kind.presence));
    case ScalarType::kBoolean:
      return AsVariant(ReadBoolean(argument, kind.presence));
  }
  return {};
}

}  // namespace zavrel
