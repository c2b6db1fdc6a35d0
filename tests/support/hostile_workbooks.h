#pragma once
// Files that no reader of workbooks should trust.

#include <filesystem>
#include <string>
#include <vector>

namespace zavhost_test {

struct HostileWorkbook {
  std::filesystem::path file;
  /// Words of the error line that reading must end in. Empty: the file reads without complaint, and
  /// it is the recalculation of its formulas that must end well.
  std::string expected;
};

/// Writes them all into a folder.
std::vector<HostileWorkbook> WriteHostileWorkbooks(const std::filesystem::path& folder);

}  // namespace zavhost_test
