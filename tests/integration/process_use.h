#pragma once
// What this process holds and has used.

#include <cstddef>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

#ifdef _WIN32
#include <windows.h>
// The order matters: these build on the basic ones.
#include <psapi.h>
#include <tlhelp32.h>
#endif

namespace zavrel::tests {

/// Memory that the process holds, in bytes.
inline std::size_t HeldMemory() {
#ifdef _WIN32
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PagefileUsage;
#else
  std::size_t total = 0;
  std::size_t resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return resident * 4096;
#endif
}

#ifndef _WIN32
inline std::size_t EntriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}
#endif

/// Open handles, elsewhere descriptors of files.
inline std::size_t Handles() {
#ifdef _WIN32
  DWORD handles = 0;
  GetProcessHandleCount(GetCurrentProcess(), &handles);
  return handles;
#else
  return EntriesOf("/proc/self/fd");
#endif
}

inline std::size_t Threads() {
#ifdef _WIN32
  std::size_t threads = 0;
  const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 thread{};
  thread.dwSize = sizeof thread;
  for (BOOL more = Thread32First(all, &thread); more; more = Thread32Next(all, &thread))
    if (thread.th32OwnerProcessID == GetCurrentProcessId()) ++threads;
  CloseHandle(all);
  return threads;
#else
  return EntriesOf("/proc/self/task");
#endif
}

/// Seconds of the processor, which other work does not prolong; on Windows seconds that passed.
inline double UsedSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

}  // namespace zavrel::tests
