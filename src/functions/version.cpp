// ZavrelFuncsVersion: the library's major version.
#include <cstdint>
#include <exception>

#include "frame/worksheet_function.h"
#include "platform/export.h"
#include "platform/library_identity.h"

namespace zavrel {
namespace {

std::int32_t VersionIfMemory() noexcept {
  try {
    return MajorVersion();
  } catch (const std::exception&) {
    return LibraryIdentity::kNoVersion;
  }
}

}  // namespace

/// The high word of the file version; 65535 if the library has no version resource, or if there is
/// no memory to read it. It works whether or not the add-in is open, because a macro calls it
/// before anything else.
ZAV_EXPORT std::int32_t ZavrelFuncsVersion() {
  const std::int32_t version = VersionIfMemory();
  return PlainFunction("ZavrelFuncsVersion", version, [&] { return version; });
}

}  // namespace zavrel
