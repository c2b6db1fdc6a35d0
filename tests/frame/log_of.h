#pragma once
// The session's log, in a temporary folder of the test's own.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "contracts/log_files.h"
#include "diagnostics/log.h"
#include "platform/temporary_folder.h"

namespace zavrel::tests {

inline void SetTemporaryFolder(const std::filesystem::path& folder) {
#ifdef _WIN32
  _putenv_s("TMP", folder.string().c_str());
#else
  setenv("TMPDIR", folder.c_str(), 1);
#endif
}

/// What `run` writes into the log: the one that is open then, and those that it opens.
template <class Run>
std::string LogOf(Run run) {
  const std::filesystem::path outer = TemporaryFolder();
  const std::filesystem::path folder = outer / "zavrel frame log test";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / kLogMarker).flush();
  SetTemporaryFolder(folder);
  OpenLog(folder, "Sample");
  run();
  CloseLog();
  SetTemporaryFolder(outer);
  std::ostringstream text;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".log") text << std::ifstream(entry.path()).rdbuf();
  }
  std::filesystem::remove_all(folder);
  return text.str();
}

}  // namespace zavrel::tests
