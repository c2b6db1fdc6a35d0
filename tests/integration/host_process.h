#pragma once
// The host as a process of its own, as a user starts it.

#include <doctest/doctest.h>

#include <fstream>

#include "integration/running_add_in.h"
#include "platform/utf.h"
#include "support/run_program.h"

namespace zavrel::tests {

/// Runs the host of a folder: what ships, unless another is given.
inline Outcome ZavHost(const std::vector<std::string>& arguments,
                       const std::filesystem::path& folder = AddInFile().parent_path()) {
  return RunProgram(folder / ZAVREL_HOST_NAME, arguments);
}

/// A new folder with what ships, for a test to change.
inline std::filesystem::path CopyOfWhatShips(const char* name) {
  const std::filesystem::path folder = ScratchFolder() / name;
  std::filesystem::remove_all(folder);
  std::filesystem::copy(AddInFile().parent_path(), folder,
                        std::filesystem::copy_options::recursive);
  return folder;
}

/// Puts a file in the place of another.
inline void Replace(const std::filesystem::path& file, const std::filesystem::path& other) {
  std::filesystem::remove(file);
  std::filesystem::copy_file(other, file);
}

/// The first line that `eval` of a folder's host writes for a formula.
inline std::string Evaluated(const std::string& formula, const std::filesystem::path& folder) {
  const Outcome outcome = ZavHost({"eval", formula}, folder);
  CHECK(outcome.exit_code == 0);
  CHECK(outcome.errors.empty());
  return outcome.output.substr(0, outcome.output.find('\n'));
}

/// The log of the add-ins that `run` opens.
template <class Run>
std::string LogOf(const std::filesystem::path& folder, Run run) {
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "BrennicLoggingDetail.txt").flush();
  std::filesystem::remove(folder / "VekZavrelFuncs8.log");
  {
    const EnvironmentVariable temporary(kTemporaryFolder, Utf8FromPath(folder));
    run();
  }
  return ReadAll(folder / "VekZavrelFuncs8.log");
}

inline bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}
inline int Occurrences(const std::string& text, const std::string& part) {
  int count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

}  // namespace zavrel::tests
