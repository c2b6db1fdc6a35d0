// Functions that each break one rule.
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

#include "planted_faults/planted.h"

using namespace planted;

PLANTED("BU", double, FaultLeak, XLOPER12* argument) {
  XLOPER12 cells;
  Call(xlCoerce, {argument}, &cells);
  return 1;
}

PLANTED("BU", double, FaultNoBracket, XLOPER12* argument) {
  XLOPER12 cells;
  CallBare(xlCoerce, {argument}, &cells);
  Free(cells);
  return 1;
}

PLANTED("B", double, FaultLeftEnabled) {
  XLOPER12 answer;
  CallBare(xlEnableXLMsgs, {}, nullptr);
  CallBare(xlAbort, {}, &answer);
  return 1;
}

PLANTED("B", double, FaultEnabledTwice) {
  CallBare(xlEnableXLMsgs, {}, nullptr);
  CallBare(xlEnableXLMsgs, {}, nullptr);
  CallBare(xlDisableXLMsgs, {}, nullptr);
  return 1;
}

PLANTED("B", double, FaultNotEnabled) {
  CallBare(xlDisableXLMsgs, {}, nullptr);
  return 1;
}

PLANTED("B", double, FaultSharedBracket) {
  XLOPER12 answer;
  CallBare(xlEnableXLMsgs, {}, nullptr);
  CallBare(xlAbort, {}, &answer);
  CallBare(xlAbort, {}, &answer);
  CallBare(xlDisableXLMsgs, {}, nullptr);
  return 1;
}

PLANTED("BQ", double, FaultWriteValue, XLOPER12* value) {
  *value = Number(13);
  return 1;
}

PLANTED("BQ", double, FaultWriteArray, XLOPER12* value) {
  if (value->xltype != xltypeMulti) return 0;
  const XLOPER12& last =
      value->val.array.lparray[value->val.array.rows * value->val.array.columns - 1];
  if (last.xltype == xltypeStr) last.val.str[1] = u'#';
  return 1;
}

PLANTED("BC%", double, FaultWriteText, XCHAR* text) {
  text[0] = u'#';
  return 1;
}

PLANTED("BU", double, FaultFreeTwice, XLOPER12* argument) {
  XLOPER12 cells;
  Call(xlCoerce, {argument}, &cells);
  XLOPER12 copy = cells;
  Free(cells);
  Free(cells);  // harmless: the pointer is null by now
  Free(copy);
  return 1;
}

PLANTED("B", double, FaultFreeForeign) {
  XLOPER12 own = Text(u"own");
  Free(own);
  return 1;
}

PLANTED("Q", XLOPER12*, FaultLongText) { return Return(Text(std::u16string(40000, u'x'))); }

PLANTED("Q", XLOPER12*, FaultNoData) { return Return(Array(nullptr, 2, 2)); }

PLANTED("Q", XLOPER12*, FaultHugeArray) {
  static XLOPER12 element = Number(1);
  return Return(Array(&element, 2'000'000'000, 2));
}

PLANTED("Q", XLOPER12*, FaultNestedArray) {
  static XLOPER12 inner = Number(1);
  static XLOPER12 element = Array(&inner, 1, 1);
  return Return(Array(&element, 1, 1));
}

PLANTED("Q", XLOPER12*, FaultUnknownType) { return Return(OfType(0x0200)); }

PLANTED("Q", XLOPER12*, FaultNoText) { return Return(OfType(xltypeStr)); }

PLANTED("QU", XLOPER12*, FaultDangling, XLOPER12* argument) {
  XLOPER12 cells;
  Call(xlCoerce, {argument}, &cells);
  const XLOPER12 copy = cells;
  Free(cells);
  return Return(copy);
}

PLANTED("Q", XLOPER12*, FaultBothBits) {
  XLOPER12 value = Number(1);
  value.xltype |= xlbitXLFree | xlbitDLLFree;
  return Return(value);
}

PLANTED("QU", XLOPER12*, FaultReference, XLOPER12* reference) { return reference; }

PLANTED("Q", XLOPER12*, FaultForeignResult) {
  XLOPER12 own = Text(u"own");
  own.xltype |= xlbitXLFree;
  return Return(own);
}

PLANTED("B", double, FaultThrow) { throw std::runtime_error("planted"); }

PLANTED("B", double, FaultNullArgument) {
  XLOPER12 result;
  return Call(xlCoerce, {nullptr}, &result);
}

PLANTED("B", double, FaultBadArgument) {
  const XLOPER12 value = OfType(0x0200);
  XLOPER12 result;
  return Call(xlCoerce, {&value}, &result);
}

PLANTED("B", double, FaultThread) {
  std::thread([] {
    XLOPER12 answer;
    Call(xlAbort, {}, &answer);
  }).join();
  return 1;
}

PLANTED("C", const char*, FaultLongNarrow) {
  static const std::string text(1000, 'x');
  return text.c_str();
}

PLANTED("B", double, FaultCrash) {
  volatile int* volatile nowhere = nullptr;
  *nowhere = 1;
  return 1;
}

PLANTED("B", double, FaultDivide) {
  const volatile int one = 1;
  const volatile int zero = 0;
  const int quotient = one / zero;
  return quotient;
}

PLANTED("B", double, FaultIllegal) { __builtin_trap(); }

PLANTED("B", double, FaultAbort) { std::abort(); }
