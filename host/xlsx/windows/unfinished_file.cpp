#include "host/xlsx/unfinished_file.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <string>

namespace zavhost {
namespace {

struct Noted {
  std::array<wchar_t, 32768> name;
  std::atomic<bool> is_set;
};
std::array<Noted, 4> noted;

}  // namespace

void DeleteUnfinishedFiles() noexcept {
  for (Noted& file : noted) {
    if (file.is_set.exchange(false)) DeleteFileW(file.name.data());
  }
}

namespace unfinished {

void Note(const std::filesystem::path& file) noexcept {
  const std::wstring& name = file.native();
  for (Noted& place : noted) {
    if (place.is_set || name.size() >= place.name.size()) continue;
    *std::copy(name.begin(), name.end(), place.name.begin()) = L'\0';
    place.is_set = true;
    return;
  }
}

void Forget(const std::filesystem::path& file) noexcept {
  for (Noted& place : noted) {
    if (place.is_set && file.native() == place.name.data()) place.is_set = false;
  }
}

// A file that a program has open cannot be deleted by another one.
int Hold(const std::filesystem::path&) noexcept { return -1; }
void Release(int) noexcept {}
void RemoveUnlessHeld(const std::filesystem::path& file) noexcept { DeleteFileW(file.c_str()); }

bool IsWriteProtected(const std::filesystem::path& file) noexcept {
  const DWORD attributes = GetFileAttributesW(file.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

}  // namespace unfinished
}  // namespace zavhost
