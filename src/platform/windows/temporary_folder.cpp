#include "platform/temporary_folder.h"

#include <windows.h>

#include <system_error>

#include "platform/windows/private_access.h"
#include "platform/windows/system_handle.h"

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
  wchar_t name[MAX_PATH + 2];
  const DWORD length = GetTempPathW(MAX_PATH + 2, name);
  const std::filesystem::path folder(length > 0 && length <= MAX_PATH + 1 ? name : L"");
  if (std::filesystem::is_directory(folder, ignored))
    return folder.has_filename() ? folder : folder.parent_path();
  std::filesystem::path profile = ProfileFolder();
  if (std::filesystem::is_directory(profile, ignored)) return profile;
  return {};
}

bool CreateNewFile(const std::filesystem::path& path) noexcept {
  PrivateAccess access;
  return access && SystemHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, access.get(),
                                            CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
}

}  // namespace zavrel
