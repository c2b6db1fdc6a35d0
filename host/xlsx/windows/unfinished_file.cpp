#include "host/xlsx/unfinished_file.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <iterator>
#include <string>

namespace zavhost {
namespace {

wchar_t noted[32768];
std::atomic<bool> is_noted = false;

}  // namespace

void NoteUnfinishedFile(const std::filesystem::path& file) noexcept {
  is_noted = false;
  const std::wstring& name = file.native();
  if (name.empty() || name.size() >= std::size(noted)) return;
  *std::copy(name.begin(), name.end(), noted) = L'\0';
  is_noted = true;
}

void DeleteUnfinishedFile() noexcept {
  if (is_noted.exchange(false)) DeleteFileW(noted);
}

}  // namespace zavhost
