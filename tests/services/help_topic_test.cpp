#include "services/help_topic.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>

#include "platform/temporary_folder.h"
#include "services/zone_mark.h"

namespace zavrel::services {
namespace {

namespace fs = std::filesystem;

constexpr RegistrationRow Row(const char* name, std::int16_t topic) {
  RegistrationRow row{};
  row.visible_name = name;
  row.help_topic_id = topic;
  return row;
}
constexpr RegistrationRow kRows[] = {Row("ZavDestack", 189), Row("ZavPower", -1)};
const FunctionTable kTables[] = {{.rows = {kRows, 1}}, {.rows = {kRows + 1, 1}}};

TEST_CASE("functions are found in any letter case, pages by name, paths never") {
  const auto destack = FindHelpTopic(kTables, u"zavDESTACK");
  REQUIRE(destack);
  CHECK(destack->page == u"ZavDestack");
  CHECK(destack->number == 189);
  const auto power = FindHelpTopic(kTables, u"ZAVPOWER");
  REQUIRE(power);
  CHECK(power->page == u"ZavPower");
  CHECK_FALSE(power->number);
  CHECK(FindHelpTopic(kTables, u"data-arguments")->page == u"data-arguments");
  CHECK(FindHelpTopic(kTables, u"")->page == u"index");
  for (const std::u16string_view name :
       {u"../ZavMean", u"a\\b", u"C:x", u"a.b", u"ä", u"x.chm::/y"})
    CHECK_FALSE(FindHelpTopic(kTables, name));
}

/// An add-in's folder with these files of help.
class HelpFolder {
 public:
  HelpFolder(std::initializer_list<const char*> files)
      : path_(TemporaryFolder() / "zavrel help test") {
    fs::remove_all(path_);
    for (const char* const file : files) {
      fs::create_directories((path_ / file).parent_path());
      std::ofstream(path_ / file) << "help";
    }
  }
  ~HelpFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  HelpFolder(const HelpFolder&) = delete;
  HelpFolder& operator=(const HelpFolder&) = delete;

  /// The places as paths below the folder. Compiled help is for Windows only: elsewhere it is none.
  std::vector<std::string> Places(const HelpTopic& topic, std::uint32_t language) const {
    std::vector<std::string> places;
    for (const HelpPlace& place : HelpPlaces(path_, topic, language)) {
      CHECK(place.is_compiled == (place.file.extension() == ".chm"));
      places.push_back(place.file.lexically_relative(path_).generic_string());
    }
    return places;
  }

 private:
  fs::path path_;
};

std::vector<std::string> ForThisSystem(std::vector<std::string> places) {
#ifndef _WIN32
  std::erase_if(places, [](const std::string& place) { return place.ends_with(".chm"); });
#endif
  return places;
}

TEST_CASE("help is in the session's language, and in English where that has none") {
  const HelpFolder folder({"ZavrelFuncs8_x64.chm", "help/de/ZavrelFuncs8_x64.de.chm",
                           "help/en/ZavMean.html", "help/en/ZavMax.html", "help/de/ZavMean.html"});
  const HelpTopic mean{u"ZavMean", 12}, power{u"ZavPower", std::nullopt}, max{u"ZavMax", {}};
  const std::vector<std::string> german = {"help/de/ZavrelFuncs8_x64.de.chm",
                                           "help/de/ZavMean.html"};
  const std::vector<std::string> english = {"ZavrelFuncs8_x64.chm", "help/en/ZavMean.html"};
  std::vector<std::string> both = german;
  both.insert(both.end(), english.begin(), english.end());
  for (const std::uint32_t language : {7u, 0x0407u, 0x0C07u})
    CHECK(folder.Places(mean, language) == ForThisSystem(both));
  for (const std::uint32_t language : {9u, 0x0809u, 12u, 0u})
    CHECK(folder.Places(mean, language) == ForThisSystem(english));
  CHECK(folder.Places(max, 7) == ForThisSystem({"ZavrelFuncs8_x64.chm", "help/en/ZavMax.html"}));
  CHECK(folder.Places(power, 7).empty());
  CHECK(HelpFolder({}).Places(mean, 7).empty());
}

TEST_CASE("marks of files from elsewhere") {
  CHECK(IsFromElsewhere("[ZoneTransfer]\r\nZoneId=3\r\nHostUrl=https://example.com/ZoneId=0\r\n"));
  CHECK(IsFromElsewhere("[ZoneTransfer]\r\nZoneId=1\r\n"));
  CHECK_FALSE(IsFromElsewhere("[ZoneTransfer]\r\nZoneId=0\r\n"));
  CHECK_FALSE(IsFromElsewhere(""));
}

}  // namespace
}  // namespace zavrel::services
