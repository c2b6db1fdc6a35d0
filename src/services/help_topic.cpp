#include "services/help_topic.h"

#include <algorithm>
#include <system_error>

#include "platform/letter_case.h"
#include "platform/utf.h"
#include "services/help_file.h"

namespace zavrel::services {
namespace {

constexpr std::uint32_t kPrimaryLanguage = 0x3FF;

/// The folders of the languages, and the compiled help in the add-in's folder; English is last,
/// since it is there for every other language.
struct HelpLanguage {
  std::uint32_t id;
  const char* pages;
  const char* compiled;
};
constexpr HelpLanguage kLanguages[] = {
    {7, "help/de", "help/de/ZavrelFuncs8_x64.de.chm"},
    {9, "help/en", "ZavrelFuncs8_x64.chm"},
};

bool IsPageName(std::u16string_view name) {
  return std::ranges::all_of(name, [](char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
           (unit >= u'0' && unit <= u'9') || unit == u'-';
  });
}

}  // namespace

std::optional<HelpTopic> FindHelpTopic(std::span<const FunctionTable> tables,
                                       std::u16string_view name) {
  for (const FunctionTable& table : tables) {
    for (const RegistrationRow& row : table.rows) {
      std::u16string visible = Utf16FromUtf8(row.visible_name);
      if (!EqualIgnoringCase(visible, name)) continue;
      return HelpTopic{std::move(visible), row.help_topic_id < 0
                                               ? std::nullopt
                                               : std::optional<int>(row.help_topic_id)};
    }
  }
  if (name.empty()) return HelpTopic{u"index", std::nullopt};
  if (!IsPageName(name)) return std::nullopt;
  return HelpTopic{std::u16string(name), std::nullopt};
}

std::vector<HelpPlace> HelpPlaces(const std::filesystem::path& folder, const HelpTopic& topic,
                                  std::uint32_t language_id) {
  std::vector<HelpPlace> places;
  std::error_code ignored;
  for (const HelpLanguage& language : kLanguages) {
    if (language.id != (language_id & kPrimaryLanguage) && language.id != kLanguages[1].id)
      continue;
    const std::filesystem::path page = folder / language.pages / (topic.page + u".html");
    const bool has_page = std::filesystem::is_regular_file(page, ignored);
    const std::filesystem::path compiled = folder / language.compiled;
    // What is no function may be no page of the compiled help either.
    if ((has_page || topic.number) && CanShowCompiledHelp(compiled))
      places.push_back({compiled, true});
    if (has_page) places.push_back({page, false});
  }
  return places;
}

}  // namespace zavrel::services
