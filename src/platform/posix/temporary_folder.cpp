#include "platform/temporary_folder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <system_error>

#include "platform/posix/file_descriptor.h"

namespace zavrel {

std::filesystem::path TemporaryFolder() {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (!error) return folder.has_filename() ? folder : folder.parent_path();
  const char* home = std::getenv("HOME");
  if (home != nullptr && std::filesystem::is_directory(home, error)) return home;
  return {};
}

bool CreateNewFile(const std::filesystem::path& path) noexcept {
  return static_cast<bool>(FileDescriptor(
      open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR)));
}

}  // namespace zavrel
