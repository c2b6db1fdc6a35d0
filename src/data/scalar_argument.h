#pragma once
// Single-valued arguments of worksheet functions, read by kind letters.
//
// A function describes its arguments by one letter each, upper case for a required argument, lower
// case for one that may be left out:
//
//   D d  a number               L l  a whole number of 32 bits
//   S s  a text                 B b  a boolean
//   R r  a data set             V    a data set of this and all further arguments
//
// data/data_argument.h reads R, r and V; this file reads the others, by these rules:
//
// - Left out. An omitted argument is not given; for an optional letter, neither is an empty cell. A
//   required letter takes an empty cell as 0, FALSE or the empty text, as Excel's own functions and
//   its own marshalling of number arguments do, and fails on an omitted argument.
// - Errors. An error value fails as that error, which a function may pass on. An array that
//   holds an error anywhere fails with its first one.
// - Arrays and references give their upper left element; of a reference, the host is asked for that
//   cell alone. A cell that is not calculated yet is reported as such and not as an error.
// - D takes a finite number, an integer, a boolean as 1 or 0, and a text that the host reads as a
//   number. Every other text fails.
// - L takes a number as D does and truncates it towards zero, as Excel's own functions do (2.9 is
//   2, -2.9 is -2). One that does not fit in 32 bits fails.
// - S takes every single value; the host converts a number (as in General format) and a boolean (to
//   its own word) to text.
// - B takes a boolean, a number as TRUE unless it is 0, and a text that the host reads as a boolean
//   or as a number.

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "excel/or_failure.h"
#include "excel/xxloper.h"
#include "numbers/numeric_range.h"
#include "platform/variant_copies.h"

namespace zavrel {

enum class Presence : bool { kRequired, kOptional };

/// std::nullopt for an optional argument that was left out.
template <class T>
using Scalar = OrFailure<std::optional<T>>;

// A null argument counts as omitted. A failure is the error that the argument is or holds, #VALUE!
// for a value of the wrong kind, or uncalculated.
Scalar<double> ReadNumber(const XLOPER12* argument, Presence presence);
Scalar<std::int32_t> ReadInteger(const XLOPER12* argument, Presence presence);
Scalar<std::u16string> ReadText(const XLOPER12* argument, Presence presence);
Scalar<bool> ReadBoolean(const XLOPER12* argument, Presence presence);

enum class ScalarType { kNumber, kInteger, kText, kBoolean };
struct ScalarKind {
  ScalarType type;
  Presence presence;

  /// The types that a reading accepts, as a mask; of a reference, those of its cell.
  std::uint16_t AcceptableTypes() const;
  /// The range of the numbers that it accepts.
  NumericRange Range() const;
};

/// What a letter stands for; std::nullopt for R, r, V and letters without a meaning.
std::optional<ScalarKind> ScalarKindOf(char letter);

/// A double, a whole number, a text or a boolean, by the kind's type; std::monostate if it was left
/// out.
using ScalarValue = std::variant<std::monostate, double, std::int32_t, std::u16string, bool>;
OrFailure<ScalarValue> ReadScalar(ScalarKind kind, const XLOPER12* argument);

}  // namespace zavrel
