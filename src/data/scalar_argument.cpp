#include "data/scalar_argument.h"

#include <cmath>
#include <limits>
#include <utility>

#include "excel/coerce.h"
#include "excel/reference.h"

namespace zavrel {
namespace {

/// The numbers that a whole number of 32 bits is left of once they are truncated.
constexpr NumericRange kTruncatedTo32Bits{
    Bound{std::numeric_limits<std::int32_t>::min() - 1.0, false},
    Bound{std::numeric_limits<std::int32_t>::max() + 1.0, false}};

Failure NotOfThisKind() { return Failure(ExcelError::kValue); }

/// The single value that an argument comes down to. `owner` keeps it alive if it came from the
/// host.
struct Single {
  const XLOPER12* record;
  XXloper owner{};

  std::uint32_t type() const { return TypeOf(*record); }
};

OrFailure<Single> SingleOf(const XLOPER12* argument) {
  if (argument == nullptr) return Single{&XXloper::Missing().record()};
  Single single{argument};
  if (const auto reference = ReferenceView::Of(*argument)) {
    const ExcelResult cell = LookUpFirstCell(*reference);
    if (WantsReturn(cell)) return Failure::Uncalculated();
    if (!cell.ok()) return NotOfThisKind();
    single = {&cell.value.record(), cell.value};
  }
  if (const auto error = FirstError(*single.record)) return Failure::ByCode(*error);
  if (const auto elements = ElementsIn(*single.record); !elements.empty())
    single.record = &elements.front();
  switch (single.type()) {
    case xltypeNum:
    case xltypeStr:
    case xltypeBool:
    case xltypeInt:
    case xltypeNil:
    case xltypeMissing:
      return single;
    default:
      return NotOfThisKind();
  }
}

/// Reads an argument: `convert` makes an OrFailure<T> of its single value, which is not nil.
template <class T, class Convert>
Scalar<T> Read(const XLOPER12* argument, Presence presence, Convert convert) {
  const OrFailure<Single> single = SingleOf(argument);
  if (!single.ok()) return single.failure();
  const bool is_missing = single->type() == xltypeMissing;
  const bool is_empty = single->type() == xltypeNil;
  if (presence == Presence::kOptional && (is_missing || is_empty)) return std::optional<T>();
  if (is_missing) return NotOfThisKind();
  if (is_empty) return std::optional<T>(T{});
  OrFailure<T> converted = convert(*single->record);
  if (!converted.ok()) return converted.failure();
  return std::optional<T>(*std::move(converted));
}

/// The result that `take` makes of the value once the host has converted it to `type`.
template <class T, class Take>
OrFailure<T> Through(const XLOPER12& value, std::uint32_t type, Take take) {
  const ExcelResult coerced = CoerceTo(XXloper::FromArgument(&value), type);
  if (WantsReturn(coerced)) return Failure::Uncalculated();
  if (!coerced.ok() || coerced.value.type() != type) return NotOfThisKind();
  return take(coerced.value.record());
}

OrFailure<double> FiniteNumber(double number) {
  if (!std::isfinite(number)) return NotOfThisKind();
  return number;
}

OrFailure<double> NumberFrom(const XLOPER12& value) {
  switch (TypeOf(value)) {
    case xltypeNum:
      return FiniteNumber(value.val.num);
    case xltypeInt:
      return static_cast<double>(value.val.w);
    case xltypeBool:
      return value.val.xbool != 0 ? 1.0 : 0.0;
    default:
      return Through<double>(value, xltypeNum,
                             [](const XLOPER12& number) { return FiniteNumber(number.val.num); });
  }
}

OrFailure<std::int32_t> IntegerFrom(const XLOPER12& value) {
  const OrFailure<double> number = NumberFrom(value);
  if (!number.ok()) return number.failure();
  if (!kTruncatedTo32Bits.Contains(*number)) return NotOfThisKind();
  return static_cast<std::int32_t>(*number);
}

OrFailure<std::u16string> TextFrom(const XLOPER12& value) {
  const auto take = [](const XLOPER12& text) { return std::u16string(TextIn(text)); };
  if (TypeOf(value) == xltypeStr) return take(value);
  return Through<std::u16string>(value, xltypeStr, take);
}

OrFailure<bool> BooleanFrom(const XLOPER12& value) {
  if (TypeOf(value) == xltypeStr) {
    OrFailure<bool> word = Through<bool>(
        value, xltypeBool, [](const XLOPER12& boolean) { return boolean.val.xbool != 0; });
    if (word.ok() || word.failure().uncalculated()) return word;
  }
  const OrFailure<double> number = NumberFrom(value);
  if (!number.ok()) return number.failure();
  return *number != 0;
}

template <class T>
OrFailure<ScalarValue> AsVariant(Scalar<T> scalar) {
  if (!scalar.ok()) return scalar.failure();
  if (!*scalar) return ScalarValue();
  return ScalarValue(**std::move(scalar));
}

}  // namespace

Scalar<double> ReadNumber(const XLOPER12* argument, Presence presence) {
  return Read<double>(argument, presence, NumberFrom);
}

Scalar<std::int32_t> ReadInteger(const XLOPER12* argument, Presence presence) {
  return Read<std::int32_t>(argument, presence, IntegerFrom);
}

Scalar<std::u16string> ReadText(const XLOPER12* argument, Presence presence) {
  return Read<std::u16string>(argument, presence, TextFrom);
}

Scalar<bool> ReadBoolean(const XLOPER12* argument, Presence presence) {
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

std::uint16_t ScalarKind::AcceptableTypes() const {
  constexpr std::uint16_t kRequired = xltypeNum | xltypeStr | xltypeBool | xltypeInt | xltypeNil |
                                      xltypeMulti | xltypeRef | xltypeSRef;
  constexpr std::uint16_t kOptional = kRequired | xltypeMissing;
  return presence == Presence::kRequired ? kRequired : kOptional;
}

NumericRange ScalarKind::Range() const {
  return type == ScalarType::kInteger ? kTruncatedTo32Bits : NumericRange();
}

OrFailure<ScalarValue> ReadScalar(ScalarKind kind, const XLOPER12* argument) {
  switch (kind.type) {
    case ScalarType::kNumber:
      return AsVariant(ReadNumber(argument, kind.presence));
    case ScalarType::kInteger:
      return AsVariant(ReadInteger(argument, kind.presence));
    case ScalarType::kText:
      return AsVariant(ReadText(argument, kind.presence));
    case ScalarType::kBoolean:
      break;
  }
  return AsVariant(ReadBoolean(argument, kind.presence));
}

}  // namespace zavrel
