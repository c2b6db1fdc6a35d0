#pragma once
// A zip archive in memory: unpacks parts within limits, and replaces parts in a copy in which the
// others keep their compressed bytes.

#include <cstdint>
#include <functional>
#include <limits>
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

  const XlsxLimits& limits() const { return limits_; }
  /// Part names are compared without regard to ASCII letter case; "\" counts as "/", since some
  /// writers use it.
  bool Has(std::string_view part) const;
  /// Unpacks a part piece by piece: appends the next one, and returns false when there are no more.
  using AppendPiece = std::function<bool(std::string& content)>;
  /// Throws WorkbookError, now or with a later piece, if the part is missing, damaged, protected or
  /// larger than `limit`. Unpacking stops there, whatever size the archive declares.
  AppendPiece Open(std::string_view part, std::uint64_t limit);
  /// The whole part.
  std::string Read(std::string_view part,
                   std::uint64_t limit = std::numeric_limits<std::uint64_t>::max());
  void Replace(std::string_view part, std::string content);
  /// The size of all that replaces parts, which is in memory until the end.
  std::uint64_t replaced_bytes() const;
  void Remove(std::string_view part);
  /// The archive with the replaced parts. The object cannot be used afterwards.
  std::string Finish();
  /// Unpacks every part. Throws if one is not what the list of parts says.
  void CheckParts();

 private:
  struct Handle;  // libzip's archive and source

  void IndexParts();
  std::uint64_t Find(std::string_view part) const;
  void CheckSize(std::string_view part, std::uint64_t size, std::uint64_t limit) const;
  void CheckTotal(std::uint64_t more) const;

  XlsxLimits limits_;
  std::uint64_t unpacked_ = 0;
  std::unordered_map<std::string, std::uint64_t> parts_;
  std::vector<std::unique_ptr<std::string>> replacements_;  // read by libzip when it writes
  std::unique_ptr<Handle> handle_;
};

}  // namespace zavhost
