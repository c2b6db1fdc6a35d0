#include "platform/library_identity.h"

#include "platform/file_version.h"
#include "platform/module.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

LibraryIdentity ReadIdentity() {
  static const char inside_this_library = 0;
  LibraryIdentity identity;
  identity.path = PathOfModuleContaining(&inside_this_library);
  FileVersion version{};
  if (const auto read = ReadFileVersion(identity.path)) {
    version = *read;
    identity.major_version = version[0];
  }
  identity.version_text = Utf16FromUtf8(VersionText(version));
  return identity;
}

}  // namespace

const LibraryIdentity& LibraryIdentity::OfThisLibrary() {
  static const LibraryIdentity identity = ReadIdentity();
  return identity;
}

std::int32_t MajorVersion() {
  return static_cast<std::int32_t>(LibraryIdentity::OfThisLibrary().major_version);
}

std::string SessionName(std::u16string_view add_in) {
  return "Vek" + Utf8FromUtf16(add_in) +
         std::to_string(LibraryIdentity::OfThisLibrary().major_version);
}

}  // namespace zavrel
