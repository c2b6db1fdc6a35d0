#include "messages/text_files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "platform/utf.h"

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
  return found == utf8.end() ? std::u16string() : zavrel::Utf16FromUtf8(found->second);
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
