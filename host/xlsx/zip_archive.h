#pragma once
// A zip archive in memory: parts unpacked within bounds, and parts replaced in a copy in which the
// others keep their packed bytes.

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
  /// Throws WorkbookError when the bytes are no zip archive that can be used.
  ZipArchive(std::string_view bytes, const XlsxLimits& limits);
  ~ZipArchive();
  ZipArchive(const ZipArchive&) = delete;
  ZipArchive& operator=(const ZipArchive&) = delete;

  /// Part names are compared without regard to ASCII letter case; "\" is "/", as some writers have
  /// it.
  bool Has(std::string_view part) const;
  /// Unpacks a part. Throws WorkbookError when it is missing, damaged, protected or too large;
  /// unpacking stops at the limit, whatever size the archive declares.
  std::string Read(std::string_view part);
  void Replace(std::string_view part, std::string content);
  /// The archive with the parts replaced. The object is of no further use.
  std::string Finish();

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
