#include "platform/mapped_file.h"

#include <windows.h>

// After windows.h.
#include <winioctl.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

#include "platform/windows/private_access.h"
#include "platform/windows/system_handle.h"

namespace zavrel {
namespace {

/// A file that nobody else can open, and that the system deletes when the process closes it or
/// ends. The system does not write to disk what it can keep in memory.
SystemHandle OpenTemporary(const std::filesystem::path& folder) {
  constexpr int kAttempts = 100;
  PrivateAccess access;
  if (!access) return {};
  static std::atomic<unsigned> serial_number = 0;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const std::wstring name = L"zavrel-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                              std::to_wstring(GetTickCount64()) + L"-" +
                              std::to_wstring(++serial_number) + L".tmp";
    SystemHandle file(CreateFileW((folder / name).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0,
                                  access.get(), CREATE_NEW,
                                  FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (file || GetLastError() != ERROR_FILE_EXISTS) return file;
  }
  return {};
}

bool WriteZeros(HANDLE file, std::size_t bytes) {
  const std::vector<char> zeros(std::min<std::size_t>(bytes, std::size_t{1} << 20));
  for (DWORD written = 0; bytes > 0; bytes -= written) {
    const auto part = static_cast<DWORD>(std::min(bytes, zeros.size()));
    if (!WriteFile(file, zeros.data(), part, &written, nullptr) || written == 0) return false;
  }
  return true;
}

/// A longer file has its disk space on most file systems. Where a folder is compressed, it would
/// not; where the system says that it has not, zeros are written.
bool Reserve(HANDLE file, std::size_t bytes) {
  USHORT uncompressed = COMPRESSION_FORMAT_NONE;
  DWORD unused = 0;
  DeviceIoControl(file, FSCTL_SET_COMPRESSION, &uncompressed, sizeof uncompressed, nullptr, 0,
                  &unused, nullptr);
  FILE_END_OF_FILE_INFO end{};
  end.EndOfFile.QuadPart = static_cast<LONGLONG>(bytes);
  if (!SetFileInformationByHandle(file, FileEndOfFileInfo, &end, sizeof end)) return false;
  FILE_STANDARD_INFO info{};
  if (!GetFileInformationByHandleEx(file, FileStandardInfo, &info, sizeof info)) return false;
  return info.AllocationSize.QuadPart >= end.EndOfFile.QuadPart || WriteZeros(file, bytes);
}

/// The file and its mapping, which must stay open: the view alone would not keep the file from
/// being deleted.
struct Handles {
  SystemHandle file;
  SystemHandle mapping;
};

}  // namespace

std::shared_ptr<double> MapTemporaryFile(const std::filesystem::path& folder, std::size_t bytes,
                                         SwapFailure& failure) {
  const auto handles = std::make_shared<Handles>();
  failure = SwapFailure::kNoFile;
  handles->file = OpenTemporary(folder);
  if (!handles->file) return nullptr;
  failure = SwapFailure::kNoSpace;
  if (!Reserve(handles->file.get(), bytes)) return nullptr;
  failure = SwapFailure::kNoAddresses;
  handles->mapping =
      SystemHandle(CreateFileMappingW(handles->file.get(), nullptr, PAGE_READWRITE, 0, 0, nullptr));
  if (!handles->mapping) return nullptr;
  void* address = MapViewOfFile(handles->mapping.get(), FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, 0);
  if (address == nullptr) return nullptr;
  return {static_cast<double*>(address), [handles](double* first) { UnmapViewOfFile(first); }};
}

}  // namespace zavrel
