// Opening, closing and registration.
#include <algorithm>
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
std::vector<Row>& Rows() {
  static std::vector<Row> rows;
  return rows;
}

}  // namespace

Registration::Registration(const char16_t* procedure, const char16_t* type_text) {
  Rows().push_back({procedure, type_text});
}

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
  XLOPER12 value = OfType(xltypeNum);
  value.val.num = number;
  return value;
}

XLOPER12 Text(std::u16string_view text) {
  static std::vector<XCHAR> texts[8];
  static std::size_t next = 0;
  std::vector<XCHAR>& storage = texts[next++ % 8];
  storage.assign(1, static_cast<XCHAR>(text.size()));
  storage.insert(storage.end(), text.begin(), text.end());
  XLOPER12 value = OfType(xltypeStr);
  value.val.str = storage.data();
  return value;
}

XLOPER12 OfType(std::uint32_t type) {
  XLOPER12 value{};
  value.xltype = type;
  return value;
}

XLOPER12 Array(XLOPER12* elements, int rows, int columns) {
  XLOPER12 value = OfType(xltypeMulti);
  value.val.array = {elements, rows, columns};
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
  for (const Row& row : Rows()) {
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
