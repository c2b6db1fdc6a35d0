#pragma once
// .xlsx files: reads them into a Workbook, and writes recalculated values into a copy of the file
// in which everything else stays unchanged.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "host/workbook/workbook.h"

namespace zavhost {

/// Limits for files; beyond them, the reader throws WorkbookError.
struct XlsxLimits {
  std::uint64_t file_bytes = 512ull << 20;   // the file itself
  std::uint64_t part_bytes = 256ull << 20;   // one sheet or the shared texts, unpacked
  std::uint64_t list_bytes = 32ull << 20;    // any other part, unpacked
  std::uint64_t total_bytes = 768ull << 20;  // all parts read, unpacked
  std::uint64_t cells = 8'000'000;
  std::uint64_t kept_bytes = 320ull << 20;     // what is kept of cells, texts and formulas
  std::uint64_t changed_bytes = 440ull << 20;  // the same, with changed parts and what they were
  std::size_t parts = 10'000;                  // with those of zip archives in it
};

/// Reads a workbook: values, formulas (shared formulas as FormulaCell with one text), array
/// formulas, defined names. Throws WorkbookError with one clear line for any file that it cannot
/// use.
Workbook ReadXlsx(const std::filesystem::path& file, const XlsxLimits& limits = {});

/// The cells to which a formula refers, if it refers to cells.
using FindReference = std::function<std::optional<Reference>(std::u16string_view)>;

/// What of a workbook is not as in its file.
struct XlsxChanges {
  /// Cells with other values.
  std::vector<CellAddress> cells{};
  /// Values take the place of all formulas.
  bool values_only = false;
  /// The cells that a chart's formula refers to; without it charts keep their stored values.
  FindReference find_reference{};
};

/// Copies `source` to `target` and puts the workbook's current values into the listed cells: only
/// their `t` attribute, their `<v>` child and the range of a dynamic array formula change. The
/// values that charts store become those of their cells. Both may be the same file. Writes to a
/// temporary file in the target's folder first, so that a failure leaves the target unchanged.
void WriteXlsx(const std::filesystem::path& source, const std::filesystem::path& target,
               const Workbook& workbook, const XlsxChanges& changes, const XlsxLimits& limits = {});

/// Reads comma-separated text (RFC 4180, UTF-8 with or without byte-order mark) as a workbook with
/// one sheet "Data": numbers become numbers, TRUE and FALSE booleans, error texts errors, "" and NA
/// blanks.
Workbook ReadCsv(const std::filesystem::path& file, const XlsxLimits& limits = {});

}  // namespace zavhost
