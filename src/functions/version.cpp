// ZavrelFuncsVersion: the library's major version.
#include <cstdint>

#include "addin/library_identity.h"
#include "addin/worksheet_function.h"
#include "platform/export.h"

namespace zavrel {

/// The high word of the file version; 65535 when the library has no version resource.
ZAV_EXPORT std::int32_t ZavrelFuncsVersion() {
  return PlainFunction<std::int32_t>("ZavrelFuncsVersion", LibraryIdentity::kNoVersion, [] {
    return static_cast<std::int32_t>(LibraryIdentity::OfThisLibrary().major_version);
  });
}

}  // namespace zavrel
