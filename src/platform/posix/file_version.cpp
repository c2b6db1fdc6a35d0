#include "platform/file_version.h"

#include <elf.h>
#include <fcntl.h>

#include <cstring>
#include <string_view>
#include <vector>

#include "platform/posix/file_descriptor.h"

namespace zavrel {
namespace {

// The version is a note that the build puts into every library and program of the suite
// (cmake/version_note.cpp.in).
constexpr std::string_view kNoteName("Zavrel\0", 7);
constexpr std::uint32_t kVersionNote = 1;
constexpr std::size_t kLongestNotes = 1 << 20;

template <class Record>
bool Read(const FileDescriptor& file, std::uint64_t offset, Record* records,
          std::size_t count = 1) {
  const std::size_t size = count * sizeof(Record);
  return pread(file.get(), records, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size);
}

constexpr std::size_t Padded(std::size_t size) { return (size + 3) & ~std::size_t{3}; }

std::optional<FileVersion> VersionAmong(std::string_view notes) {
  Elf64_Nhdr header;
  while (notes.size() >= sizeof header) {
    std::memcpy(&header, notes.data(), sizeof header);
    notes.remove_prefix(sizeof header);
    const std::size_t name_size = Padded(header.n_namesz);
    if (name_size > notes.size() || Padded(header.n_descsz) > notes.size() - name_size) break;
    FileVersion version;
    if (notes.substr(0, header.n_namesz) == kNoteName && header.n_type == kVersionNote &&
        header.n_descsz == sizeof version) {
      std::memcpy(version.data(), notes.data() + name_size, sizeof version);
      return version;
    }
    notes.remove_prefix(name_size + Padded(header.n_descsz));
  }
  return std::nullopt;
}

}  // namespace

std::optional<FileVersion> ReadFileVersion(const std::filesystem::path& file) {
  const FileDescriptor opened(open(file.c_str(), O_RDONLY | O_CLOEXEC));
  Elf64_Ehdr header;
  if (!Read(opened, 0, &header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
      header.e_ident[EI_CLASS] != ELFCLASS64 || header.e_ident[EI_DATA] != ELFDATA2LSB ||
      header.e_phentsize != sizeof(Elf64_Phdr)) {
    return std::nullopt;
  }
  std::vector<Elf64_Phdr> segments(header.e_phnum);
  if (!Read(opened, header.e_phoff, segments.data(), segments.size())) return std::nullopt;
  for (const Elf64_Phdr& segment : segments) {
    if (segment.p_type != PT_NOTE || segment.p_filesz > kLongestNotes) continue;
    std::string notes(segment.p_filesz, '\0');
    if (!Read(opened, segment.p_offset, notes.data(), notes.size())) return std::nullopt;
    if (const auto version = VersionAmong(notes)) return version;
  }
  return std::nullopt;
}

}  // namespace zavrel
