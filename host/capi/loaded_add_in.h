#pragma once

#include <filesystem>

#include "platform/module.h"

namespace zavhost {

/// An add-in of the host's; none while it has no module.
struct LoadedAddIn {
  const zavrel::Module* module = nullptr;
  std::filesystem::path file;  // the full path, which xlGetName returns
};

}  // namespace zavhost
