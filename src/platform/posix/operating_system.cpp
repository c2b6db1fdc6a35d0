#include "platform/operating_system.h"

#include <pthread.h>
#include <sys/utsname.h>

#include <cstring>

#include "platform/utf.h"

namespace zavrel {

std::u16string OperatingSystemDescription() {
  struct utsname name {};
  if (uname(&name) != 0) return u"unknown";
  return Utf16FromUtf8(std::string(name.sysname) + " " + name.release + " " + name.machine);
}

std::uint32_t ThreadPrimaryLanguage() { return 9; }

void NameThisThread(const char* name) noexcept {
  char cut[16] = {};  // the longest name that the system accepts, with its terminator
  std::strncpy(cut, name, sizeof cut - 1);
  pthread_setname_np(pthread_self(), cut);
}

}  // namespace zavrel
