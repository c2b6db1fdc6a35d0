// Functions that each break one rule.
#include <cstdlib>
#include <stdexcept>
#include <thread>
#include <vector>

#include "planted_faults/planted.h"

using namespace planted;

PLANTED_EXPORT double FaultLeak(XLOPER12* argument) {
  XLOPER12 cells;
  Call(xlCoerce, {argument}, &cells);
  return 1;
}

PLANTED_EXPORT double FaultNoBracket(XLOPER12* argument) {
  XLOPER12 cells;
  CallBare(xlCoerce, {argument}, &cells);
  Free(cells);
  return 1;
}

PLANTED_EXPORT double FaultLeftEnabled() {
  XLOPER12 answer;
  CallBare(xlEnableXLMsgs, {}, nullptr);
  CallBare(xlAbort, {}, &answer);
  return 1;
}

PLANTED_EXPORT double FaultEnabledTwice() {
  CallBare(xlEnableXLMsgs, {}, nullptr);
  CallBare(xlEnableXLMsgs, {}, nullptr);
  CallBare(xlDisableXLMsgs, {}, nullptr);
  return 1;
}

PLANTED_EXPORT double FaultNotEnabled() {
  CallBare(xlDisableXLMsgs, {}, nullptr);
  return 1;
}

PLANTED_EXPORT double FaultSharedBracket() {
  XLOPER12 answer;
  CallBare(xlEnableXLMsgs, {}, nullptr);
  CallBare(xlAbort, {}, &answer);
  CallBare(xlAbort, {}, &answer);
  CallBare(xlDisableXLMsgs, {}, nullptr);
  return 1;
}

PLANTED_EXPORT double FaultWriteValue(XLOPER12* value) {
  *value = Number(13);
  return 1;
}

PLANTED_EXPORT double FaultWriteArray(XLOPER12* value) {
  if (value->xltype != xltypeMulti) return 0;
  XLOPER12& last = value->val.array.lparray[value->val.array.rows * value->val.array.columns - 1];
  if (last.xltype == xltypeStr) last.val.str[1] = u'#';
  return 1;
}

PLANTED_EXPORT double FaultWriteText(XCHAR* text) {
  text[0] = u'#';
  return 1;
}

PLANTED_EXPORT double FaultFreeTwice(XLOPER12* argument) {
  XLOPER12 cells;
  Call(xlCoerce, {argument}, &cells);
  XLOPER12 copy = cells;
  Free(cells);
  Free(cells);  // harmless: the pointer is null by now
  Free(copy);
  return 1;
}

PLANTED_EXPORT double FaultFreeForeign() {
  XLOPER12 own = Text(u"own");
  Free(own);
  return 1;
}

PLANTED_EXPORT XLOPER12* FaultLongText() { return Return(Text(std::u16string(40000, u'x'))); }

PLANTED_EXPORT XLOPER12* FaultNoData() {
  XLOPER12 array{};
  array.xltype = xltypeMulti;
  array.val.array = {nullptr, 2, 2};
  return Return(array);
}

PLANTED_EXPORT XLOPER12* FaultHugeArray() {
  static XLOPER12 element = Number(1);
  XLOPER12 array{};
  array.xltype = xltypeMulti;
  array.val.array = {&element, 2'000'000'000, 2};
  return Return(array);
}

PLANTED_EXPORT XLOPER12* FaultNestedArray() {
  static XLOPER12 inner = Number(1);
  static XLOPER12 element{};
  element.xltype = xltypeMulti;
  element.val.array = {&inner, 1, 1};
  XLOPER12 array{};
  array.xltype = xltypeMulti;
  array.val.array = {&element, 1, 1};
  return Return(array);
}

PLANTED_EXPORT XLOPER12* FaultUnknownType() {
  XLOPER12 value{};
  value.xltype = 0x0200;
  return Return(value);
}

PLANTED_EXPORT XLOPER12* FaultNoText() {
  XLOPER12 value{};
  value.xltype = xltypeStr;
  return Return(value);
}

PLANTED_EXPORT XLOPER12* FaultDangling(XLOPER12* argument) {
  XLOPER12 cells;
  Call(xlCoerce, {argument}, &cells);
  XLOPER12 copy = cells;
  Free(cells);
  return Return(copy);
}

PLANTED_EXPORT XLOPER12* FaultBothBits() {
  XLOPER12 value = Number(1);
  value.xltype |= xlbitXLFree | xlbitDLLFree;
  return Return(value);
}

PLANTED_EXPORT XLOPER12* FaultReference(XLOPER12* reference) { return reference; }

PLANTED_EXPORT XLOPER12* FaultForeignResult() {
  XLOPER12 own = Text(u"own");
  own.xltype |= xlbitXLFree;
  return Return(own);
}

PLANTED_EXPORT double FaultThrow() { throw std::runtime_error("planted"); }

PLANTED_EXPORT double FaultNullArgument() {
  XLOPER12 result;
  return Call(xlCoerce, {nullptr}, &result);
}

PLANTED_EXPORT double FaultBadArgument() {
  XLOPER12 value{};
  value.xltype = 0x0200;
  XLOPER12 result;
  return Call(xlCoerce, {&value}, &result);
}

PLANTED_EXPORT double FaultThread() {
  std::thread([] {
    XLOPER12 answer;
    Call(xlAbort, {}, &answer);
  }).join();
  return 1;
}

PLANTED_EXPORT const char* FaultLongNarrow() {
  static const std::vector<char> text = [] {
    std::vector<char> made(1000, 'x');
    made.push_back(0);
    return made;
  }();
  return text.data();
}

PLANTED_EXPORT double FaultCrash() {
  volatile int* volatile nowhere = nullptr;
  *nowhere = 1;
  return 1;
}

PLANTED_EXPORT double FaultAbort() { std::abort(); }
