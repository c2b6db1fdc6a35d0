#include "diagnostics/message_library.h"

#include <memory>

#include "diagnostics/log.h"
#include "platform/string_resource.h"
#include "platform/utf.h"

namespace zavrel {

MessageLibrary MessageLibrary::Open(const std::filesystem::path& addin_folder) {
  const std::filesystem::path path = addin_folder / "ZavrelMessages8_x64.DLL";
  auto loaded = StringResources::Load(path);
  if (!loaded) {
    LogComposedLine(
        [&] { return "Message library not loaded, texts are missing: " + Utf8FromPath(path); });
    return MessageLibrary();
  }
  auto resources = std::make_shared<const StringResources>(std::move(*loaded));
  return MessageLibrary([resources](std::uint16_t language, std::uint16_t id) {
    return resources->Find(language, id);
  });
}

}  // namespace zavrel
