#include "bindings/companion_library.h"

#include <utility>

#include "platform/library_identity.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

/// Never destroyed; see the header.
CompanionLibrary& NewOfProcess(std::u16string_view folder, std::u16string_view file_name) {
  return *new CompanionLibrary(
      CompanionLibraryPath(LibraryIdentity::OfThisLibrary().folder, folder, file_name),
      [](const std::u16string& path) { return Module::Load(path); });
}

std::u16string MajorVersionText() { return Utf16FromUtf8(std::to_string(MajorVersion())); }

}  // namespace

CompanionLibrary::CompanionLibrary(std::u16string path, Loader load)
    : path_(std::move(path)), load_(std::move(load)) {}

const Module* CompanionLibrary::module() {
  if (!looked_) {
    looked_ = true;
    module_ = load_(path_);
    found_ = module_.has_value();
  }
  return module_ ? &*module_ : nullptr;
}

ExportAddress CompanionLibrary::FindExport(const char* name) {
  return module() != nullptr ? module()->FindExport(name) : nullptr;
}

std::u16string CompanionLibraryPath(std::u16string_view add_in_folder, std::u16string_view folder,
                                    std::u16string_view file_name) {
  std::u16string path(add_in_folder);
  for (const std::u16string_view part : {folder, file_name}) {
    if (part.empty()) continue;
    if (!path.ends_with(u'\\')) path += u'\\';
    path += part;
  }
  return path;
}

CompanionLibrary& DistributionsLibrary() {
  static CompanionLibrary& library =
      NewOfProcess(u"", u"Pdflib" + MajorVersionText() + u"_x64.DLL");
  return library;
}

CompanionLibrary& NonparametricTestsLibrary() {
  static CompanionLibrary& library = NewOfProcess(
      u"ZavrelFuncs Extensions", u"NonparametricTests" + MajorVersionText() + u"_x64.DLL");
  return library;
}

CompanionLibrary& EUtilityLibrary() {
  static CompanionLibrary& library =
      NewOfProcess(u"", u"EUtilityLibrary" + MajorVersionText() + u"_x64.DLL");
  return library;
}

CompanionLibrary& SiblingLibrary() {
  static CompanionLibrary& library = NewOfProcess(u"", u"QLX4_x64.DLL");
  return library;
}

}  // namespace zavrel
