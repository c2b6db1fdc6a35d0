#pragma once
// What the doctor checks beyond the files of the installation: Excel and its settings, on Windows.

#include <filesystem>

#include "host/cli/findings.h"

namespace zavhost {

/// Excel's lists of add-ins, its start folder, and programs that have loaded the add-in. Elsewhere
/// a note of what only Windows has.
void CheckExcel(const std::filesystem::path& add_in, Findings& findings);

}  // namespace zavhost
