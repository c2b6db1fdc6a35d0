#include "bindings/companion_library.h"

#include <utility>

#include "platform/library_identity.h"

namespace zavrel {
namespace {

/// Never destroyed; see the header. The file is in the add-in's folder or below it.
CompanionLibrary& NewOfProcess(const std::filesystem::path& file) {
  return *new CompanionLibrary(
      LibraryIdentity::OfThisLibrary().folder() / file,
      [](const std::filesystem::path& path) { return Module::Load(path); });
}

constexpr std::int32_t kSiblingVersion = 4;

}  // namespace

CompanionLibrary::CompanionLibrary(std::filesystem::path path, Loader load)
    : path_(std::move(path)), load_(std::move(load)) {}

const Module* CompanionLibrary::module() {
  if (!looked_) {
    module_ = load_(path_);
    found_ = module_.has_value();
    looked_ = true;
  }
  return module_ ? &*module_ : nullptr;
}

ExportAddress CompanionLibrary::FindExport(const char* name) {
  return module() != nullptr ? module()->FindExport(name) : nullptr;
}

CompanionLibrary& DistributionsLibrary() {
  static CompanionLibrary& library = NewOfProcess(LibraryFileName("Pdflib", MajorVersion()));
  return library;
}

CompanionLibrary& NonparametricTestsLibrary() {
  static CompanionLibrary& library = NewOfProcess(
      "ZavrelFuncs Extensions" / LibraryFileName("NonparametricTests", MajorVersion()));
  return library;
}

CompanionLibrary& EUtilityLibrary() {
  static CompanionLibrary& library =
      NewOfProcess(LibraryFileName("EUtilityLibrary", MajorVersion()));
  return library;
}

CompanionLibrary& SiblingLibrary() {
  static CompanionLibrary& library = NewOfProcess(LibraryFileName("QLX", kSiblingVersion));
  return library;
}

}  // namespace zavrel
