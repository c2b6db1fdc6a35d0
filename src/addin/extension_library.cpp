#include "addin/extension_library.h"

#include <utility>

#include "addin/library_identity.h"
#include "excel/wide_text.h"

namespace zavrel {

std::u16string ExtensionLibraryPath(std::u16string_view add_in_folder, unsigned major_version) {
  std::u16string path(add_in_folder);
  if (!path.ends_with(u'\\')) path += u'\\';
  return path + u"ZavrelFuncs Extensions\\NonparametricTests" +
         Utf16FromUtf8(std::to_string(major_version)) + u"_x64.DLL";
}

ExtensionLibrary::ExtensionLibrary(std::u16string path, Loader load)
    : path_(std::move(path)), load_(std::move(load)) {}

const Module* ExtensionLibrary::module() {
  if (!looked_) {
    looked_ = true;
    module_ = load_(path_);
  }
  return module_ ? &*module_ : nullptr;
}

ExtensionLibrary& ExtensionLibrary::OfProcess() {
  static auto& library =
      *new ExtensionLibrary(ExtensionLibraryPath(LibraryIdentity::OfThisLibrary().folder,
                                                 LibraryIdentity::OfThisLibrary().major_version),
                            [](const std::u16string& path) { return Module::Load(path); });
  return library;
}

}  // namespace zavrel
