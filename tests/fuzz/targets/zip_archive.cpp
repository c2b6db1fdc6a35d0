// Zip archives: refused with one line, or unpacked within the limits; a part that is replaced comes
// back as it was given, and the others as they were.
#include <map>
#include <string>

#include "fuzz/target.h"
#include "host/xlsx/zip_archive.h"

namespace zavrel::tests {
namespace {

using zavhost::WorkbookError;
using zavhost::XlsxLimits;
using zavhost::ZipArchive;

constexpr XlsxLimits kLimits{
    .file_bytes = 1 << 20, .part_bytes = 1 << 20, .total_bytes = 3 << 20, .parts = 100};
constexpr const char* kParts[] = {"[Content_Types].xml", "_rels/.rels", "xl/workbook.xml", "a",
                                  "A/b"};

/// Those of the parts that can be read.
std::map<std::string, std::string> ReadParts(ZipArchive& archive) {
  std::map<std::string, std::string> contents;
  std::uint64_t total = 0;
  for (const char* part : kParts) {
    try {
      if (!archive.Has(part)) continue;
      contents[part] = archive.Read(part);
      total += contents[part].size();
      Require(contents[part].size() <= kLimits.part_bytes, "a part beyond its limit");
    } catch (const WorkbookError& error) {
      contents.erase(part);
    }
  }
  Require(total <= kLimits.total_bytes, "parts beyond their limit");
  return contents;
}

void CheckReplacing(std::string_view bytes, std::map<std::string, std::string> contents) {
  ZipArchive archive(bytes, kLimits);
  const auto replaced = contents.begin();
  replaced->second += " and more";
  archive.Replace(replaced->first, replaced->second);
  ZipArchive again(archive.Finish(), kLimits);
  for (const auto& [part, content] : contents)
    Require(again.Read(part) == content, "another content comes back");
}

void Read(std::span<const std::uint8_t> input) {
  const std::string_view bytes(reinterpret_cast<const char*>(input.data()), input.size());
  std::string line = "read";
  try {
    ZipArchive archive(bytes, kLimits);
    const std::map<std::string, std::string> contents = ReadParts(archive);
    try {
      archive.CheckParts();
    } catch (const WorkbookError&) {
      return;  // damaged somewhere: nobody writes it again
    }
    if (!contents.empty()) CheckReplacing(bytes, contents);
  } catch (const WorkbookError& error) {
    line = error.what();
  }
  Require(!line.empty() && line.find_first_of("\r\n") == std::string::npos, "no line says why");
}

const FuzzTarget target("zip_archive", Read);

}  // namespace
}  // namespace zavrel::tests
