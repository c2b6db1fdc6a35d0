#include "services/help_file.h"

#include <windows.h>

#include <fstream>
#include <iterator>
#include <string>

#include "services/zone_mark.h"

namespace zavrel::services {
namespace {

/// Of a file on another machine, Windows shows no compiled help.
bool IsElsewhere(const std::filesystem::path& file) {
  return file.native().starts_with(L"\\\\") ||
         GetDriveTypeW(file.root_path().c_str()) == DRIVE_REMOTE;
}

/// The stream in which programs note where they have a file from; empty if there is none.
std::string ZoneMarkOf(const std::filesystem::path& file) {
  std::ifstream mark(std::filesystem::path(file.native() + L":Zone.Identifier"));
  return {std::istreambuf_iterator<char>(mark), {}};
}

}  // namespace

bool CanShowCompiledHelp(const std::filesystem::path& file) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(file, ignored) && !IsElsewhere(file) &&
         !IsFromElsewhere(ZoneMarkOf(file));
}

}  // namespace zavrel::services
