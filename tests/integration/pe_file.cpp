#include "integration/pe_file.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace zavrel::tests {

template <class T>
T PeFile::Read(std::size_t offset) const {
  if (offset + sizeof(T) > bytes_.size()) throw std::runtime_error("truncated binary");
  T value;
  std::memcpy(&value, bytes_.data() + offset, sizeof(T));
  return value;
}

PeFile::PeFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  bytes_.assign(std::istreambuf_iterator<char>(stream), {});
  const std::size_t header = Read<std::uint32_t>(0x3C);
  if (Read<std::uint32_t>(header) != 0x00004550 || Read<std::uint16_t>(header + 4) != 0x8664) {
    throw std::runtime_error(file.string() + " is no 64-bit Windows binary");
  }
  const std::size_t optional = header + 24;
  dll_characteristics_ = Read<std::uint16_t>(optional + 70);
  export_address_ = Read<std::uint32_t>(optional + 112);
  import_address_ = Read<std::uint32_t>(optional + 120);
  const std::size_t table = optional + Read<std::uint16_t>(header + 20);
  for (std::size_t i = 0; i < Read<std::uint16_t>(header + 6); ++i) {
    const std::size_t at = table + 40 * i;
    char name[9] = {};
    for (std::size_t c = 0; c < 8; ++c) name[c] = Read<char>(at + c);
    sections_.push_back({name, Read<std::uint32_t>(at + 12), Read<std::uint32_t>(at + 8),
                         Read<std::uint32_t>(at + 20), Read<std::uint32_t>(at + 16),
                         Read<std::uint32_t>(at + 36)});
  }
}

std::size_t PeFile::OffsetOf(std::uint32_t address) const {
  for (const Section& section : sections_) {
    if (address >= section.address && address - section.address < section.file_size) {
      return section.file_offset + (address - section.address);
    }
  }
  throw std::runtime_error("address outside every section");
}

std::string PeFile::TextAt(std::uint32_t address) const {
  std::string text;
  for (std::size_t at = OffsetOf(address); Read<char>(at) != 0; ++at) text += Read<char>(at);
  return text;
}

std::set<std::string> PeFile::exports() const {
  std::set<std::string> names;
  if (export_address_ == 0) return names;
  const std::size_t directory = OffsetOf(export_address_);
  const std::size_t list = OffsetOf(Read<std::uint32_t>(directory + 32));
  for (std::size_t i = 0; i < Read<std::uint32_t>(directory + 24); ++i) {
    names.insert(TextAt(Read<std::uint32_t>(list + 4 * i)));
  }
  return names;
}

std::set<std::string> PeFile::imported_libraries() const {
  std::set<std::string> names;
  if (import_address_ == 0) return names;
  for (std::size_t at = OffsetOf(import_address_); Read<std::uint32_t>(at + 12) != 0; at += 20) {
    std::string name = TextAt(Read<std::uint32_t>(at + 12));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    names.insert(name);
  }
  return names;
}

std::vector<std::string> PeFile::code_sections() const {
  std::vector<std::string> names;
  constexpr std::uint32_t kCode = 0x20;
  for (const Section& section : sections_) {
    if ((section.characteristics & kCode) != 0) names.push_back(section.name);
  }
  return names;
}

}  // namespace zavrel::tests
