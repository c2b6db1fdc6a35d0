#include "messages/text_files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace {

constexpr char kFolder[] = ZAVREL_SOURCE_DIR "/companions/messages/texts/";

}  // namespace

TextFile::TextFile(const std::string& language) : name(language) {
  std::ifstream file(kFolder + name + ".txt");
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    const std::size_t equals = line.find(" = ");
    if (equals == std::string::npos) throw std::runtime_error(name + ": " + line);
    const std::string key = line.substr(0, equals);
    const std::string text = line.substr(equals + 3);
    if (key == "language_id") {
      language_id = static_cast<std::uint32_t>(std::stoul(text));
    } else if (!utf8.emplace(std::stoul(key), text).second) {
      throw std::runtime_error(name + ": id " + key + " stands twice");
    }
  }
}

std::u16string TextFile::Text(std::uint32_t id) const {
  const auto found = utf8.find(id);
  std::u16string wide;
  if (found == utf8.end()) return wide;
  unsigned code = 0;
  int following = 0;
  for (const char c : found->second) {
    const unsigned byte = static_cast<unsigned char>(c);
    if (byte >= 0xF0) throw std::runtime_error("a character beyond the basic plane");
    if (byte >= 0xC0) {
      following = byte >= 0xE0 ? 2 : 1;
      code = byte & (byte >= 0xE0 ? 0x0Fu : 0x1Fu);
    } else {
      code = byte >= 0x80 ? code << 6 | (byte & 0x3F) : byte;
      if (byte >= 0x80) --following;
    }
    if (following == 0) wide += static_cast<char16_t>(code);
  }
  return wide;
}

const std::vector<TextFile>& TextFiles() {
  static const std::vector<TextFile> files = [] {
    std::vector<TextFile> found;
    for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
      if (entry.path().extension() == ".txt") found.emplace_back(entry.path().stem().string());
    }
    std::sort(found.begin(), found.end(), [](const TextFile& a, const TextFile& b) {
      return std::pair(a.name != "en", a.name) < std::pair(b.name != "en", b.name);
    });
    return found;
  }();
  return files;
}
