#pragma once
// Reads what a Windows binary says of itself: exports, imported libraries, link flags.

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace zavrel::tests {

class PeFile {
 public:
  /// Throws std::runtime_error when the file is no 64-bit Windows binary.
  explicit PeFile(const std::filesystem::path& file);

  std::set<std::string> exports() const;
  std::set<std::string> imported_libraries() const;  // lower case
  std::uint16_t dll_characteristics() const { return dll_characteristics_; }
  /// Names of the sections that hold code.
  std::vector<std::string> code_sections() const;

 private:
  struct Section {
    std::string name;
    std::uint32_t address, size, file_offset, file_size, characteristics;
  };
  template <class T>
  T Read(std::size_t offset) const;
  std::size_t OffsetOf(std::uint32_t address) const;
  std::string TextAt(std::uint32_t address) const;

  std::vector<std::uint8_t> bytes_;
  std::vector<Section> sections_;
  std::uint16_t dll_characteristics_ = 0;
  std::uint32_t export_address_ = 0;
  std::uint32_t import_address_ = 0;
};

}  // namespace zavrel::tests
