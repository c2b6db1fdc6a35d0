#include <windows.h>

#include "host/report/report_writer.h"

namespace zavhost {

/// The C library takes paths in the ANSI code page; the short form of a folder's name fits there.
std::string NarrowPath(const std::filesystem::path& file) {
  const std::wstring folder = std::filesystem::absolute(file).parent_path().wstring();
  std::wstring wide(MAX_PATH, L'\0');
  const DWORD length = GetShortPathNameW(folder.c_str(), wide.data(), MAX_PATH);
  wide.resize(length > 0 && length < MAX_PATH ? length : 0);
  wide = (wide.empty() ? folder : wide) + L"\\" + file.filename().wstring();
  std::string narrow(4 * wide.size(), '\0');
  BOOL lossy = FALSE;
  const int size =
      WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.c_str(), -1, narrow.data(),
                          static_cast<int>(narrow.size()), nullptr, &lossy);
  if (size <= 0 || lossy) throw WorkbookError("the folder's name cannot be used here");
  narrow.resize(static_cast<std::size_t>(size) - 1);
  return narrow;
}

}  // namespace zavhost
