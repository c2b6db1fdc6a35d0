#include "frame/session.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "excel/wide_text.h"
#include "frame/announce.h"
#include "frame/announced_text.h"
#include "frame/log_of.h"
#include "frame/opening.h"
#include "frame/sample_add_in.h"
#include "platform/export.h"
#include "platform/message_box.h"
#include "support/fake_excel.h"
#include "support/quiet_services.h"

ZAV_EXPORT std::int32_t xlAutoOpen();
ZAV_EXPORT std::int32_t xlAutoClose();
ZAV_EXPORT XLOPER12* xlAddInManagerInfo12(const XLOPER12*);
ZAV_EXPORT void InitializeXlaInformationW(void*, void*, std::uint16_t, const char16_t*,
                                          std::int32_t, const char16_t*, const char16_t*);
ZAV_EXPORT void UninitializeXlaInformation(std::uint16_t);

namespace zavrel::tests {
namespace {

Announcement From(std::uint16_t application, std::uint32_t language = 9) {
  Announcement announcement;
  announcement.application_id = application;
  announcement.language_id = language;
  return announcement;
}

struct OpenSession {
  explicit OpenSession(SessionServices services = QuietServices(), AddIn add_in = ThisAddIn()) {
    Session::Open(add_in, std::move(services));
  }
  ~OpenSession() { Session::Close(); }
  Session* operator->() const { return Session::Current(); }
};

}  // namespace

TEST_CASE("announcing and withdrawing decide what is registered") {
  const FakeExcel excel;
  {
    static int asked = 0;
    const FunctionTable tables[] = {{SampleFunctions()},
                                    {SampleExtension(), [] { return ++asked != 2; }}};
    const OpenSession session(QuietServices(), {.name = u"Sample", .tables = tables});
    CHECK(excel.functions().size() == 1);
    const struct {
      bool announced;
      std::uint16_t application;
      std::size_t registered;
      int asked;  // so far, whether the extension has what it needs: the second time it has not
    } steps[] = {{true, 7, 7, 0},     {true, 5, 9, 1},      {true, 5, 7, 2},  {true, 5, 9, 3},
                 {false, 5, 7, 3},    {false, 5, 7, 3},     {false, 3, 7, 3}, {true, 10, 7, 3},
                 {true, 65535, 7, 3}, {false, 65535, 7, 3}, {true, 0, 7, 3},  {false, 7, 1, 3},
                 {false, 0, 1, 3}};
    for (const auto& step : steps) {
      CAPTURE(&step - steps);
      const int before = excel.registrations;
      if (step.announced) {
        session->Announce(From(step.application));
      } else {
        session->Withdraw(step.application);
      }
      CHECK(excel.functions().size() == step.registered);
      CHECK(asked == step.asked);
      CHECK((excel.registrations == before || step.application < 10));
    }
    CHECK(excel.names() == std::set<std::u16string>{u"ZavVersion"});
  }
  CHECK(excel.functions().empty());
  CHECK(excel.names().empty());
}

TEST_CASE("a companion's language is remembered, and what cannot be written is let be") {
  FakeExcel excel;
  SessionServices services = QuietServices();
  std::u16string written;
  services.write_user_number = [&](const std::u16string& key, const std::u16string& name,
                                   std::uint32_t value) {
    written = key + u'|' + name + u'|' + Utf16FromUtf8(std::to_string(value));
    throw std::runtime_error("no registry");
  };
  const OpenSession session(services);
  session->Announce(From(5, 7));
  CHECK(written == u"Software\\Brennic\\Sample\\8.0\\Languages|5|7");
  CHECK(session->language_id() == 7);
  CHECK(excel.functions().size() == 7);
  const auto help = [&] { return excel.functions().at(u"Mean").texts[9]; };
  CHECK(help() == u"7:1114 {1}");
  session->Announce(From(5, 0));  // names no language: English
  CHECK(session->language_id() == 0);
  CHECK(help() == u"9:1114 {1}");
  session->Announce(From(5, 0x0C07));
  CHECK(help() == u"7:1114 {1}");
  session->Announce(From(5, 0xFFFFFFFF));
  CHECK(help() == u"9:1114 {1}");
}

TEST_CASE("help is where the companion says, else where its installation says") {
  FakeExcel excel;
  SessionServices services = QuietServices();
  std::u16string asked;
  services.machine_text = [&](const std::u16string& key, const std::u16string& name) {
    asked = key + u'|' + name;
    return std::optional<std::u16string>(u"installed.chm");
  };
  const OpenSession session(services);
  const auto topic = [&] { return excel.functions().at(u"Mean").texts[8]; };

  session->Announce(From(7));
  CHECK(topic() == u"installed.chm!198");
  CHECK(asked == u"Software\\Brennic\\Zavrel\\8.0|HelpLocation");
  Announcement announcement = From(5);
  announcement.version = u"9.12.3";
  session->Announce(announcement);
  CHECK(asked == u"Software\\Brennic\\Zavrel\\9.12|HelpLocation");
  announcement.help_location = u"D:\\own.chm";
  session->Announce(announcement);
  CHECK(topic() == u"D:\\own.chm!198");
}

TEST_CASE("help beside the library serves where nothing else is said") {
  FakeExcel excel;
  const HelpFileInFolder files[] = {{9, u"help of a test.chm"}, {7, u"Hilfe eines Tests.chm"}};
  AddIn add_in = ThisAddIn();
  add_in.help_files = files;
  const OpenSession session(QuietServices(), add_in);
  const std::filesystem::path folder = LibraryIdentity::OfThisLibrary().folder();
  const auto topic_in = [&](std::uint32_t language) {
    session->Announce(From(7, language));
    return excel.functions().at(u"Mean").texts[8];
  };
  const auto topic_of = [&](const HelpFileInFolder& file) {
    return Utf16FromPath(folder / file.file) + u"!198";
  };
  CHECK(topic_in(9).empty());
  std::ofstream(folder / files[0].file) << "help";
  CHECK(topic_in(9) == topic_of(files[0]));
  CHECK(topic_in(0x0407) == topic_of(files[0]));
  std::ofstream(folder / files[1].file) << "Hilfe";
  CHECK(topic_in(0x0407) == topic_of(files[1]));
  for (const HelpFileInFolder& file : files) std::filesystem::remove(folder / file.file);
}

TEST_CASE("hostile announcements") {
  for (const char16_t* version : {u"", u"8", u".", u"8.", u"99999999999.1", u"8.x", u"\u0668.1"}) {
    CHECK(ParseVersion(version) == ProductVersion{8, 0});
  }
  CHECK(ParseVersion(u"8.1") == ProductVersion{8, 1});
  Announcement announcement;
  announcement.workbook_file = u"C:\\a.b\\companion.xlam";
  CHECK(ApplicationRecord(announcement).workbook_folder == u"C:\\a.b\\");
  CHECK(ApplicationRecord(announcement).workbook_name == u"companion.xlam");
  announcement.workbook_file = u"\\";
  CHECK(ApplicationRecord(announcement).workbook_name.empty());

  CHECK(AnnouncedText(nullptr).empty());
  CHECK(AnnouncedText(std::u16string(100000, u'x').c_str()).size() == kAnnouncedTextLimit);
  CHECK(IsWideText({"a\0b\0", 4}));
  CHECK(IsWideText({"\x10\x04.\0", 4}));
  for (const std::string_view ansi : {"", "a", "ab", "abc", "C:\\x.xlam", "\xE4\xF6"}) {
    CHECK_FALSE(IsWideText(ansi));
  }
}

TEST_CASE("entry points: opening and closing in any order, ten times over") {
  const FakeExcel excel;
  const auto announce = [] {
    InitializeXlaInformationW(nullptr, nullptr, 5, nullptr, 9, u"", nullptr);
  };
  CHECK(xlAutoClose() == 1);
  announce();
  UninitializeXlaInformation(5);
  CHECK(xlAutoClose() == 1);  // what was open before in this process is open again
  CHECK(excel.functions().empty());
  for (int round = 0; round < 10; ++round) {
    CHECK(xlAutoOpen() == 1);
    CHECK(xlAutoOpen() == 1);
    CHECK(excel.functions().size() == 1);
    announce();
    CHECK(excel.functions().size() == 7);
    CHECK(xlAutoOpen() == 1);
    CHECK(excel.functions().size() == 7);
    if (round % 2 == 0) UninitializeXlaInformation(5);
    CHECK(xlAutoClose() == 1);
    CHECK(xlAutoClose() == 1);
    CHECK(excel.functions().empty());
    announce();  // after a close that the user cancelled
    CHECK(excel.functions().size() == 7);
    CHECK(xlAutoClose() == 1);
    CHECK(excel.functions().empty());
  }
}

TEST_CASE("the list of add-ins learns the long name, open or not, and nothing else") {
  const auto answer = [](const XXloper& action) {
    return XXloper::FromArgument(xlAddInManagerInfo12(&action.record()));
  };
  const XXloper first = answer(XXloper::Number(1));
  CHECK(first.text() == u"Sample add-in");
  CHECK(answer(XXloper::Integer(1)).text() == u"Sample add-in");
  for (const XXloper& other : {XXloper::Number(2), XXloper::Number(1.5), XXloper::Text(u"x"),
                               XXloper::Missing(), XXloper::Boolean(true)})
    CHECK(answer(other).record().val.err == xlerrValue);
  CHECK(xlAddInManagerInfo12(nullptr)->val.err == xlerrValue);
  CHECK(first.text() == u"Sample add-in");  // Excel frees nothing
}

TEST_CASE("a failed opening is shown once and leaves nothing behind") {
  const FakeExcel excel;
  std::vector<std::u16string> shown;
  SetMessageBoxHandler([&](const auto&, const auto& text) { shown.push_back(text); });
  CHECK_FALSE(
      OpenAddIn(ThisAddIn(), []() -> SessionServices { throw VekKernelObjectError("A::B"); }));
  CHECK_FALSE(OpenAddIn(ThisAddIn(), []() -> SessionServices { throw std::bad_alloc(); }));
  SetMessageBoxHandler({});
  REQUIRE(shown.size() == 2);
  CHECK(shown[0] == u"VekKernelObjectError: A::B");
  CHECK_FALSE(shown[1].empty());
  CHECK(Session::Current() == nullptr);
  CHECK(excel.functions().empty());
  CHECK(OpenAddIn(ThisAddIn(), &QuietServices));
  CloseAddIn();
}

TEST_CASE("an add-in without a callback opens and says in the log why nothing is registered") {
  const std::string log = LogOf([] {
    CHECK(OpenAddIn(ThisAddIn(), &QuietServices));
    CloseAddIn();
  });
  CHECK(log.find("\nCallback of Excel not found: XLCall32 is not loaded, and the program has no "
                 "MdCallBack12; return code 32, value #VALUE!\n") != log.npos);
  CHECK(log.find("\nRegistration refused: ZavVersion, return code 32, value #VALUE!\n") !=
        log.npos);
}

TEST_CASE("what a failed announcement did register is taken back") {
  const FakeExcel excel;
  {
    const FunctionTable tables[] = {{SampleFunctions()},
                                    {SampleExtension(), []() -> bool { throw std::bad_alloc(); }}};
    const OpenSession session(QuietServices(), {.name = u"Sample", .tables = tables});
    CHECK_THROWS_AS(session->Announce(From(5)), std::bad_alloc);
    CHECK(excel.functions().size() == 7);
  }
  CHECK(excel.functions().empty());
}

}  // namespace zavrel::tests
