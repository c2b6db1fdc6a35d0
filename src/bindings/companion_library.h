#pragma once
// Libraries that may or may not be installed beside the add-in.

#include <filesystem>
#include <functional>
#include <optional>

#include "platform/module.h"

namespace zavrel {

/// Looks for its library when it is first needed and remembers whether it was found. A library that
/// was found stays loaded unless it is released.
class CompanionLibrary {
 public:
  using Loader = std::function<std::optional<Module>(const std::filesystem::path& path)>;

  CompanionLibrary(std::filesystem::path path, Loader load);
  /// Whether the library was found; one that was released later still counts as present.
  bool IsPresent() {
    module();
    return found_;
  }
  const std::filesystem::path& path() const { return path_; }
  /// Null when the library or the export is absent.
  ExportAddress FindExport(const char* name);
  /// Unloads a library that proved useless; it is not looked for again.
  void Release() { module_.reset(); }

 private:
  /// The loaded library, null when absent.
  const Module* module();

  std::filesystem::path path_;
  Loader load_;
  std::optional<Module> module_;
  bool looked_ = false;
  bool found_ = false;
};

// The companions of this process, beside the add-in's file. Like every library of the suite they
// are named by LibraryFileName. They are not unloaded at the end: when the process or this library
// ends, the loader's lock is held.

/// The distributions: "Pdflib8_x64.DLL".
CompanionLibrary& DistributionsLibrary();
/// The tests of Mann and Whitney and of Wilcoxon, in the folder of the extensions: "ZavrelFuncs
/// Extensions\\NonparametricTests8_x64.DLL". Its functions are registered only when it is there.
CompanionLibrary& NonparametricTestsLibrary();
/// The test of Kruskal and Wallis: "EUtilityLibrary8_x64.DLL".
CompanionLibrary& EUtilityLibrary();
/// The sibling product's library: "QLX4_x64.DLL". Its exports begin with product and version, too.
CompanionLibrary& SiblingLibrary();

}  // namespace zavrel
