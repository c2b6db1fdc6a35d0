#pragma once
// Workbooks made in memory for the tests: parts as texts, packed as the test wants them.

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zavhost_test {

struct ZipPart {
  std::string name;
  std::string content;
  bool stored = false;                                        // not packed
  std::optional<std::uint32_t> declared_size = std::nullopt;  // in place of the true one
  std::optional<std::uint16_t> method = std::nullopt;
  std::optional<std::uint32_t> checksum = std::nullopt;
  std::uint16_t flags = 0;
  bool is_packed = false;  // the content is a deflate stream already
};

std::string Deflate(std::string_view content);
/// A deflate stream of that many megabytes of blanks, in about a kilobyte each.
std::string DeflateBlanks(std::size_t megabytes);
std::string Zip(const std::vector<ZipPart>& parts);

/// The parts of a workbook by name; changed by a test before they are packed.
using BookParts = std::map<std::string, std::string>;

/// A workbook of one sheet "Data" with this inside its sheetData element.
BookParts OneSheetBook(const std::string& rows);
/// The workbook part with this in its sheets element, and its relationships.
std::string WorkbookXml(const std::string& sheets, const std::string& rest = "");
std::string RelationshipsXml(const std::string& relationships);
/// One relationship of the office namespace.
std::string RelationshipXml(const std::string& id, const std::string& type,
                            const std::string& target, const std::string& rest = "");
std::string SheetXml(const std::string& rows, const std::string& behind = "");
std::string ZipBook(const BookParts& parts);

/// A folder that is removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const std::filesystem::path& path() const { return path_; }
  /// Writes a file into the folder and gives its path.
  std::filesystem::path Put(const std::u16string& name, const std::string& bytes) const;

 private:
  std::filesystem::path path_;
};

}  // namespace zavhost_test
