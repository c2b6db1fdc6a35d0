#pragma once
// Reads and writes whole files, with paths that may contain any Unicode characters.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "host/workbook/workbook.h"

namespace zavhost {

/// The bytes of a regular file. Throws WorkbookError (without the file's name) if the file does not
/// exist, cannot be read, or is larger than `limit`.
std::string ReadFile(const std::filesystem::path& file, std::uint64_t limit);

/// Writes a file through a temporary file in the same folder, so that a failure leaves the old file
/// unchanged. Throws WorkbookError (without the file's name).
void WriteFile(const std::filesystem::path& file, const std::string& bytes);

/// Failures of `action` become a WorkbookError that begins with the file's name.
void NamingFile(const std::filesystem::path& file, const std::function<void()>& action);
/// The workbook that `read` creates from a file.
Workbook ReadNamed(const std::filesystem::path& file, const std::function<Workbook()>& read);

}  // namespace zavhost
