#pragma once
// The session's log, in a temporary folder of the test's own.

#include <string>

#include "contracts/log_files.h"
#include "diagnostics/log.h"
#include "platform/utf.h"
#include "support/log_folder.h"
#include "support/run_program.h"

namespace zavrel::tests {

/// What `run` writes into the log: the one that is open then, and those that it opens.
template <class Run>
std::string LogOf(Run run) {
  const LogFolder folder(kLogMarker);
  {
    const EnvironmentVariable temporary(kTemporaryFolder, Utf8FromPath(folder.path()));
    OpenLog(folder.path(), "Sample");
    run();
    CloseLog();
  }
  std::string text;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
    if (entry.path().extension() == ".log") text += ReadAll(entry.path());
  }
  return text;
}

}  // namespace zavrel::tests
