#include "excel/xxloper.h"

#include <doctest/doctest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <thread>

#include "excel/result_holder.h"
#include "support/fake_excel.h"

using namespace zavrel;
using namespace zavrel::tests;

namespace {

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

XLOPER12 Array(XLOPER12* elements, std::int32_t rows, std::int32_t columns) {
  XLOPER12 record{};
  record.xltype = xltypeMulti;
  record.val.array = {elements, rows, columns};
  return record;
}

struct OpenHolder {
  OpenHolder() { OpenResultHolder(); }
  ~OpenHolder() { CloseResultHolder(); }
};

}  // namespace

TEST_CASE("Arguments are wrapped as they are; a null pointer is an omitted one") {
  const FakeExcel excel;
  XLOPER12 number{};
  number.xltype = xltypeNum | xlbitXLFree;
  number.val.num = 2.5;
  {
    const XXloper wrapped = XXloper::FromArgument(&number);
    CHECK(&wrapped.record() == &number);
    CHECK((wrapped.type() == xltypeNum && wrapped.Is(xltypeStr | xltypeNum)));
  }
  CHECK(excel.calls.empty());
  CHECK((XXloper::FromArgument(nullptr).IsMissing() && XXloper().IsMissing()));
}

TEST_CASE("Records that a hostile caller made hold nothing") {
  XLOPER12 record{};
  record.xltype = xltypeStr;
  CHECK(XXloper::FromArgument(&record).text().empty());
  XLOPER12 element = XXloper::Nil().record();
  for (const XLOPER12& array :
       {Array(nullptr, 2, 2), Array(&element, 0, 1), Array(&element, -1, -1),
        Array(&element, 1, kExcelColumns + 1), Array(&element, kLargest, 1)})
    CHECK(XXloper::FromArgument(&array).elements().empty());
  record.xltype = xltypeBigData;
  const XXloper big_data = XXloper::FromArgument(&record);
  CHECK_FALSE(big_data.Is(xltypeStr | xltypeInt));
  CHECK(big_data.text().empty());
}

TEST_CASE("A text is cut to what a cell can hold, never through a surrogate pair") {
  const std::u16string longest(kExcelTextLimit, u'x');
  const std::u16string pair_at_the_end = longest.substr(1) + u"\U0001F600";
  CHECK(XXloper::Text(longest).text() == longest);
  CHECK(XXloper::Text(longest + u"yz").text() == longest);
  CHECK(XXloper::Text(pair_at_the_end).text() == longest.substr(1));
  XXloperArray array(1, 2);
  array.SetText(0, longest + u"y");
  array.SetText(1, pair_at_the_end);
  const XXloper finished = std::move(array).Finish();
  CHECK(TextIn(finished.elements()[0]) == longest);
  CHECK(TextIn(finished.elements()[1]) == longest.substr(1));
  CHECK(XXloper::Text(u"").record().val.str[0] == 0);
}

TEST_CASE("The 13 errors are shared; another code is kept in a value of its own") {
  for (const int code : {7, 15, 23, 29, 36, 42, 43, 45, 46, 47, 48, 49, 50}) {
    const XXloper error = XXloper::ErrorByCode(code);
    CHECK((error.type() == xltypeErr && error.record().val.err == code));
    CHECK(&error.record() == &XXloper::Error(static_cast<ExcelError>(code)).record());
  }
  for (const int code : {0, 44, -1}) CHECK(XXloper::ErrorByCode(code).record().val.err == code);
  static_assert(noexcept(XXloper())&& noexcept(XXloper::Error(ExcelError::kNA))&& noexcept(
      XXloper::Missing())&& noexcept(XXloper::Nil())&& noexcept(XXloper::Boolean(true)));
}

TEST_CASE("An array holds what was set, without memory flags, and takes no index past its end") {
  XXloperArray builder(2, 4, ExcelError::kNum);
  const XXloper text = XXloper::Text(u"ab");
  XLOPER12 flagged = text.record();
  flagged.xltype |= xlbitDLLFree;
  builder.SetNumber(0, 1.5);
  builder.Set(1, flagged);
  builder.Set(2, *static_cast<const XLOPER12*>(Reference({0, 0, 0, 0})));
  builder.Set(3, XXloper::Missing().record());
  builder.Set(4, XXloper::Boolean(true).record());
  builder.Set(5, XXloper::Integer(-7).record());
  builder.SetNumber(6, std::numeric_limits<double>::infinity());
  CHECK_THROWS_AS(builder.SetNumber(8, 1), std::out_of_range);
  CHECK_THROWS_AS(builder.SetText(8, u"x"), std::out_of_range);

  const XXloper array = std::move(builder).Finish();
  CHECK(builder.size() == 0);  // NOLINT(bugprone-use-after-move): empty by contract
  CHECK(std::move(builder).Finish().IsMissing());
  for (const XLOPER12& element : array.elements()) CHECK(element.xltype == TypeOf(element));
  CHECK(Shown(array.record()) == "1.5,ab,#15,;TRUE,,#36,#36;");  // the last one is the fill
  CHECK(array.elements()[3].xltype == xltypeNil);
  CHECK(array.elements()[5].val.w == -7);
  CHECK((array.Element(1).text() == u"ab" && array.Element(8).IsMissing()));
  CHECK(XXloperArray(0, -5).size() == 1);
  CHECK(XXloperArray(kLargest, 1).size() == 1048576);
}

TEST_CASE("A result lives until the same thread's next one; without a holder #N/A is returned") {
  CHECK(ReturnToExcel(XXloper::Number(1))->val.err == xlerrNA);
  const FakeExcel excel;
  OpenResultHolder();
  for (const char16_t* text : {u"first", u"second"})
    CHECK(TextIn(*ReturnToExcel(XXloper::Text(text))) == text);
  CHECK(ReturnToExcel(XXloper::Error(ExcelError::kDiv0)) ==
        &XXloper::Error(ExcelError::kDiv0).record());
  CloseResultHolder();
  CloseResultHolder();
  const OpenHolder again;
  CHECK(ReturnToExcel(XXloper::Number(3))->val.num == 3);
}

TEST_CASE("Threads hold results of their own, and an ending thread asks Excel for nothing") {
  FakeExcel excel;
  const auto excel_result = [&] {
    auto record = NewExcelResult();
    excel.GiveText(u"from Excel", *record);
    return XXloper::FromExcelResult(std::move(record));
  };
  std::size_t calls = 0;
  {
    const OpenHolder holder;
    const XLOPER12* mine = ReturnToExcel(excel_result());
    std::thread([&] {
      const XLOPER12* other = ReturnToExcel(excel_result());
      CHECK(other != mine);
      CHECK(TextIn(*other) == u"from Excel");
      CHECK(excel.unfreed() == 0);
      calls = excel.calls.size();
    }).join();
    CHECK(TextIn(*mine) == u"from Excel");
  }
  CHECK(excel.calls.size() == calls);
}

TEST_CASE("What belongs to the caller is returned as a copy") {
  const OpenHolder holder;
  XLOPER12 inner[2] = {XXloper::Number(1).record(), XXloper::ErrorByCode(0).record()};
  inner[0].xltype |= xlbitXLFree;
  const XLOPER12 argument = Array(inner, 1, 2);
  const XLOPER12* returned = ReturnToExcel(XXloper::FromArgument(&argument));
  CHECK((returned != &argument && ElementsIn(*returned).data() != inner));
  CHECK(Shown(*returned) == "1,#0;");
  CHECK(ElementsIn(*returned)[0].xltype == xltypeNum);
  const Reference reference({0, 0, 0, 0});
  CHECK(Shown(*ReturnToExcel(XXloper::FromArgument(reference))) == "#15");
}
