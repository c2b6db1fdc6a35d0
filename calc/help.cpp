#include "calc/help.h"

#include <filesystem>
#include <string>

#include "host/capi/callback.h"
#include "platform/module.h"

namespace zavcalc {
namespace {

/// As "de".
std::u16string OfficeLanguage(const UnoReference& context) {
  const UnoReference settings = NewService(context, u"com.sun.star.configuration.DefaultProvider")
                                    .As(u"com.sun.star.lang.XLocalizable");
  struct Locale {  // com.sun.star.lang.Locale
    rtl_uString* language;
    rtl_uString* country;
    rtl_uString* variant;
  } locale{};
  settings.Call(u"com.sun.star.lang.XLocalizable::getLocale", &locale, {});
  std::u16string language(TextOf(locale.language));
  for (rtl_uString* text : {locale.language, locale.country, locale.variant})
    rtl_uString_release(text);
  return language;
}

std::u16string FileUrl(const std::filesystem::path& file) {
  constexpr std::u8string_view kPlain =
      u8"/-_.~:ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
  constexpr std::u16string_view kHexDigits = u"0123456789ABCDEF";
  const std::u8string path = file.generic_u8string();
  std::u16string url = path.starts_with(u8'/') ? u"file://" : u"file:///";
  for (const char8_t byte : path) {
    if (kPlain.find(byte) != std::u8string_view::npos) {
      url += static_cast<char16_t>(byte);
    } else {
      url += {u'%', kHexDigits[byte / 16U], kHexDigits[byte % 16U]};
    }
  }
  return url;
}

}  // namespace

void OpenHelp(const UnoReference& context) {
  const auto help = zavrel::PathOfModuleContaining(reinterpret_cast<const void*>(&MdCallBack12))
                        .parent_path()
                        .parent_path() /
                    "help";
  std::filesystem::path page = help / OfficeLanguage(context) / "index.html";
  if (!std::filesystem::exists(page)) page = help / "en" / "index.html";
  UnoText url(FileUrl(page));
  UnoText parameters(u"");
  std::int32_t only_addresses = 1;  // com.sun.star.system.SystemShellExecuteFlags
  NewService(context, u"com.sun.star.system.SystemShellExecute")
      .As(u"com.sun.star.system.XSystemShellExecute")
      .Call(u"com.sun.star.system.XSystemShellExecute::execute", nullptr,
            {url.address(), parameters.address(), &only_addresses});
}

}  // namespace zavcalc
