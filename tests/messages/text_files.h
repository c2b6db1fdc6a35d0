#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// The texts of texts/<name>.txt by id, read here without the build's own script.
/// Throws std::runtime_error for a line that is none of its forms and for an id that stands twice.
struct TextFile {
  explicit TextFile(const std::string& language);

  std::string name;
  std::uint32_t language_id = 0;
  std::map<std::uint32_t, std::string> utf8;

  std::u16string Text(std::uint32_t id) const;
};

/// All files of texts, English first.
const std::vector<TextFile>& TextFiles();
