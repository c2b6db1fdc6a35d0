#pragma once
// The doctor's report of a folder.

#include <algorithm>

#include "integration/host_process.h"

namespace zavrel::tests {

inline Outcome Doctor(const std::filesystem::path& folder,
                      const std::vector<std::string>& arguments = {"doctor"}) {
  return ZavHost(arguments, folder);
}

/// The lines of problems.
inline std::string Problems(const Outcome& outcome) {
  std::string problems;
  for (std::size_t at = 0; at < outcome.output.size();) {
    const std::size_t end = std::min(outcome.output.find('\n', at), outcome.output.size());
    const std::string line = outcome.output.substr(at, end - at);
    if (line.starts_with("  PROBLEM")) problems += line + '\n';
    at = end + 1;
  }
  return problems;
}

}  // namespace zavrel::tests
