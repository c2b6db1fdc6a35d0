// Automation objects that a companion hands over: counted, asked for the calling formula, never
// more.
#include <doctest/doctest.h>

#include "frame/calling_cell.h"
#include "frame/session.h"
#include "support/fake_excel.h"
#include "support/fake_object.h"
#include "support/quiet_services.h"

namespace zavrel::tests {

TEST_CASE("the calling cell's formula, and nothing where there is none") {
  FakeObject cell;
  cell.texts[L"Formula"] = L"=ZavMean(16384)";
  FakeObject application;
  application.objects[L"Caller"] = &cell;
  CHECK(CallingCellFormula(&application) == u"=ZavMean(16384)");
  CHECK((application.references == 1 && cell.references == 1));

  CHECK_FALSE(CallingCellFormula(nullptr));
  application.objects[L"Caller"] = nullptr;
  CHECK_FALSE(CallingCellFormula(&application));
  application.objects.clear();
  application.texts[L"Caller"] = L"called from a menu";
  CHECK_FALSE(CallingCellFormula(&application));
  application.texts.clear();
  CHECK_FALSE(CallingCellFormula(&application));
}

TEST_CASE("announced objects are held as long as they are announced, and never called") {
  FakeObject application;
  FakeObject companion;
  const FakeExcel excel;
  Session::Open(ThisAddIn(), QuietServices());
  Announcement announcement;
  announcement.application_id = 5;
  announcement.excel_application = &application;
  announcement.companion = &companion;
  Session::Current()->Announce(announcement);
  Session::Current()->Announce(announcement);
  CHECK((application.references == 2 && companion.references == 2));
  Session::Current()->Withdraw(5);
  CHECK(companion.references == 1);
  Session::Current()->Announce(announcement);
  Session::Close();
  CHECK((application.references == 1 && companion.references == 1));
  CHECK((application.calls == 0 && companion.calls == 0));
}

}  // namespace zavrel::tests
