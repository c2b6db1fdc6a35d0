// The running program as its own add-in: how the product's entry points are tested where they are
// linked into a test.
#include <doctest/doctest.h>

#ifndef _WIN32
#include "excel/xloper12.h"
#include "host/planted_add_in.h"
#include "planted_faults/planted.h"

PLANTED_EXPORT int MdCallBack12(int, int, XLOPER12**, XLOPER12*);
PLANTED_EXPORT double OwnHalf(double number) { return number / 2; }

PLANTED_EXPORT int xlAutoOpen() {
  const auto call = [](int function, int count, XLOPER12** arguments, XLOPER12* result) {
    MdCallBack12(xlEnableXLMsgs, 0, nullptr, nullptr);
    MdCallBack12(function, count, arguments, result);
    MdCallBack12(xlDisableXLMsgs, 0, nullptr, nullptr);
  };
  XCHAR procedure_text[] = u"\u0007OwnHalf";
  XCHAR type_text[] = u"\u0002BB";
  XLOPER12 file, id, procedure{.val = {.str = procedure_text}, .xltype = xltypeStr},
      type{.val = {.str = type_text}, .xltype = xltypeStr};
  XLOPER12* arguments[] = {&file, &procedure, &type};
  call(xlGetName, 0, nullptr, &file);
  call(xlfRegister, 3, arguments, &id);
  call(xlFree, 1, arguments, nullptr);
  return id.xltype == xltypeNum ? 1 : 0;
}

TEST_CASE("the program itself can be the add-in") {
  zavhost::Engine engine(zavhost::tests::SmallWorkbook());
  engine.LoadAddIn(std::filesystem::read_symlink("/proc/self/exe"));
  CHECK(engine.functions().size() == 1);
  CHECK(zavhost::tests::Shown(engine, "OwnHalf(A5)") == "2.5");
  engine.CloseAddIn();
  CHECK(engine.judge().count() == 0);
}
#endif
