#include "host/xlsx/zip_archive.h"

#include <fmt/format.h>
#include <zip.h>

#include <algorithm>
#include <cerrno>
#include <ctime>

#include "host/xlsx/messages.h"
#include "platform/exhausted_memory.h"

namespace zavhost {
namespace owned {

// What libzip hands out, with its owners.
struct Deleter {
  void operator()(zip_t* archive) const { zip_discard(archive); }
  void operator()(zip_source_t* source) const { zip_source_free(source); }
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using Archive = std::unique_ptr<zip_t, Deleter>;
using Source = std::unique_ptr<zip_source_t, Deleter>;
using File = std::unique_ptr<zip_file_t, Deleter>;

}  // namespace owned
namespace {

constexpr std::size_t kEndRecordSize = 22;
constexpr std::size_t kLargestComment = 65'535;
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

/// Refuses too many parts, also those of archives in the archive. libzip allocates memory for all
/// entries of the list of parts before it answers any question, and whatever number it declares, so
/// this check comes first.
void CheckCount(std::string_view bytes, std::size_t most) {
  constexpr std::string_view kEntry = "PK\1\2";
  std::size_t count = 0;
  for (std::size_t at = bytes.find(kEntry); at != std::string_view::npos;
       at = bytes.find(kEntry, at + kEntry.size()))
    ++count;
  if (count > most)
    throw WorkbookError(fmt::format("it has {} parts; at most {} are allowed", count, most));
}

/// Refuses a file that ends in several ways, of which each program may take another.
void CheckEnd(std::string_view bytes) {
  int ends = 0;
  const std::size_t tail = std::min(bytes.size(), kEndRecordSize + kLargestComment);
  for (std::size_t at = bytes.find("PK\5\6", bytes.size() - tail);
       at != std::string_view::npos && at + kEndRecordSize <= bytes.size();
       at = bytes.find("PK\5\6", at + 1)) {
    const std::size_t low = static_cast<unsigned char>(bytes[at + 20]);
    const std::size_t high = static_cast<unsigned char>(bytes[at + 21]);
    ends += at + kEndRecordSize + (high << 8 | low) == bytes.size() ? 1 : 0;
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

/// For what libzip refuses only when memory runs out.
void CheckMemory(bool is_done) {
  if (!is_done) zavrel::ThrowBadAlloc();
}

// libzip reports some of its failed requests for memory as damage, so errno is asked, too.

[[noreturn]] void ThrowPartError(std::string_view part, int zip_code) {
  const std::string name = Printable(part);
  zavrel::ThrowIfNoMemory();
  switch (zip_code) {
    case ZIP_ER_NOPASSWD:
      throw WorkbookError(fmt::format("part '{}' is protected by a password", name));
    case ZIP_ER_COMPNOTSUPP:
      throw WorkbookError(
          fmt::format("part '{}' uses a compression method that is not supported", name));
    case ZIP_ER_CRC:
      throw WorkbookError(fmt::format("part '{}' is damaged: its checksum is wrong", name));
    default:
      throw WorkbookError(fmt::format("part '{}' is damaged and cannot be unpacked", name));
  }
}

/// A source that holds a copy of the bytes: libzip 1.7.3 frees its caller's buffer when it writes
/// an archive whose beginning is unchanged.
owned::Source MakeSource(std::string_view bytes) {
  owned::Source source(zip_source_buffer_create(nullptr, 0, 0, nullptr));
  CheckMemory(source && zip_source_begin_write(source.get()) == 0 &&
              zip_source_write(source.get(), bytes.data(), bytes.size()) ==
                  static_cast<zip_int64_t>(bytes.size()) &&
              zip_source_commit_write(source.get()) == 0);
  return source;
}

owned::File OpenFile(zip_t* archive, std::uint64_t index, std::string_view part) {
  errno = 0;
  owned::File file(zip_fopen_index(archive, index, 0));
  if (!file) ThrowPartError(part, zip_error_code_zip(zip_get_error(archive)));
  return file;
}

/// Unpacks the next piece of a part, of kPieceSize bytes at most. None are left at its end.
std::size_t ReadPiece(zip_file_t* file, char* piece, std::string_view part) {
  errno = 0;
  const zip_int64_t got = zip_fread(file, piece, kPieceSize);
  if (got < 0) ThrowPartError(part, zip_error_code_zip(zip_file_get_error(file)));
  return static_cast<std::size_t>(got);
}

/// What the list of parts says of a part.
zip_stat_t StatOf(zip_t* archive, std::uint64_t index) {
  zip_stat_t stat;
  zip_stat_init(&stat);
  zip_stat_index(archive, index, 0, &stat);
  return stat;
}

}  // namespace

struct ZipArchive::Handle {
  owned::Source source;  // kept for reading after the archive is closed
  owned::Archive archive;
};

ZipArchive::ZipArchive(std::string_view bytes, const XlsxLimits& limits)
    : limits_(limits), handle_(std::make_unique<Handle>()) {
  CheckKind(bytes);
  CheckEnd(bytes);
  CheckCount(bytes, limits_.parts);
  handle_->source = MakeSource(bytes);
  zip_source_keep(handle_->source.get());
  errno = 0;
  handle_->archive.reset(zip_open_from_source(handle_->source.get(), 0, nullptr));
  if (!handle_->archive) {
    zip_source_free(handle_->source.get());  // the archive would have taken this reference
    zavrel::ThrowIfNoMemory();
    throw WorkbookError("the file is damaged or cut short: its list of parts cannot be read");
  }
  IndexParts();
}

ZipArchive::~ZipArchive() = default;

void ZipArchive::IndexParts() {
  zip_t* archive = handle_->archive.get();
  const auto count = static_cast<std::uint64_t>(zip_get_num_entries(archive, 0));
  for (std::uint64_t i = 0; i < count; ++i) {
    const char* name = zip_get_name(archive, i, ZIP_FL_ENC_GUESS);
    CheckMemory(name != nullptr);
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
  const std::uint64_t declared = StatOf(handle_->archive.get(), index).size;
  CheckSize(part, declared, limit);
  CheckTotal(declared);
  const std::shared_ptr<zip_file_t> file = OpenFile(handle_->archive.get(), index, part);
  return [this, file, limit, name = std::string(part),
          size = std::uint64_t{0}](std::string& content) mutable {
    const std::size_t before = content.size();
    content.resize(before + kPieceSize);
    const std::size_t piece = ReadPiece(file.get(), content.data() + before, name);
    content.resize(before + piece);
    size += piece;
    CheckSize(name, size, limit);
    CheckTotal(piece);
    unpacked_ += piece;
    return piece > 0;
  };
}

std::string ZipArchive::Read(std::string_view part, std::uint64_t limit) {
  const AppendPiece append_piece = Open(part, limit);
  std::string content;
  // Bounded, and so is what is not a lie of it.
  content.reserve(StatOf(handle_->archive.get(), Find(part)).size + kPieceSize);
  while (append_piece(content)) {
  }
  return content;
}

void ZipArchive::CheckParts() {
  std::vector<char> chunk(kPieceSize);
  for (const auto& [name, index] : parts_) {
    const owned::File file = OpenFile(handle_->archive.get(), index, name);
    std::uint64_t size = 0;
    while (const std::size_t piece = ReadPiece(file.get(), chunk.data(), name)) size += piece;
    if (size != StatOf(handle_->archive.get(), index).size) ThrowPartError(name, ZIP_ER_INCONS);
  }
}

void ZipArchive::Replace(std::string_view part, std::string content) {
  const std::uint64_t index = Find(part);
  zip_t* archive = handle_->archive.get();
  const std::time_t time = StatOf(archive, index).mtime;
  replacements_.push_back(std::make_unique<std::string>(std::move(content)));
  const std::string& held = *replacements_.back();
  const owned::Source source(zip_source_buffer(archive, held.data(), held.size(), 0));
  CheckMemory(source && zip_file_replace(archive, index, source.get(), 0) == 0);
  zip_source_keep(source.get());  // for the archive, which has taken this reference
  // The old time, so that the same values give the same bytes.
  CheckMemory(zip_set_file_compression(archive, index, ZIP_CM_DEFLATE, 0) == 0 &&
              zip_file_set_mtime(archive, index, time, 0) == 0);
}

std::uint64_t ZipArchive::replaced_bytes() const {
  std::uint64_t bytes = 0;
  for (const auto& content : replacements_) bytes += content->size();
  return bytes;
}

void ZipArchive::Remove(std::string_view part) {
  CheckMemory(zip_delete(handle_->archive.get(), Find(part)) == 0);
  parts_.erase(PartKey(part));
}

std::string ZipArchive::Finish() {
  zip_t* archive = handle_->archive.release();
  errno = 0;
  if (zip_close(archive) != 0) {
    handle_->archive.reset(archive);
    zavrel::ThrowIfNoMemory();
    throw WorkbookError(fmt::format("the workbook cannot be compressed again: {}",
                                    zip_error_strerror(zip_get_error(archive))));
  }
  zip_source_t* source = handle_->source.get();
  zip_stat_t stat;
  zip_stat_init(&stat);
  CheckMemory(zip_source_stat(source, &stat) == 0 && zip_source_open(source) == 0);
  std::string packed(stat.size, '\0');
  const zip_int64_t got = zip_source_read(source, packed.data(), packed.size());
  zip_source_close(source);
  CheckMemory(got == static_cast<zip_int64_t>(packed.size()));
  return packed;
}

}  // namespace zavhost
