#include "platform/temporary_folder.h"

#include <cstdlib>
#include <system_error>

namespace zavrel {

std::filesystem::path TemporaryFolder() {
  std::error_code error;
  std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (!error) return folder;
  const char* home = std::getenv("HOME");
  if (home != nullptr && std::filesystem::is_directory(home, error)) return home;
  return std::filesystem::current_path(error);
}

}  // namespace zavrel
