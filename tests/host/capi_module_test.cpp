// The running program as its own add-in: how the product's entry points are tested where they are
// linked into a test.
#include <doctest/doctest.h>

#ifndef _WIN32
#include "excel/xloper12.h"
#include "host/planted_add_in.h"
#include "planted_faults/planted.h"

PLANTED_EXPORT int MdCallBack12(int, int, XLOPER12**, XLOPER12*);

namespace {

void Call(int function, int count, XLOPER12** arguments, XLOPER12* result) {
  MdCallBack12(xlEnableXLMsgs, 0, nullptr, nullptr);
  MdCallBack12(function, count, arguments, result);
  MdCallBack12(xlDisableXLMsgs, 0, nullptr, nullptr);
}

}  // namespace

PLANTED_EXPORT double OwnHalf(double number) { return number / 2; }

PLANTED_EXPORT int xlAutoOpen() {
  XCHAR procedure_text[] = u"\u0007OwnHalf";
  XCHAR type_text[] = u"\u0002BB";
  XLOPER12 file;
  Call(xlGetName, 0, nullptr, &file);
  XLOPER12 procedure{};
  procedure.xltype = xltypeStr;
  procedure.val.str = procedure_text;
  XLOPER12 type = procedure;
  type.val.str = type_text;
  XLOPER12* arguments[] = {&file, &procedure, &type};
  XLOPER12 id;
  Call(xlfRegister, 3, arguments, &id);
  Call(xlFree, 1, arguments, nullptr);
  return id.xltype == xltypeNum ? 1 : 0;
}

TEST_CASE("the program itself can be the add-in") {
  zavhost::Engine engine(zavhost::tests::SmallWorkbook());
  engine.LoadAddIn(std::filesystem::read_symlink("/proc/self/exe"));
  CHECK(engine.functions().size() == 1);
  CHECK(zavhost::tests::Shown(engine, u"OwnHalf(A5)") == "2.5");
  engine.CloseAddIn();
  CHECK(engine.judge().count() == 0);
}
#endif
