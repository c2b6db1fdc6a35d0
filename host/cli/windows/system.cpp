#include "host/cli/system.h"

#include <io.h>

#include <cstdio>

#include "host/workbook/text.h"
#include "platform/module.h"
#include "platform/operating_system.h"
#include "platform/windows/wide.h"

namespace zavhost {

bool StderrIsTerminal() { return _isatty(_fileno(stderr)) != 0; }

std::string SystemDescription() {
  std::string text = Utf8FromUtf16(zavrel::OperatingSystemDescription());
  // An emulation of Windows exports its version.
  const auto library = zavrel::LoadedModule::ByName(u"ntdll");
  const auto version = library ? library->FindExport("wine_get_version") : nullptr;
  if (version == nullptr) return text;
  return text + ", under Wine " + zavrel::AsFunction<const char*()>(version)();
}

std::string LanguageName(std::uint16_t language) {
  wchar_t name[128];
  const LCID locale = MAKELCID(MAKELANGID(PRIMARYLANGID(language), SUBLANG_DEFAULT), SORT_DEFAULT);
  if (GetLocaleInfoW(locale, LOCALE_SENGLANGUAGE, name, 128) <= 1) return std::to_string(language);
  return Utf8FromUtf16(zavrel::FromWide(name));
}

bool IsMarkedAsDownloaded(const std::filesystem::path& file) {
  const std::wstring stream = file.wstring() + L":Zone.Identifier";
  return GetFileAttributesW(stream.c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace zavhost
