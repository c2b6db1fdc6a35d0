#include <doctest/doctest.h>

#include <limits>
#include <map>

#include "diagnostics/log.h"
#include "diagnostics/message_library.h"
#include "platform/temporary_folder.h"

namespace zavrel {
namespace {

MessageLibrary TestLibrary() {
  static const std::map<std::pair<int, int>, std::u16string> texts = {
      {{9, 400}, u"Statistics"}, {{7, 400}, u"Statistik"}, {{0x0807, 400}, u"Schweiz"},
      {{9, 401}, u"English"},    {{7, 401}, u""},          {{7, 402}, u"nur deutsch"},
      {{9, 65535}, u"last"},     {{9, 0}, u"first"},
  };
  return MessageLibrary([](std::uint16_t language, std::uint16_t id) {
    const auto found = texts.find({language, id});
    return found == texts.end() ? std::nullopt : std::optional(found->second);
  });
}

TEST_CASE("texts: exact language, primary language, English, the number") {
  const MessageLibrary library = TestLibrary();
  CHECK(library.Text(400, 7) == u"Statistik");
  CHECK(library.Text(400, 0x0407) == u"Statistik");
  CHECK(library.Text(400, 0x0807) == u"Schweiz");
  CHECK(library.Text(400, 9) == u"Statistics");
  CHECK(library.Text(400, 12) == u"Statistics");
  CHECK(library.Text(401, 7) == u"English");  // an empty text is a missing one
  CHECK(library.Text(402, 9) == u"Message 402");
  CHECK(library.Text(400, 0) == u"Statistics");
  CHECK(library.Text(400, 0xFFFFFFFF) == u"Statistics");
}

TEST_CASE("ids that no text can have do not become another's") {
  const MessageLibrary library = TestLibrary();
  CHECK(library.Text(kNoMessage, 9).empty());
  CHECK(library.Text(65536, 9) == u"Message 65536");
  CHECK(library.Text(-65536, 9) == u"Message -65536");
  CHECK(library.Text(std::numeric_limits<std::int32_t>::min(), 9) == u"Message -2147483648");
  CHECK(MessageLibrary().Text(400, 9) == u"Message 400");
}

TEST_CASE("arguments are inserted by position") {
  const MessageArguments arguments = {std::int64_t{-5}, 0.1, u"A1 {1}"};
  const auto composed = [&](std::u16string_view text) { return ComposeMessage(text, arguments); };
  CHECK(composed(u"{3}: {2}, {1}, {1}.") == u"A1 {1}: 0.1, -5, -5.");
  CHECK(composed(u"{{1} {{{1}}") == u"{1} {-5}");
  CHECK(composed(u"{001}") == u"-5");
}

TEST_CASE("whatever is no placeholder of an argument stays as it is written") {
  const MessageArguments one = {std::int64_t{1}};
  for (const char16_t* text :
       {u"", u"{", u"}", u"{}", u"{0}", u"{2}", u"{1", u"{-1}", u"{ 1}", u"{1 }", u"{1x}", u"{x1}",
        u"{18446744073709551617}", u"{99999999999999999999999999999999}", u"a}{", u"%s %n {"}) {
    CHECK(ComposeMessage(text, one) == text);
  }
  CHECK(ComposeMessage(u"{1}", {}) == u"{1}");
  CHECK(ComposeMessage(std::u16string_view(u"a{1}b", 3), one) == u"a{1");
}

TEST_CASE("numbers are plain and whole") {
  const auto text_of = [](MessageArgument argument) {
    return ComposeMessage(u"{1}", {std::move(argument)});
  };
  CHECK(text_of(std::numeric_limits<std::int64_t>::min()) == u"-9223372036854775808");
  CHECK(text_of(1234567.0) == u"1234567");
  CHECK(text_of(2.2250738585072014e-308) == u"2.2250738585072014e-308");
  CHECK(text_of(std::numeric_limits<double>::infinity()) == u"inf");
}

TEST_CASE("a missing library gives fallback texts and one line in the log") {
  const auto folder = TemporaryFolder() / "zavrel message test";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "BrennicLoggingDetail.txt") << "";
  OpenLog(folder, "Session8");
  const MessageLibrary library = MessageLibrary::Open(folder);
  CHECK(library.Text(400, 9) == u"Message 400");
  CHECK(library.Text(401, 9) == u"Message 401");
  CloseLog();
  std::ifstream log(folder / "Session8.log");
  std::string line;
  std::getline(log, line);
  std::getline(log, line);
  CHECK(line.find("ZavrelMessages65535") != std::string::npos);  // this program states no version
  CHECK_FALSE(std::getline(log, line));
  log.close();
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace zavrel
