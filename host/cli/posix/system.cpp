#include "host/cli/system.h"

#include <unistd.h>

#include <system_error>

#include "host/workbook/text.h"
#include "platform/operating_system.h"

namespace zavhost {

bool StderrIsTerminal() { return isatty(STDERR_FILENO) != 0; }

std::string SystemDescription() { return Utf8FromUtf16(zavrel::OperatingSystemDescription()); }

std::string LanguageName(std::uint16_t language) {
  return language == 9 ? "English" : language == 7 ? "German" : std::to_string(language);
}

bool IsMarkedAsDownloaded(const std::filesystem::path&) { return false; }

}  // namespace zavhost
