// The application, workbooks and sheets.
#include "automation/windows/late_bound.h"

namespace zavhost::tests {

TEST_CASE("the application's own state") {
  const TestSession excel({.add_ins = {},
                           .country = 49,
                           .country_setting = 43,
                           .decimal_separator = u',',
                           .list_separator = u';'});
  const LateBound application = excel.application();
  CHECK(application(u"Version") == "\"16.0\"");
  CHECK(application(u"International", {1}) == "49");
  CHECK(application(u"International", {2}) == "43");
  CHECK(application(u"International", {3}) == "\",\"");
  CHECK(application(u"International", {5}) == "\";\"");
  for (const char16_t* name :
       {u"ScreenUpdating", u"EnableEvents", u"DisplayAlerts", u"Interactive"}) {
    CHECK(application(name) == "TRUE");
    application.Put(name, false);
    CHECK(application(name) == "FALSE");
  }
  application.Put(u"StatusBar", u"busy");
  CHECK(application(u"StatusBar") == "\"busy\"");
  application.Put(u"StatusBar", false);
  CHECK(application(u"StatusBar") == "FALSE");
  CHECK(application(u"Calculation") == "-4105");
}

TEST_CASE("input boxes give what a test queued") {
  TestSession excel;
  const auto ask = [&](std::int32_t type) {
    return excel.application().Named(u"InputBox", {{u"Prompt", u"Which?"}, {u"Type", type}});
  };
  CHECK(ask(2) == "FALSE");
  excel.session.QueueInput(u"text");
  excel.session.QueueInput(u"no number");
  excel.session.QueueInput(u"2.5");
  CHECK(ask(2) == "\"text\"");
  CHECK(ask(1) == "2.5");
  excel.session.QueueCancel();
  CHECK(ask(8) == "FALSE");
  excel.session.QueueInput(u"=Sheet1!$B$2:$C$3");
  const Variant chosen = excel.application().Get(
      u"InputBox", {u"", Variant::Missing(), Variant::Missing(), Variant::Missing(),
                    Variant::Missing(), Variant::Missing(), Variant::Missing(), 8});
  REQUIRE(Shown(chosen) == "object");
  CHECK(LateBound(chosen.get().pdispVal)(u"Address") == "\"$B$2:$C$3\"");
  excel.application().Get(u"Goto", {chosen});
  CHECK(excel.application().At(u"Selection")(u"Address") == "\"$B$2:$C$3\"");
}

TEST_CASE("sheets come, go, move their references and change their names") {
  const TestSession excel;
  const LateBound sheets = excel.book().At(u"Worksheets"), first = excel.sheet();
  const LateBound second = sheets.At(u"Add", {Variant::Missing(), Variant(first)});
  CHECK(second(u"Name") == "\"Sheet2\"");
  CHECK(second(u"Index") == "2");
  second.At(u"Range", {u"A1"}).Put(u"Value2", 5.0);
  first.At(u"Range", {u"A1"}).Put(u"Formula", u"=Sheet2!A1*2+SUM(Sheet2!A:A)");
  second.Put(u"Name", u"My data");
  const LateBound formula = first.At(u"Range", {u"A1"});
  CHECK(formula(u"Formula") == "\"='My data'!A1*2+SUM('My data'!A:A)\"");
  CHECK(formula(u"Value2") == "15");
  // A sheet in front: the references stay with their sheets.
  const LateBound front = sheets.At(u"Add", {Variant(first)});
  CHECK(front(u"Index") == "1");
  CHECK(formula(u"Value2") == "15");
  for (const char16_t* name : {u"", u"a/b", u"'a'", u"A name that has more than 31 characters"})
    CHECK(front.PutFails(u"Name", name) ==
          "800A03EC Unable to set the Name property of the Worksheet class");
  CHECK(front.PutFails(u"Name", u"MY DATA") ==
        "800A03EC That name is already taken. Try a different one.");

  second.Get(u"Copy", {Variant(first)});
  CHECK(sheets(u"Count") == "4");
  CHECK(sheets.At(u"Item", {2})(u"Name") == "\"My data (2)\"");
  CHECK(sheets.At(u"Item", {u"my DATA (2)"}).At(u"Range", {u"A1"})(u"Value2") == "5");
  // With its question unanswered a sheet stays.
  CHECK(second(u"Delete") == "FALSE");
  excel.application().Put(u"DisplayAlerts", false);
  CHECK(second(u"Delete") == "TRUE");
  CHECK(formula(u"Formula") == "\"=#REF!*2+SUM(#REF!)\"");
  CHECK(formula(u"Value2") == "#2023");
}

TEST_CASE("the last visible sheet stays, and hidden ones are hidden") {
  const TestSession excel;
  const LateBound sheets = excel.book().At(u"Sheets"), first = excel.sheet();
  CHECK(first.PutFails(u"Visible", 0) ==
        "800A03EC Unable to set the Visible property of the Worksheet class");
  CHECK(first.Fails(u"Delete") == "800A03EC Delete method of Worksheet class failed");
  const LateBound store = sheets.At(u"Add");
  store.Put(u"Visible", 2);
  CHECK(store(u"Visible") == "2");
  CHECK(excel.sheet()(u"Name") == "\"Sheet1\"");
  CHECK(store.Fails(u"Activate") == "800A03EC Activate method of Worksheet class failed");
  CHECK(store.At(u"Range", {u"A1"}).Fails(u"Select") ==
        "800A03EC Select method of Range class failed");
  CHECK(store.Fails(u"Delete").starts_with("800A03EC"));
  store.Put(u"Visible", false);
  CHECK(store(u"Visible") == "0");
  CHECK(store(u"Delete") == "TRUE");
  CHECK(sheets(u"Count") == "1");
}

TEST_CASE("protection refuses what Excel refuses") {
  const TestSession excel;
  const LateBound book = excel.book(), sheet = excel.sheet(), range = excel.range(u"A1:B2");
  const std::string is_protected =
      "800A03EC The cell or chart you're trying to change is on a protected sheet. To make a "
      "change, "
      "unprotect the sheet. You might be requested to enter a password.";
  const std::string is_wrong =
      "800A03EC The password you supplied is not correct. Verify that the CAPS LOCK key is off and "
      "be "
      "sure to use the correct capitalization.";
  excel.range(u"A1").Put(u"Locked", false);
  CHECK(sheet.Named(u"Protect", {{u"Password", u"secret"}, {u"AllowFormattingColumns", true}}) ==
        "empty");
  CHECK(sheet(u"ProtectContents") == "TRUE");
  CHECK(sheet(u"ProtectionMode") == "FALSE");
  CHECK(sheet.At(u"Protection")(u"AllowFormattingColumns") == "TRUE");
  CHECK(sheet.At(u"Protection")(u"AllowSorting") == "FALSE");
  CHECK(range.PutFails(u"Value2", 1.0) == is_protected);
  CHECK(range.PutFails(u"Formula", u"=1") == is_protected);
  CHECK(range.Fails(u"Clear") == is_protected);
  CHECK(excel.range(u"A1").PutFails(u"Value2", 1.0) == "empty");
  CHECK(range.At(u"Font").PutFails(u"Bold", true) ==
        "800A03EC Unable to set the Bold property of the Font class");
  CHECK(range.PutFails(u"ColumnWidth", 9.0) == "empty");
  CHECK(range.PutFails(u"RowHeight", 9.0).starts_with("800A03EC"));
  CHECK(sheet.Fails(u"Unprotect") == is_wrong);
  CHECK(sheet.Fails(u"Unprotect", {u"Secret"}) == is_wrong);
  // Protected again for users only: macros change everything, the password stays.
  sheet.Get(u"Protect", {Variant::Missing(), true, true, true, true});
  CHECK(range.PutFails(u"Value2", 1.0) == "empty");
  sheet.Get(u"Unprotect", {u"secret"});
  CHECK(sheet(u"ProtectContents") == "FALSE");

  book.Get(u"Protect", {u"key"});
  CHECK(book(u"ProtectStructure") == "TRUE");
  CHECK(book.At(u"Worksheets").Fails(u"Add") == "800A03EC Add method of Sheets class failed");
  CHECK(sheet.PutFails(u"Name", u"Other").starts_with("800A03EC"));
  CHECK(book.Fails(u"Unprotect", {u"kex"}) == is_wrong);
  book.Get(u"Unprotect", {u"key"});
  sheet.Put(u"Name", u"Other");
}

TEST_CASE("an add-in computes its functions") {
  const TestSession excel({.add_ins = {ZAVREL_ADD_IN}});
  excel.range(u"A1:A3").Put(u"Value2", Block({{1.0}, {2.0}, {6.0}}));
  excel.range(u"B1").Put(u"Formula", u"=ZavMean(A1:A3)");
  CHECK(excel.range(u"B1")(u"Value2") == "3");
  excel.range(u"A3").Put(u"Value2", 3.0);
  CHECK(excel.range(u"B1")(u"Value2") == "2");
  CHECK(excel.session.engine().judge().count() == 0);
}

}  // namespace zavhost::tests
