// What every object does with names, arguments, failures and references.
#include "automation/windows/late_bound.h"
#include "host/automation/windows/automation_error.h"

namespace zavhost::tests {
namespace {

HRESULT StatusOf(const LateBound& object, const char16_t* name, WORD flags,
                 const std::vector<Variant>& arguments = {}) {
  return object.Invoke(name, flags, arguments).status;
}

}  // namespace

TEST_CASE("a call that the table does not have fails") {
  const TestSession excel;
  const LateBound application = excel.application(), range = excel.range(u"A1");
  CHECK(application.Fails(u"NoSuchMember") == "80020006");
  CHECK(application(u"nAmE") == "\"Microsoft Excel\"");
  // Too many, too few, of another type, by a name that is none.
  CHECK(application.Fails(u"Name", {1}) == "8002000E");
  CHECK(application.Fails(u"International", {3, 4}) == "8002000E");
  CHECK(application.Fails(u"International") == "8002000F");
  CHECK(application.Fails(u"International", {u"three"}) == "80020005");
  CHECK(application.Named(u"International", {{u"Place", 5}}) == "80020006");
  CHECK(application.Named(u"International", {{u"index", 5}}) == "\",\"");
  CHECK(application.Fails(u"Calculate", {1}) == "8002000E");
  CHECK(range.Fails(u"Address", {Variant::Null()}) == "80020005");
  // A property is not called, a method not read, and what is read only not written.
  CHECK(StatusOf(application, u"Name", DISPATCH_METHOD) == DISP_E_MEMBERNOTFOUND);
  CHECK(StatusOf(application, u"Calculate", DISPATCH_PROPERTYGET) == DISP_E_MEMBERNOTFOUND);
  CHECK(application.PutFails(u"Version", u"17.0") == "80020003");
  CHECK(application.PutFails(u"ScreenUpdating", u"maybe") == "80020005");
  CHECK(application.PutFails(u"Calculation", 7) ==
        "800A03EC Unable to set the Calculation property of the Application class");
  CHECK(range.get()->Invoke(0x7FFF, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr,
                            nullptr) == E_POINTER);
  // Arguments behind a property without parameters go to the object that it holds.
  CHECK(application.At(u"Workbooks", {1})(u"Name") == "\"Book1\"");
  CHECK(application.Fails(u"Workbooks", {u"Book9"}) == "8002000B Invalid index.");
}

TEST_CASE("calls fail on request, each in its turn") {
  const TestSession excel;
  Faults& faults = excel.session.faults();
  const LateBound range = excel.range(u"A1");
  const auto write = [&range] { return range.PutFails(u"Value2", 1.0); };
  const std::size_t before = faults.calls();
  CHECK(write() == "empty");
  CHECK(faults.calls() == before + 1);
  faults.FailCall(2, {.status = RPC_E_CALL_REJECTED});
  CHECK(write() == "empty");
  CHECK(write() == "80010001");
  CHECK(write() == "empty");
  // Of a member, of a member of a class, and not of another class.
  faults.FailMember(u"value2", 2, {.status = kExcelBusy});
  CHECK(write() == "800AC472");
  CHECK(range.Fails(u"Value2") == "800AC472");
  faults.FailMember(u"Range.Value2", 1, {.status = kExcelError, .text = u"no"});
  faults.FailMember(u"Worksheet.Value2", 1, {.status = E_FAIL});
  CHECK(write() == "800A03EC no");
  faults.FailMember(u"Value2", 1, {.status = kExcelError});
  CHECK(write() == "800A03EC Unable to set the Value2 property of the Range class");
  faults.FailMember(u"Value2", 1, {.status = S_OK, .value = u"text"});
  CHECK(range(u"Value2") == "\"text\"");
  CHECK(range(u"Value2") == "1");
  // A call that fails has changed nothing.
  faults.FailCall(1, {.status = E_FAIL});
  CHECK(range.PutFails(u"Value2", 2.0) == "80004005");
  CHECK(range(u"Value2") == "1");
  faults.FailCall(1, {.status = E_FAIL});
  faults.Reset();
  CHECK(range(u"Value2") == "1");
  CHECK(faults.calls() == 1);
}

TEST_CASE("objects of what is gone fail and never crash") {
  LateBound late(static_cast<IDispatch*>(nullptr));
  {
    const TestSession excel;
    const LateBound sheets = excel.book().At(u"Worksheets");
    const LateBound added = sheets.At(u"Add"), range = added.At(u"Range", {u"A1"});
    const LateBound font = range.At(u"Font");
    added.Get(u"Delete");
    for (const LateBound& gone : {added, range, font}) CHECK(gone.Fails(u"Name") != "");
    CHECK(added.Fails(u"Name") == "800401A8");
    CHECK(range.PutFails(u"Value2", 1.0) == "800401A8");
    CHECK(font.Fails(u"Bold") == "800401A8");
    const LateBound book = excel.book(), first = excel.sheet();
    book.Get(u"Close", {false});
    CHECK(book.Fails(u"Name") == "80010108");
    CHECK(first.Fails(u"Name") == "80010108");
    CHECK(excel.application()(u"ActiveWorkbook") == "nothing");
    CHECK(excel.application()(u"Selection") == "nothing");
    CHECK(excel.application().Fails(u"Range", {u"A1"}).starts_with("800A03EC"));
  }
  {
    ExcelSession session;
    session.AddWorkbook();
    late = LateBound(session.application()).At(u"ActiveSheet");
    CHECK(session.live_objects() == 1);
  }
  CHECK(late.Fails(u"Name") == "80010108");
}

}  // namespace zavhost::tests
