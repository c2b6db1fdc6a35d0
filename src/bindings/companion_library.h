#pragma once
// Libraries that may or may not be installed beside the add-in.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/module.h"

namespace zavrel {

/// Looks for its library when it is first needed and remembers whether it was found. A library that
/// was found stays loaded unless it is released.
class CompanionLibrary {
 public:
  using Loader = std::function<std::optional<Module>(const std::u16string& path)>;

  CompanionLibrary(std::u16string path, Loader load);
  /// Whether the library was found; one that was released later still counts as present.
  bool IsPresent() {
    module();
    return found_;
  }
  const std::u16string& path() const { return path_; }
  /// Null when the library or the export is absent.
  ExportAddress FindExport(const char* name);
  /// Unloads a library that proved useless; it is not looked for again.
  void Release() { module_.reset(); }

 private:
  /// The loaded library, null when absent.
  const Module* module();

  std::u16string path_;
  Loader load_;
  std::optional<Module> module_;
  bool looked_ = false;
  bool found_ = false;
};

/// The full path of a library in a folder below the add-in's (an empty name: beside the add-in).
std::u16string CompanionLibraryPath(std::u16string_view add_in_folder, std::u16string_view folder,
                                    std::u16string_view file_name);

// The companions of this process, beside the add-in's file. They are not unloaded at the end: when
// the process or this library ends, the loader's lock is held.

/// The distributions: "Pdflib8_x64.DLL".
CompanionLibrary& DistributionsLibrary();
/// The tests of Mann and Whitney and of Wilcoxon, in the folder of the extensions: "ZavrelFuncs
/// Extensions\\NonparametricTests8_x64.DLL". Its functions are registered only when it is there.
CompanionLibrary& NonparametricTestsLibrary();
/// The test of Kruskal and Wallis: "EUtilityLibrary8_x64.DLL".
CompanionLibrary& EUtilityLibrary();
/// The sibling product's library: "QLX4_x64.DLL". Like every library of the suite it is named by
/// product, major version and bitness; its exports begin in the same way.
CompanionLibrary& SiblingLibrary();

}  // namespace zavrel
