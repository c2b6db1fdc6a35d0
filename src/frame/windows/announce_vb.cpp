// The announcement from the macro language.
#include <windows.h>
// The order matters: the automation types build on the basic ones.
#include <oleauto.h>

#include <algorithm>

#include "frame/announce.h"
#include "frame/announced_text.h"
#include "frame/macro_call.h"
#include "platform/export.h"

namespace zavrel {
namespace {

/// The text of a macro's string in either of its two forms (see IsWideText), up to its first zero
/// character.
std::u16string MacroText(BSTR text) {
  if (text == nullptr) return {};
  const std::string_view bytes(reinterpret_cast<const char*>(text), SysStringByteLen(text));
  if (IsWideText(bytes)) return AnnouncedText(reinterpret_cast<const char16_t*>(text));
  const std::string_view narrow = bytes.substr(0, kAnnouncedTextLimit);
  std::u16string wide(narrow.size(), u'\0');  // never more units than bytes
  const int written =
      MultiByteToWideChar(CP_ACP, 0, narrow.data(), static_cast<int>(narrow.size()),
                          reinterpret_cast<wchar_t*>(wide.data()), static_cast<int>(wide.size()));
  wide.resize(static_cast<std::size_t>(std::max(written, 0)));
  return AnnouncedText(wide.c_str());
}

}  // namespace

/// InitializeXlaInformationW for texts of the macro language: parameters declared `As String`, or
/// passed by StrPtr.
ZAV_EXPORT void InitializeXlaInformationVB(IDispatch* excel_application, IDispatch* companion,
                                           std::uint16_t application_id, BSTR workbook_file,
                                           std::int32_t language_id, BSTR version,
                                           BSTR help_location) {
  UntracedCall([&] {
    AnnounceToSession({.excel_application = excel_application,
                       .companion = companion,
                       .application_id = application_id,
                       .workbook_file = MacroText(workbook_file),
                       .language_id = static_cast<std::uint32_t>(language_id),
                       .version = MacroText(version),
                       .help_location = MacroText(help_location)});
  });
}

}  // namespace zavrel
