// The least that an add-in can do: a function that reads its cells and adds the numbers, and one
// that does nothing. What the real add-in takes is held against these.
#include <dlfcn.h>

#include <array>
#include <string>

#include "excel/xloper12.h"

#define FLOOR_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

using Callback = int (*)(int, int, XLOPER12**, XLOPER12*);
Callback callback = nullptr;

int CallHost(int function, int count, XLOPER12** arguments, XLOPER12* result) {
  callback(xlEnableXLMsgs, 0, nullptr, nullptr);
  const int code = callback(function, count, arguments, result);
  callback(xlDisableXLMsgs, 0, nullptr, nullptr);
  return code;
}

struct CountedText {
  explicit CountedText(const char* text) {
    std::size_t length = 0;
    while (text[length] != 0) {
      units[length + 1] = static_cast<XCHAR>(text[length]);
      ++length;
    }
    units[0] = static_cast<XCHAR>(length);
    record.xltype = xltypeStr;
    record.val.str = units.data();
  }
  std::array<XCHAR, 256> units{};
  XLOPER12 record{};
};

void Register(const char* procedure, const char* types) {
  XLOPER12 module{};
  CallHost(xlGetName, 0, nullptr, &module);
  CountedText name(procedure);
  CountedText type_text(types);
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

}  // namespace

FLOOR_EXPORT int xlAutoOpen() {
  callback = reinterpret_cast<Callback>(dlsym(RTLD_DEFAULT, "MdCallBack12"));
  if (callback == nullptr) return 0;
  Register("FloorScan", "QU");
  Register("FloorNothing", "QQ");
  return 1;
}

FLOOR_EXPORT XLOPER12* FloorNothing(XLOPER12*) { return Return(0); }

FLOOR_EXPORT XLOPER12* FloorScan(XLOPER12* reference) {
  XLOPER12 cells{};
  XLOPER12* arguments[] = {reference};
  if (CallHost(xlCoerce, 1, arguments, &cells) != xlretSuccess) return Return(-1);
  double sum = 0;
  const std::int64_t count = std::int64_t{cells.val.array.rows} * cells.val.array.columns;
  for (std::int64_t i = 0; i < count; ++i) {
    if (cells.val.array.lparray[i].xltype == xltypeNum) sum += cells.val.array.lparray[i].val.num;
  }
  XLOPER12* to_free[] = {&cells};
  CallHost(xlFree, 1, to_free, nullptr);
  return Return(sum);
}
