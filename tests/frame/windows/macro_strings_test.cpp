// The entry points that take or give automation strings.
#include <windows.h>
// The order matters: the automation types build on the basic ones.
#include <oleauto.h>

#include <doctest/doctest.h>

#include <cstring>
#include <string>

#include "diagnostics/vek_exception.h"
#include "frame/macro_call.h"
#include "frame/opening.h"
#include "frame/session.h"
#include "support/fake_excel.h"
#include "support/quiet_services.h"

extern "C" void InitializeXlaInformationVB(IDispatch*, IDispatch*, std::uint16_t, BSTR,
                                           std::int32_t, BSTR, BSTR);
extern "C" std::int32_t ZavrelGetExceptionInfoVB(std::uint32_t, BSTR*, BSTR*, BSTR*);

namespace zavrel::tests {
namespace {

struct OpenAddInOnce {
  OpenAddInOnce() { REQUIRE(OpenAddIn(ThisAddIn(), &QuietServices)); }
  ~OpenAddInOnce() { CloseAddIn(); }
  FakeExcel excel;
};

/// A BSTR that frees itself.
struct Text {
  explicit Text(const wchar_t* wide) : value(SysAllocString(wide)) {}
  explicit Text(const char* ansi)
      : value(SysAllocStringByteLen(ansi, static_cast<UINT>(std::strlen(ansi)))) {}
  Text(const char* bytes, UINT size) : value(SysAllocStringByteLen(bytes, size)) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { SysFreeString(value); }

  BSTR value;
};

}  // namespace

TEST_CASE("a macro's texts arrive as they were meant, in single bytes or wide") {
  const OpenAddInOnce add_in;
  const auto record = [] { return Session::Current()->applications().Find(5); };
  const Text file("C:\\Add-ins\\companion.xlam");
  const Text version("8.1");
  const Text help("D:\\h.chm");
  InitializeXlaInformationVB(nullptr, nullptr, 5, file.value, 9, version.value, help.value);
  REQUIRE(record() != nullptr);
  CHECK(record()->workbook_folder == u"C:\\Add-ins\\");
  CHECK(record()->workbook_name == u"companion.xlam");
  CHECK(record()->version == u"8.1");
  CHECK(add_in.excel.functions().at(u"Mean").texts[8] == u"D:\\h.chm!198");

  const Text wide_file(L"C:\\\u0414\\\u0436.xlam");
  const Text wide_help(L"E:\\g.chm");
  InitializeXlaInformationVB(nullptr, nullptr, 5, wide_file.value, 7, nullptr, wide_help.value);
  CHECK(record()->workbook_folder == u"C:\\\u0414\\");
  CHECK(record()->workbook_name == u"\u0436.xlam");
  CHECK(record()->version.empty());
  CHECK(add_in.excel.functions().at(u"Mean").texts[8] == u"E:\\g.chm!198");

  const Text broken("a\0", 3);  // an odd number of bytes, a zero among them
  const Text empty("");
  InitializeXlaInformationVB(nullptr, nullptr, 5, broken.value, -1, empty.value, empty.value);
  CHECK(record()->workbook_name == u"a");
  InitializeXlaInformationVB(nullptr, nullptr, 5, nullptr, 9, nullptr, nullptr);
  CHECK((record()->workbook_name.empty() && add_in.excel.Has(u"Mean")));
}

TEST_CASE("a failure's three texts, each only where it is wanted") {
  const OpenAddInOnce add_in;
  const std::uint32_t number = MacroCall("X", [] {
    throw VekMatrixNotSquare("A::B", 2528, {std::int64_t{2}, std::int64_t{3}});
  });
  BSTR texts[3] = {SysAllocString(L"old"), nullptr, nullptr};
  CHECK(ZavrelGetExceptionInfoVB(number, nullptr, nullptr, nullptr) == 1);
  CHECK(ZavrelGetExceptionInfoVB(number + 1, &texts[0], &texts[1], &texts[2]) == 0);
  CHECK(ZavrelGetExceptionInfoVB(0, &texts[0], &texts[1], &texts[2]) == 0);
  CHECK(std::wstring(texts[0]) == L"old");
  CHECK(texts[1] == nullptr);
  CHECK(ZavrelGetExceptionInfoVB(number, &texts[0], &texts[1], &texts[2]) == 1);
  CHECK((std::wstring(texts[0]) == L"VekMatrixNotSquare" && texts[2] != nullptr));
  for (const BSTR text : texts) SysFreeString(text);
}

TEST_CASE("after closing no failure is known") {
  std::uint32_t number = 0;
  {
    const OpenAddInOnce add_in;
    number = MacroCall("X", [] { throw 1; });
  }
  CHECK(number == 1);
  CHECK(ZavrelGetExceptionInfoVB(number, nullptr, nullptr, nullptr) == 0);
}

}  // namespace zavrel::tests
