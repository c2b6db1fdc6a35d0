#include "host/xlsx/file_io.h"

#include <fmt/format.h>

#include <cerrno>
#include <fstream>
#include <system_error>

#include "host/xlsx/messages.h"
#include "host/xlsx/unfinished_file.h"
#include "platform/exhausted_memory.h"

namespace zavhost {
namespace fs = std::filesystem;
namespace {

std::string Megabytes(std::uint64_t bytes) { return fmt::format("{} MB", (bytes >> 20) + 1); }

}  // namespace

std::string ReadFile(const fs::path& file, std::uint64_t limit) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (status.type() == fs::file_type::not_found) throw WorkbookError("there is no such file");
  if (status.type() == fs::file_type::directory)
    throw WorkbookError("this is a folder, not a file");
  if (status.type() != fs::file_type::regular) throw WorkbookError("this is not a regular file");
  const std::uint64_t size = fs::file_size(file, error);
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) zavrel::ThrowIfNoMemory();
  if (!stream) throw WorkbookError("the file cannot be opened; are you permitted to read it?");
  if (size > limit) {
    throw WorkbookError(fmt::format("the file is too large: {}; the limit is {}", Megabytes(size),
                                    Megabytes(limit - 1)));
  }
  std::string bytes(static_cast<std::size_t>(size), '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(size));
  if (stream.gcount() != static_cast<std::streamsize>(size))
    throw WorkbookError("the file cannot be read to its end");
  return bytes;
}

void WriteFile(const fs::path& file, const std::string& bytes) {
  std::error_code error;
  fs::path target = file;
  // Replaces the target of a link, not the link itself.
  if (fs::is_symlink(file, error)) {
    const fs::path resolved = fs::canonical(file, error);
    zavrel::ThrowIfNoMemory(error);
    if (!error) target = resolved;
  }
  const fs::file_status before = fs::status(target, error);
  if (before.type() == fs::file_type::directory)
    throw WorkbookError("this is a folder, not a file");
  if (fs::exists(before) && before.type() != fs::file_type::regular)
    throw WorkbookError("this is not a regular file");

  UnfinishedFile temporary(target);
  {
    errno = 0;
    std::ofstream stream(temporary.path(), std::ios::binary | std::ios::trunc);
    if (!stream) zavrel::ThrowIfNoMemory();
    if (!stream) throw WorkbookError("files cannot be written to this folder");
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) throw WorkbookError("the file cannot be written completely; is the disk full?");
  }
  if (before.type() == fs::file_type::regular) {
    fs::permissions(temporary.path(), before.permissions(), error);
  }
  temporary.MoveTo(target);
}

void NamingFile(const fs::path& file, const std::function<void()>& action) {
  try {
    action();
  } catch (const WorkbookError& error) {
    throw WorkbookError(fmt::format("{}: {}", PrintablePath(file), error.what()));
  } catch (const std::bad_alloc&) {
    throw WorkbookError(fmt::format("{}: not enough memory for it", PrintablePath(file)));
  }
}

Workbook ReadNamed(const fs::path& file, const std::function<Workbook()>& read) {
  Workbook workbook;
  NamingFile(file, [&] {
    workbook = read();
    workbook.file_name = Utf16FromPath(file.filename());
  });
  return workbook;
}

}  // namespace zavhost
