#pragma once
// .xlsx files: reads them into a Workbook, and writes recalculated values into a copy of the file
// in which everything else stays unchanged.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "host/workbook/workbook.h"

namespace zavhost {

/// Limits for files; beyond them, the reader throws WorkbookError.
struct XlsxLimits {
  std::uint64_t file_bytes = 512ull << 20;   // the file itself
  std::uint64_t part_bytes = 256ull << 20;   // one part, unpacked
  std::uint64_t total_bytes = 768ull << 20;  // all parts read, unpacked
  std::uint64_t cells = 8'000'000;
  std::size_t parts = 10'000;
};

/// Reads a workbook: values, formulas (shared formulas as FormulaCell with one text), array
/// formulas, defined names. Throws WorkbookError with one clear line for any file that it cannot
/// use.
Workbook ReadXlsx(const std::filesystem::path& file, const XlsxLimits& limits = {});

/// Copies `source` to `target` and puts the workbook's current values into the listed cells (for an
/// array, every cell of its range): only their `t` attribute and `<v>` child change. Both may be
/// the same file. Writes to a temporary file in the target's folder first, so that a failure leaves
/// the target unchanged.
void WriteXlsx(const std::filesystem::path& source, const std::filesystem::path& target,
               const Workbook& workbook, const std::vector<CellAddress>& changed,
               const XlsxLimits& limits = {});

/// Reads comma-separated text (RFC 4180, UTF-8 with or without byte-order mark) as a workbook with
/// one sheet "Data": numbers become numbers, TRUE and FALSE booleans, error texts errors, "" and NA
/// blanks.
Workbook ReadCsv(const std::filesystem::path& file, const XlsxLimits& limits = {});

}  // namespace zavhost
