#include "platform/file_version.h"

namespace zavrel {

std::optional<FileVersion> ReadFileVersion(const std::filesystem::path&) { return std::nullopt; }

}  // namespace zavrel
