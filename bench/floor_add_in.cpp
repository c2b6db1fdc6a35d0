// A minimal add-in: functions that do nothing, or that read their cells without looking at them.
// The real add-in's times are compared with theirs. They are registered with as many arguments as
// the real functions, so that the host does the same work.
#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "excel/xloper12.h"

#ifdef _WIN32
#include <windows.h>
#define FLOOR_EXPORT extern "C" __declspec(dllexport)
#else
#include <dlfcn.h>
#define FLOOR_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

Excel12Callback callback = nullptr;

Excel12Callback FindCallback() {
#ifdef _WIN32
  return reinterpret_cast<Excel12Callback>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(nullptr), "MdCallBack12")));
#else
  return reinterpret_cast<Excel12Callback>(dlsym(RTLD_DEFAULT, "MdCallBack12"));
#endif
}

int CallHost(int function, int count, XLOPER12** arguments, XLOPER12* result) {
  callback(xlEnableXLMsgs, 0, nullptr, nullptr);
  const int code = callback(function, count, arguments, result);
  callback(xlDisableXLMsgs, 0, nullptr, nullptr);
  return code;
}

struct CountedText {
  explicit CountedText(const std::string& text) {
    std::copy(text.begin(), text.end(), units.begin() + 1);
    units[0] = static_cast<XCHAR>(text.size());
    record.xltype = xltypeStr;
    record.val.str = units.data();
  }
  std::array<XCHAR, 256> units{};
  XLOPER12 record{};
};

void Register(const char* procedure) {
  XLOPER12 module{};
  CallHost(xlGetName, 0, nullptr, &module);
  CountedText name(procedure);
  CountedText type_text("Q" + std::string(30, 'U'));
  XLOPER12* arguments[] = {&module, &name.record, &type_text.record, &name.record};
  XLOPER12 id{};
  CallHost(xlfRegister, 4, arguments, &id);
  XLOPER12* to_free[] = {&module};
  CallHost(xlFree, 1, to_free, nullptr);
}

XLOPER12 result;

XLOPER12* Return(double number) {
  result.xltype = xltypeNum;
  result.val.num = number;
  return &result;
}

/// Fetches one area and frees it at once; false if the host returns no cells.
bool ReadAndFree(XLOPER12* reference) {
  XLOPER12 cells{};
  XLOPER12* arguments[] = {reference};
  if (CallHost(xlCoerce, 1, arguments, &cells) != xlretSuccess) return false;
  XLOPER12* to_free[] = {&cells};
  CallHost(xlFree, 1, to_free, nullptr);
  return true;
}

}  // namespace

FLOOR_EXPORT int xlAutoOpen() {
  callback = FindCallback();
  if (callback == nullptr) return 0;
  Register("FloorRead");
  Register("FloorNothing");
  return 1;
}

FLOOR_EXPORT XLOPER12* FloorNothing(XLOPER12*) { return Return(0); }

/// Reads one column, in blocks that stay in the processor's cache, as the real add-in does.
FLOOR_EXPORT XLOPER12* FloorRead(XLOPER12* reference) {
  constexpr std::int32_t kBlockRows = 1 << 15;
  const bool local = (reference->xltype & xltypeMask) == xltypeSRef;
  const XLREF12 area = local ? reference->val.sref.ref : reference->val.mref.lpmref->reftbl[0];
  for (std::int32_t row = area.rwFirst; row <= area.rwLast; row += kBlockRows) {
    XLREF12 part = area;
    part.rwFirst = row;
    part.rwLast = std::min(area.rwLast, row + kBlockRows - 1);
    XLMREF12 areas{1, {part}};
    XLOPER12 block = *reference;
    if (local) {
      block.val.sref.ref = part;
    } else {
      block.val.mref.lpmref = &areas;
    }
    if (!ReadAndFree(&block)) return Return(-1);
  }
  return Return(0);
}
