#pragma once
// .xlsx files: reading into a Workbook, and writing recalculated values back into a copy of the
// file in which everything else stays as it was.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "host/workbook/workbook.h"

namespace zavhost {

/// Bounds on what a file may ask of the reader. Beyond them: WorkbookError.
struct XlsxLimits {
  std::uint64_t file_bytes = 512ull << 20;   // the file itself
  std::uint64_t part_bytes = 256ull << 20;   // one part, unpacked
  std::uint64_t total_bytes = 768ull << 20;  // all parts read, unpacked
  std::uint64_t cells = 8'000'000;
  std::size_t parts = 10'000;
};

/// Reads a workbook: values, formulas (shared ones as FormulaCell with one text), array formulas,
/// defined names. Throws WorkbookError with one clear line for anything that is not a usable file.
Workbook ReadXlsx(const std::filesystem::path& file, const XlsxLimits& limits = {});

/// Copies `source` to `target` and puts the workbook's present values into the cells listed (for an
/// array, every cell of its range): only their `t` attribute and `<v>` child change. The two may be
/// the same file. Writes to a temporary file beside the target first, so that a failure leaves the
/// target as it was.
void WriteXlsx(const std::filesystem::path& source, const std::filesystem::path& target,
               const Workbook& workbook, const std::vector<CellAddress>& changed,
               const XlsxLimits& limits = {});

/// Reads comma-separated text (RFC 4180, UTF-8 with or without byte-order mark) as a workbook of
/// one sheet "Data": numbers become numbers, TRUE/FALSE booleans, error texts errors, "" and NA
/// blank.
Workbook ReadCsv(const std::filesystem::path& file, const XlsxLimits& limits = {});

}  // namespace zavhost
