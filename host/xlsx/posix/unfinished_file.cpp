#include "host/xlsx/unfinished_file.h"

#include <unistd.h>

#include <atomic>
#include <climits>
#include <cstring>
#include <string>

namespace zavhost {
namespace {

char noted[PATH_MAX];
std::atomic<bool> is_noted = false;

}  // namespace

void NoteUnfinishedFile(const std::filesystem::path& file) noexcept {
  is_noted = false;
  const std::string& name = file.native();
  if (name.empty() || name.size() >= sizeof noted) return;
  std::memcpy(noted, name.c_str(), name.size() + 1);
  is_noted = true;
}

void DeleteUnfinishedFile() noexcept {
  if (is_noted.exchange(false)) unlink(noted);
}

}  // namespace zavhost
