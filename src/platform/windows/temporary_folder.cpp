#include "platform/temporary_folder.h"

#include <windows.h>

#include <system_error>

namespace zavrel {
namespace {

std::filesystem::path ProfileFolder() {
  wchar_t folder[MAX_PATH + 1];
  const DWORD length = GetEnvironmentVariableW(L"USERPROFILE", folder, MAX_PATH + 1);
  return length > 0 && length <= MAX_PATH ? std::filesystem::path(folder) : std::filesystem::path();
}

}  // namespace

std::filesystem::path TemporaryFolder() {
  std::error_code ignored;
  wchar_t folder[MAX_PATH + 2];
  const DWORD length = GetTempPathW(MAX_PATH + 2, folder);
  if (length > 0 && length <= MAX_PATH + 1 && std::filesystem::is_directory(folder, ignored))
    return folder;
  std::filesystem::path profile = ProfileFolder();
  if (std::filesystem::is_directory(profile, ignored)) return profile;
  return {};
}

bool CreateNewFile(const std::filesystem::path& path) noexcept {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  return file != INVALID_HANDLE_VALUE && CloseHandle(file) != FALSE;
}

}  // namespace zavrel
