#pragma once
// A small add-in of the tests' own: functions of every type letter that behave, and functions that
// each break one rule.

#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "excel/xloper12.h"

#ifdef _WIN32
#define PLANTED_EXPORT extern "C" __declspec(dllexport)
#else
#define PLANTED_EXPORT extern "C" __attribute__((visibility("default")))
#endif

/// Begins a function that is registered under its name and this type text.
#define PLANTED(type_text, result, name, ...)                                       \
  PLANTED_EXPORT result name(__VA_ARGS__);                                          \
  static const planted::Registration name##_registration(u"" #name, u"" type_text); \
  PLANTED_EXPORT result name(__VA_ARGS__)

namespace planted {

struct Registration {
  Registration(const char16_t* procedure, const char16_t* type_text);
};

/// The callback; null when none was found.
Excel12Callback Callback();

/// A call without messages enabled around it.
int CallBare(int function, std::initializer_list<const XLOPER12*> arguments, XLOPER12* result);
/// A call as it must be.
int Call(int function, std::initializer_list<const XLOPER12*> arguments, XLOPER12* result);
void Free(XLOPER12& value);

XLOPER12 Number(double number);
/// A record of a type, without a value.
XLOPER12 OfType(std::uint32_t type);
XLOPER12 Array(XLOPER12* elements, int rows, int columns);
/// A counted text that lives until `Text` has been called eight more times.
XLOPER12 Text(std::u16string_view text);
/// A record that outlives the call that returns it.
XLOPER12* Return(const XLOPER12& value);

}  // namespace planted
