#include "host/xlsx/zip_archive.h"

#include <fmt/format.h>
#include <zip.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "host/xlsx/messages.h"

namespace zavhost {
namespace {

constexpr std::size_t kEndRecordSize = 22;
constexpr std::size_t kLargestComment = 65'535;
constexpr std::size_t kDirectoryEntrySize = 46;
constexpr std::size_t kPieceSize = std::size_t{256} << 10;  // of a part that is unpacked

std::string PartKey(std::string_view name) {
  std::string key(name);
  for (char& c : key) {
    if (c == '\\') c = '/';
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  }
  key.erase(0, key.find_first_not_of('/'));
  return key;
}

std::uint64_t LittleEndian(std::string_view bytes, std::size_t offset, std::size_t size) {
  std::uint64_t value = 0;
  for (std::size_t i = size; i-- > 0;) {
    value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
  }
  return value;
}

/// The largest number of parts that an end record at the end of the archive declares. libzip
/// allocates memory for all of them before it answers any question, so this check comes first.
std::uint64_t DeclaredParts(std::string_view bytes) {
  std::uint64_t most = 0;
  const std::size_t tail = std::min(bytes.size(), kEndRecordSize + kLargestComment);
  for (std::size_t at = bytes.find("PK\5\6", bytes.size() - tail);
       at != std::string_view::npos && at + kEndRecordSize <= bytes.size();
       at = bytes.find("PK\5\6", at + 1)) {
    std::uint64_t parts = LittleEndian(bytes, at + 10, 2);
    std::uint64_t directory_size = LittleEndian(bytes, at + 12, 4);
    if (at >= 20 && bytes.substr(at - 20, 4) == "PK\6\7") {
      const std::uint64_t large = LittleEndian(bytes, at - 12, 8);
      if (large < at && at - large >= 56 && bytes.substr(large, 4) == "PK\6\6") {
        parts = std::max(parts == 0xFFFF ? 0 : parts, LittleEndian(bytes, large + 32, 8));
        directory_size = LittleEndian(bytes, large + 40, 8);
      }
    }
    // Compressed data may look like an end record; a real one is consistent.
    if (parts <= bytes.size() / kDirectoryEntrySize &&
        parts * kDirectoryEntrySize <= directory_size) {
      most = std::max(most, parts);
    }
  }
  return most;
}

/// Refuses a file that ends in several ways, of which each program may take another.
void CheckEnd(std::string_view bytes) {
  int ends = 0;
  const std::size_t tail = std::min(bytes.size(), kEndRecordSize + kLargestComment);
  for (std::size_t at = bytes.find("PK\5\6", bytes.size() - tail);
       at != std::string_view::npos && at + kEndRecordSize <= bytes.size();
       at = bytes.find("PK\5\6", at + 1)) {
    const std::uint64_t comment_size = LittleEndian(bytes, at + 20, 2);
    ends += at + kEndRecordSize + comment_size == bytes.size() ? 1 : 0;
  }
  if (ends > 1)
    throw WorkbookError("the file is damaged: its list of parts can be read in several ways");
}

void CheckKind(std::string_view bytes) {
  if (bytes.empty()) throw WorkbookError("the file is empty");
  if (bytes.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1")) {
    throw WorkbookError(
        "this is an old (.xls) or encrypted workbook; save it as .xlsx without a password");
  }
  if (!bytes.starts_with("PK")) throw WorkbookError("this is not an Excel workbook (.xlsx)");
}

[[noreturn]] void ThrowPartError(std::string_view part, int zip_code) {
  const std::string name = Printable(part);
  switch (zip_code) {
    case ZIP_ER_NOPASSWD:
    case ZIP_ER_WRONGPASSWD:
      throw WorkbookError(fmt::format("part '{}' is protected by a password", name));
    case ZIP_ER_COMPNOTSUPP:
    case ZIP_ER_ENCRNOTSUPP:
      throw WorkbookError(
          fmt::format("part '{}' uses a compression method that is not supported", name));
    case ZIP_ER_CRC:
      throw WorkbookError(fmt::format("part '{}' is damaged: its checksum is wrong", name));
    default:
      throw WorkbookError(fmt::format("part '{}' is damaged and cannot be unpacked", name));
  }
}

/// A source that owns a copy of the bytes: libzip 1.7.3 frees its caller's buffer when it writes an
/// archive whose beginning is unchanged.
zip_source_t* MakeSource(std::string_view bytes) {
  // NOLINTBEGIN(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory): libzip calls free().
  void* copy = std::malloc(bytes.size());
  if (copy == nullptr) throw std::bad_alloc();
  std::memcpy(copy, bytes.data(), bytes.size());
  zip_source_t* source = zip_source_buffer_create(copy, bytes.size(), 1, nullptr);
  if (source == nullptr) {
    std::free(copy);
    throw std::bad_alloc();
  }
  // NOLINTEND(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
  return source;  // NOLINT(clang-analyzer-unix.Malloc): the source frees it
}

struct FileCloser {
  void operator()(zip_file_t* file) const {
    if (file != nullptr) zip_fclose(file);
  }
};

}  // namespace

struct ZipArchive::Handle {
  zip_t* archive = nullptr;
  zip_source_t* source = nullptr;  // kept for reading after the archive is closed

  ~Handle() {
    if (archive != nullptr) zip_discard(archive);
    if (source != nullptr) zip_source_free(source);
  }
};

ZipArchive::ZipArchive(std::string_view bytes, const XlsxLimits& limits)
    : limits_(limits), handle_(std::make_unique<Handle>()) {
  CheckKind(bytes);
  CheckEnd(bytes);
  const std::uint64_t declared = DeclaredParts(bytes);
  if (declared > limits_.parts) {
    throw WorkbookError(
        fmt::format("it has {} parts; at most {} are allowed", declared, limits_.parts));
  }
  handle_->source = MakeSource(bytes);
  zip_source_keep(handle_->source);
  handle_->archive = zip_open_from_source(handle_->source, 0, nullptr);
  if (handle_->archive == nullptr) {
    zip_source_free(handle_->source);  // the archive would have taken this reference
    throw WorkbookError("the file is damaged or cut short: its list of parts cannot be read");
  }
  IndexParts();
}

ZipArchive::~ZipArchive() = default;

void ZipArchive::IndexParts() {
  const auto count = static_cast<std::uint64_t>(zip_get_num_entries(handle_->archive, 0));
  if (count > limits_.parts) {
    throw WorkbookError(
        fmt::format("it has {} parts; at most {} are allowed", count, limits_.parts));
  }
  for (std::uint64_t i = 0; i < count; ++i) {
    const char* name = zip_get_name(handle_->archive, i, ZIP_FL_ENC_GUESS);
    if (name == nullptr) throw WorkbookError("the list of parts is damaged");
    if (!parts_.emplace(PartKey(name), i).second) {
      throw WorkbookError(
          fmt::format("it holds two parts named '{}'", Printable(std::string_view(name))));
    }
  }
}

bool ZipArchive::Has(std::string_view part) const { return parts_.contains(PartKey(part)); }

std::uint64_t ZipArchive::Find(std::string_view part) const {
  const auto found = parts_.find(PartKey(part));
  if (found == parts_.end()) {
    throw WorkbookError(fmt::format("part '{}' is missing", Printable(part)));
  }
  return found->second;
}

void ZipArchive::CheckSize(std::string_view part, std::uint64_t size, std::uint64_t limit) const {
  if (size > limit) {
    throw WorkbookError(
        fmt::format("part '{}' is too large: the limit is {} MB", Printable(part), limit >> 20));
  }
}

void ZipArchive::CheckTotal(std::uint64_t more) const {
  if (more > limits_.total_bytes - unpacked_) {
    throw WorkbookError(fmt::format("its parts are too large: the limit is {} MB in all",
                                    limits_.total_bytes >> 20));
  }
}

ZipArchive::AppendPiece ZipArchive::Open(std::string_view part, std::uint64_t limit) {
  const std::uint64_t index = Find(part);
  zip_stat_t stat;
  if (zip_stat_index(handle_->archive, index, 0, &stat) == 0 && (stat.valid & ZIP_STAT_SIZE) != 0) {
    CheckSize(part, stat.size, limit);
    CheckTotal(stat.size);
  }
  const std::shared_ptr<zip_file_t> file(zip_fopen_index(handle_->archive, index, 0), FileCloser());
  if (!file) ThrowPartError(part, zip_error_code_zip(zip_get_error(handle_->archive)));
  return [this, file, limit, name = std::string(part),
          size = std::uint64_t{0}](std::string& content) mutable {
    const std::size_t before = content.size();
    content.resize(before + kPieceSize);
    const zip_int64_t got = zip_fread(file.get(), content.data() + before, kPieceSize);
    content.resize(before + static_cast<std::size_t>(std::max<zip_int64_t>(got, 0)));
    if (got < 0) ThrowPartError(name, zip_error_code_zip(zip_file_get_error(file.get())));
    const auto piece = static_cast<std::uint64_t>(got);
    size += piece;
    CheckSize(name, size, limit);
    CheckTotal(piece);
    unpacked_ += piece;
    return got > 0;
  };
}

std::string ZipArchive::Read(std::string_view part, std::uint64_t limit) {
  const AppendPiece append_piece = Open(part, limit);
  std::string content;
  zip_stat_t stat;
  if (zip_stat_index(handle_->archive, Find(part), 0, &stat) == 0 &&
      (stat.valid & ZIP_STAT_SIZE) != 0)
    content.reserve(stat.size + kPieceSize);  // bounded, and so is what is not a lie of it
  while (append_piece(content)) {
  }
  return content;
}

void ZipArchive::CheckParts() {
  std::vector<char> chunk(kPieceSize);
  for (const auto& [name, index] : parts_) {
    const std::unique_ptr<zip_file_t, FileCloser> file(zip_fopen_index(handle_->archive, index, 0));
    if (!file) ThrowPartError(name, zip_error_code_zip(zip_get_error(handle_->archive)));
    std::uint64_t size = 0;
    while (true) {
      const zip_int64_t got = zip_fread(file.get(), chunk.data(), chunk.size());
      if (got < 0) ThrowPartError(name, zip_error_code_zip(zip_file_get_error(file.get())));
      if (got == 0) break;
      size += static_cast<std::uint64_t>(got);
    }
    zip_stat_t stat;
    const bool is_known = zip_stat_index(handle_->archive, index, 0, &stat) == 0;
    if (!is_known || stat.size != size) ThrowPartError(name, ZIP_ER_INCONS);
  }
}

void ZipArchive::Replace(std::string_view part, std::string content) {
  const std::uint64_t index = Find(part);
  zip_stat_t stat;
  const bool has_stat = zip_stat_index(handle_->archive, index, 0, &stat) == 0;
  replacements_.push_back(std::make_unique<std::string>(std::move(content)));
  const std::string& held = *replacements_.back();
  zip_source_t* source = zip_source_buffer(handle_->archive, held.data(), held.size(), 0);
  if (source == nullptr) throw std::bad_alloc();
  if (zip_file_replace(handle_->archive, index, source, 0) != 0) {
    zip_source_free(source);
    throw WorkbookError(fmt::format("part '{}' cannot be replaced", Printable(part)));
  }
  zip_set_file_compression(handle_->archive, index, ZIP_CM_DEFLATE, 0);
  // A fixed time, so that the same values give the same bytes.
  if (has_stat && (stat.valid & ZIP_STAT_MTIME) != 0) {
    zip_file_set_mtime(handle_->archive, index, stat.mtime, 0);
  }
}

std::uint64_t ZipArchive::replaced_bytes() const {
  std::uint64_t bytes = 0;
  for (const auto& content : replacements_) bytes += content->size();
  return bytes;
}

void ZipArchive::Remove(std::string_view part) {
  if (zip_delete(handle_->archive, Find(part)) != 0)
    throw WorkbookError(fmt::format("part '{}' cannot be removed", Printable(part)));
  parts_.erase(PartKey(part));
}

std::string ZipArchive::Finish() {
  if (zip_close(handle_->archive) != 0) {
    throw WorkbookError(fmt::format("the workbook cannot be compressed again: {}",
                                    zip_error_strerror(zip_get_error(handle_->archive))));
  }
  handle_->archive = nullptr;
  zip_stat_t stat;
  zip_stat_init(&stat);
  if (zip_source_stat(handle_->source, &stat) != 0 || (stat.valid & ZIP_STAT_SIZE) == 0 ||
      zip_source_open(handle_->source) != 0) {
    throw WorkbookError("the workbook cannot be compressed again");
  }
  std::string packed(stat.size, '\0');
  const zip_int64_t got = zip_source_read(handle_->source, packed.data(), packed.size());
  zip_source_close(handle_->source);
  if (got != static_cast<zip_int64_t>(packed.size())) {
    throw WorkbookError("the workbook cannot be compressed again");
  }
  return packed;
}

}  // namespace zavhost
