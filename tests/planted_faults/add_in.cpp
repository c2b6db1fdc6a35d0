// Opening, closing and registration.
#include <algorithm>
#include <cstring>
#include <vector>

#include "planted_faults/planted.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace planted {
namespace {

Excel12Callback FindCallback() {
#ifdef _WIN32
  if (const HMODULE library = GetModuleHandleW(L"XLCall32")) {
    using EntryPoint = Excel12Callback (*)();
    auto* found = reinterpret_cast<void*>(GetProcAddress(library, "GetExcel12EntryPt"));
    if (const auto entry_point = reinterpret_cast<EntryPoint>(found)) return entry_point();
  }
  return reinterpret_cast<Excel12Callback>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(nullptr), "MdCallBack12")));
#else
  return reinterpret_cast<Excel12Callback>(dlsym(RTLD_DEFAULT, "MdCallBack12"));
#endif
}

struct Row {
  const char16_t* procedure;  // also the visible name
  const char16_t* type_text;
};

constexpr Row kRows[] = {
    {u"GoodSum", u"BU"},
    {u"GoodMix", u"BBIJBAHBJBBBBB"},
    {u"GoodMany", u"BBBBBBBBBBBBBBBBBBBBBBBBBBBBBBB"},
    {u"GoodWide", u"C%C%"},
    {u"GoodNarrow", u"CC"},
    {u"GoodCountedWide", u"D%D%"},
    {u"GoodCounted", u"DD"},
    {u"GoodPointers", u"BELMN"},
    {u"GoodInPlaceText", u"1F%"},
    {u"GoodInPlaceNumber", u"1E"},
    {u"GoodVoid", u">F"},
    {u"GoodTranspose", u"K%K%"},
    {u"GoodSmallSum", u"BK"},
    {u"GoodDescribe", u"QQ"},
    {u"GoodDescribeU", u"QU"},
    {u"GoodDllFree", u"Q"},
    {u"GoodXlFree", u"QU"},
    {u"GoodBoolean", u"AA"},
    {u"GoodShort", u"II"},
    {u"GoodUnsigned", u"HH"},
    {u"GoodInteger", u"JJ"},
    {u"GoodSpecial", u"BJ"},
    {u"GoodNothing", u"QJ"},
    {u"GoodCaller", u"Q"},
    {u"GoodApi", u"QU"},
    {u"GoodReference", u"UU"},
    {u"GoodGrid", u"QJJ"},
    {u"GoodVolatile", u"B!"},
    {u"GoodMacroSum", u"BU#"},
    {u"GoodSumTwice", u"BUU"},
    {u"FaultLeak", u"BU"},
    {u"FaultNoBracket", u"BU"},
    {u"FaultLeftEnabled", u"B"},
    {u"FaultEnabledTwice", u"B"},
    {u"FaultNotEnabled", u"B"},
    {u"FaultSharedBracket", u"B"},
    {u"FaultWriteValue", u"BQ"},
    {u"FaultWriteArray", u"BQ"},
    {u"FaultWriteText", u"BC%"},
    {u"FaultFreeTwice", u"BU"},
    {u"FaultFreeForeign", u"B"},
    {u"FaultLongText", u"Q"},
    {u"FaultNoData", u"Q"},
    {u"FaultHugeArray", u"Q"},
    {u"FaultNestedArray", u"Q"},
    {u"FaultUnknownType", u"Q"},
    {u"FaultNoText", u"Q"},
    {u"FaultDangling", u"QU"},
    {u"FaultBothBits", u"Q"},
    {u"FaultReference", u"QU"},
    {u"FaultForeignResult", u"Q"},
    {u"FaultThrow", u"B"},
    {u"FaultNullArgument", u"B"},
    {u"FaultBadArgument", u"B"},
    {u"FaultThread", u"B"},
    {u"FaultLongNarrow", u"C"},
    {u"FaultCrash", u"B"},
    {u"FaultAbort", u"B"},
};

}  // namespace

Excel12Callback Callback() {
  static const Excel12Callback callback = FindCallback();
  return callback;
}

int CallBare(int function, std::initializer_list<const XLOPER12*> arguments, XLOPER12* result) {
  XLOPER12* pointers[32] = {};
  std::transform(arguments.begin(), arguments.end(), pointers,
                 [](const XLOPER12* argument) { return const_cast<XLOPER12*>(argument); });
  return Callback()(function, static_cast<int>(arguments.size()), pointers, result);
}

int Call(int function, std::initializer_list<const XLOPER12*> arguments, XLOPER12* result) {
  CallBare(xlEnableXLMsgs, {}, nullptr);
  const int code = CallBare(function, arguments, result);
  CallBare(xlDisableXLMsgs, {}, nullptr);
  return code;
}

void Free(XLOPER12& value) { Call(xlFree, {&value}, nullptr); }

XLOPER12 Number(double number) {
  XLOPER12 value{};
  value.xltype = xltypeNum;
  value.val.num = number;
  return value;
}

XLOPER12 Integer(int integer) {
  XLOPER12 value{};
  value.xltype = xltypeInt;
  value.val.w = integer;
  return value;
}

XLOPER12 Error(int code) {
  XLOPER12 value{};
  value.xltype = xltypeErr;
  value.val.err = code;
  return value;
}

XLOPER12 Missing() {
  XLOPER12 value{};
  value.xltype = xltypeMissing;
  return value;
}

XLOPER12 Text(std::u16string_view text) {
  static std::vector<XCHAR> texts[8];
  static std::size_t next = 0;
  std::vector<XCHAR>& storage = texts[next++ % 8];
  storage.assign(1, static_cast<XCHAR>(text.size()));
  storage.insert(storage.end(), text.begin(), text.end());
  XLOPER12 value{};
  value.xltype = xltypeStr;
  value.val.str = storage.data();
  return value;
}

XLOPER12* Return(const XLOPER12& value) {
  static XLOPER12 returned;
  returned = value;
  return &returned;
}

}  // namespace planted

using namespace planted;

PLANTED_EXPORT int xlAutoOpen() {
  XLOPER12 file;
  if (Callback() == nullptr || Call(xlGetName, {}, &file) != xlretSuccess) return 0;
  for (const Row& row : kRows) {
    const XLOPER12 procedure = Text(row.procedure);
    const XLOPER12 type_text = Text(row.type_text);
    XLOPER12 id;
    Call(xlfRegister, {&file, &procedure, &type_text}, &id);
    if (id.xltype != xltypeNum) return 0;
  }
  Free(file);
  return 1;
}

PLANTED_EXPORT int xlAutoClose() { return 1; }
