#include "platform/file_version.h"

#include <windows.h>

#include <cstddef>
#include <vector>

#include "platform/windows/memory_error.h"

namespace zavrel {

std::optional<FileVersion> ReadFileVersion(const std::filesystem::path& file) {
  DWORD unused = 0;
  const DWORD size = GetFileVersionInfoSizeW(file.c_str(), &unused);
  if (size == 0) {
    ThrowIfNoMemory(GetLastError());
    return std::nullopt;
  }
  std::vector<std::byte> resource(size);
  void* found = nullptr;
  UINT length = 0;
  if (!GetFileVersionInfoW(file.c_str(), 0, size, resource.data()) ||
      !VerQueryValueW(resource.data(), L"\\", &found, &length) ||
      length < sizeof(VS_FIXEDFILEINFO)) {
    return std::nullopt;
  }
  const auto& version = *static_cast<const VS_FIXEDFILEINFO*>(found);
  if (version.dwSignature != VS_FFI_SIGNATURE) return std::nullopt;
  return FileVersion{HIWORD(version.dwFileVersionMS), LOWORD(version.dwFileVersionMS),
                     HIWORD(version.dwFileVersionLS), LOWORD(version.dwFileVersionLS)};
}

}  // namespace zavrel
