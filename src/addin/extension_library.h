#pragma once
// The library of nonparametric tests, which may or may not stand beside the add-in.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/module.h"

namespace zavrel {

/// Full path of the library for an add-in in this folder.
std::u16string ExtensionLibraryPath(std::u16string_view add_in_folder, unsigned major_version);

/// Looks for the library on first need and remembers the outcome, found or not. A library that was
/// found stays loaded.
class ExtensionLibrary {
 public:
  using Loader = std::function<std::optional<Module>(const std::u16string& path)>;

  ExtensionLibrary(std::u16string path, Loader load);
  bool IsPresent() { return module() != nullptr; }
  /// The loaded library, null when absent.
  const Module* module();

  /// The one of this process, beside the add-in's own file. It is never unloaded: when the process
  /// or this library ends, the loader's lock is held.
  static ExtensionLibrary& OfProcess();

 private:
  std::u16string path_;
  Loader load_;
  std::optional<Module> module_;
  bool looked_ = false;
};

}  // namespace zavrel
