#pragma once
// A zip archive in memory: unpacks parts within limits, and replaces parts in a copy in which the
// others keep their compressed bytes.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/xlsx/xlsx_file.h"

namespace zavhost {

class ZipArchive {
 public:
  /// Throws WorkbookError if the bytes are not a usable zip archive.
  ZipArchive(std::string_view bytes, const XlsxLimits& limits);
  ~ZipArchive();
  ZipArchive(const ZipArchive&) = delete;
  ZipArchive& operator=(const ZipArchive&) = delete;

  /// Part names are compared without regard to ASCII letter case; "\" counts as "/", since some
  /// writers use it.
  bool Has(std::string_view part) const;
  /// Unpacks a part. Throws WorkbookError if it is missing, damaged, protected or too large.
  /// Unpacking stops at the limit, whatever size the archive declares.
  std::string Read(std::string_view part);
  void Replace(std::string_view part, std::string content);
  void Remove(std::string_view part);
  /// The archive with the replaced parts. The object cannot be used afterwards.
  std::string Finish();
  /// Unpacks every part. Throws if one is not what the list of parts says.
  void CheckParts();

 private:
  struct Handle;  // libzip's archive and source

  void IndexParts();
  std::uint64_t Find(std::string_view part) const;

  XlsxLimits limits_;
  std::uint64_t unpacked_ = 0;
  std::unordered_map<std::string, std::uint64_t> parts_;
  std::vector<std::unique_ptr<std::string>> replacements_;  // read by libzip when it writes
  std::unique_ptr<Handle> handle_;
};

}  // namespace zavhost
