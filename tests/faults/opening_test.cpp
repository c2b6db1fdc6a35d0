// A host that fails while an add-in opens, announces its companion and closes: one call after
// another, in every way that a call can fail. Opened again without a failure, it works whole.
#include <doctest/doctest.h>

#include "faults/host_faults.h"
#include "frame/session.h"
#include "platform/export.h"
#include "platform/message_box.h"
#include "platform/utf.h"
#include "support/fake_excel.h"

namespace zavrel {
ZAV_EXPORT std::int32_t xlAutoOpen();
ZAV_EXPORT std::int32_t xlAutoClose();
ZAV_EXPORT XLOPER12* xlAddInManagerInfo12(const XLOPER12* action);
ZAV_EXPORT void InitializeXlaInformationW(void*, void*, std::uint16_t, const char16_t*,
                                          std::int32_t, const char16_t*, const char16_t*);
ZAV_EXPORT void UninitializeXlaInformation(std::uint16_t application_id);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

/// A life in a host: what was registered after each step of it.
struct Life {
  bool opened = false;
  std::vector<std::size_t> registered;
  std::set<std::u16string> names_left;
};

Life Live(FakeExcel& excel) {
  Life life;
  const auto note = [&] { life.registered.push_back(excel.functions().size()); };
  const auto announce = [] {
    InitializeXlaInformationW(nullptr, nullptr, kFunctionsCompanion, u"book.xlam", 9, u"8",
                              u"h.chm");
  };
  const std::int32_t opened = xlAutoOpen();
  CHECK((opened == 0 || opened == 1));
  life.opened = opened == 1;
  CHECK((Session::Current() != nullptr) == life.opened);
  note();
  announce();
  note();
  UninitializeXlaInformation(kFunctionsCompanion);
  note();
  announce();
  const Argument name(Cell(1.0));
  CHECK(Shown(*xlAddInManagerInfo12(name)) == Utf8FromUtf16(ThisAddIn().title));
  CHECK(xlAutoClose() == 1);
  CHECK(Session::Current() == nullptr);
  note();
  life.names_left = excel.names();
  return life;
}

/// The boxes that the add-in shows, for as long as this lives.
struct Boxes {
  Boxes() {
    SetMessageBoxHandler([this](const std::u16string&, const std::u16string&) { ++shown; });
  }
  ~Boxes() { SetMessageBoxHandler({}); }
  Boxes(const Boxes&) = delete;
  Boxes& operator=(const Boxes&) = delete;

  int shown = 0;
};

Life WholeLife() {
  FakeExcel excel;
  return Live(excel);
}

/// False if there is no call at this place.
bool LivesThrough(const Fault& fault, int place, const Life& whole) {
  const Boxes boxes;
  FakeExcel excel;
  excel.registers_twice = true;
  bool reached = false;
  {
    const PlantedFault planted(excel, fault, place);
    const Life life = Live(excel);
    reached = planted.reached();
    INFO(std::string(fault.name), " in the place of call ", place);
    CHECK(life.opened == (boxes.shown == 0));
    CHECK(excel.unfreed() == 0);
  }
  const Life again = WholeLife();
  INFO("after ", std::string(fault.name), " in the place of call ", place);
  CHECK(again.opened);
  CHECK(again.registered == whole.registered);
  CHECK(again.names_left == whole.names_left);
  return reached;
}

}  // namespace

TEST_CASE("whichever call fails while an add-in opens and closes, the next opening is whole") {
  const Life whole = WholeLife();
  CHECK(whole.opened);
  CHECK(whole.registered[1] > 10);
  CHECK(whole.registered.back() == 0);
  int failures = 0;
  for (const Fault& fault : Faults()) {
    for (int place = 0; LivesThrough(fault, place, whole); place += 1 + place / 2) ++failures;
  }
  CHECK(failures > 100);
}

}  // namespace zavrel::tests
