#pragma once
// Whole files in and out of memory, by paths that may hold any Unicode.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "host/workbook/workbook.h"

namespace zavhost {

/// The bytes of a regular file. Throws WorkbookError (without the file's name) when there is none,
/// it cannot be read, or it is larger than `limit`.
std::string ReadFile(const std::filesystem::path& file, std::uint64_t limit);

/// Writes a file by way of a temporary one beside it, so that a failure leaves what was there.
/// Throws WorkbookError (without the file's name).
void WriteFile(const std::filesystem::path& file, const std::string& bytes);

/// The workbook that `read` makes of a file. What goes wrong becomes a WorkbookError that begins
/// with the file's name.
Workbook ReadNamed(const std::filesystem::path& file, const std::function<Workbook()>& read);

}  // namespace zavhost
