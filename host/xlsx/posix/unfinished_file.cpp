#include "host/xlsx/unfinished_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <climits>
#include <cstring>
#include <string>

namespace zavhost {
namespace {

struct Noted {
  std::array<char, PATH_MAX> name;
  std::atomic<bool> is_set;
};
std::array<Noted, 4> noted;

}  // namespace

void DeleteUnfinishedFiles() noexcept {
  for (Noted& file : noted) {
    if (file.is_set.exchange(false)) unlink(file.name.data());
  }
}

namespace unfinished {

void Note(const std::filesystem::path& file) noexcept {
  const std::string& name = file.native();
  for (Noted& place : noted) {
    if (place.is_set || name.size() >= place.name.size()) continue;
    std::memcpy(place.name.data(), name.c_str(), name.size() + 1);
    place.is_set = true;
    return;
  }
}

void Forget(const std::filesystem::path& file) noexcept {
  for (Noted& place : noted) {
    if (place.is_set && file.native() == place.name.data()) place.is_set = false;
  }
}

int Hold(const std::filesystem::path& file) noexcept {
  const int hold = open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  if (hold >= 0) flock(hold, LOCK_EX | LOCK_NB);
  return hold;
}

void Release(int hold) noexcept {
  if (hold >= 0) close(hold);
}

bool MayBeHeld(const std::filesystem::path& file) noexcept {
  const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
  if (descriptor < 0) return true;
  const bool is_free = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
  close(descriptor);
  return !is_free;
}

}  // namespace unfinished
}  // namespace zavhost
