#include "host/xlsx/unfinished_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <string>
#include <thread>

namespace zavhost {
namespace {

struct Noted {
  std::array<char, PATH_MAX> name;
  std::atomic<bool> is_set;
};
std::array<Noted, 4> noted;

/// Locks an open file; false if another program has locked it, or nothing has its name any more.
bool LocksExisting(int descriptor) {
  struct stat status {};
  return flock(descriptor, LOCK_EX | LOCK_NB) == 0 && fstat(descriptor, &status) == 0 &&
         status.st_nlink > 0;
}

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

// Another program that looks for a killed one's file can lock this one before it is held. It then
// deletes it, and another is made.
int Hold(const std::filesystem::path& file) noexcept {
  constexpr int kMostTries = 100;
  for (int tries = 1;; ++tries) {
    const int hold = open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (hold < 0 || LocksExisting(hold) || tries == kMostTries) return hold;
    close(hold);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

void Release(int hold) noexcept {
  if (hold >= 0) close(hold);
}

void RemoveUnlessHeld(const std::filesystem::path& file) noexcept {
  const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
  if (descriptor < 0) return;
  if (LocksExisting(descriptor)) unlink(file.c_str());
  close(descriptor);
}

bool IsWriteProtected(const std::filesystem::path& file) noexcept {
  return faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS) != 0 && errno == EACCES;
}

}  // namespace unfinished
}  // namespace zavhost
