#include "platform/file_version.h"

namespace zavrel {

std::string VersionText(const FileVersion& version) {
  std::string text;
  for (const std::uint16_t part : version) {
    if (!text.empty()) text += '.';
    text += std::to_string(part);
  }
  return text;
}

}  // namespace zavrel
