// large_workbook BOOK.xlsx: what a large workbook costs, beside what nobody can avoid.
//
// Times are the best of several rounds: loading, calculating and writing, and two floors, inflating
// the parts and looking at each of their bytes once, and copying the file. Memory is the peak of a
// process of its own that has done nothing else, after each step.
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>

#include "host/calc/engine.h"
#include "host/xlsx/file_io.h"
#include "host/xlsx/xlsx_file.h"
#include "host/xlsx/zip_archive.h"
#include "platform/module.h"

namespace zavrel::bench {
namespace {

namespace fs = std::filesystem;
using zavhost::CellAddress;
using zavhost::Engine;
using zavhost::Workbook;

constexpr int kRounds = 7;
constexpr const char* kParts[] = {"xl/workbook.xml", "xl/sharedStrings.xml",
                                  "xl/worksheets/sheet1.xml", "xl/worksheets/sheet2.xml"};

double BestSeconds(const std::function<void()>& work) {
  double best = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    const auto start = std::chrono::steady_clock::now();
    work();
    best = std::min(
        best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  return best;
}

/// The bytes of the parts, counting one that is in none.
std::size_t InflateAndScan(const fs::path& book, std::size_t* bytes = nullptr) {
  const std::string archive_bytes = zavhost::ReadFile(book, std::uint64_t{1} << 32);
  zavhost::ZipArchive archive(archive_bytes, {});
  std::size_t found = 0;
  for (const char* part : kParts) {
    const std::string content = archive.Read(part);
    found += static_cast<std::size_t>(std::count(content.begin(), content.end(), '\x01'));
    if (bytes != nullptr) *bytes += content.size();
  }
  return found;
}

std::unique_ptr<Engine> Loaded(const fs::path& book) {
  auto engine = std::make_unique<Engine>(zavhost::ReadXlsx(book));
  engine->LoadAddIn(ZAVREL_ADD_IN);
  engine->Announce(5);
  return engine;
}

std::vector<CellAddress> FormulaCells(const Workbook& workbook) {
  std::vector<CellAddress> cells;
  cells.reserve(workbook.formulas.size());
  for (const auto& formula : workbook.formulas) cells.push_back(formula.address);
  return cells;
}

/// The most memory that this process has had, in MB.
double PeakMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
  }
  return 0;
}

void MeasureMemory(const fs::path& book, const fs::path& target) {
  std::size_t parts = 0;
  const double empty = PeakMegabytes();
  const auto engine = Loaded(book);
  const double loaded = PeakMegabytes();
  engine->Recalculate();
  const double calculated = PeakMegabytes();
  engine->CloseAddIns();  // as the program does before it writes
  zavhost::WriteXlsx(book, target, engine->workbook(), {.cells = FormulaCells(engine->workbook())});
  const double written = PeakMegabytes();
  InflateAndScan(book, &parts);
  std::size_t cells = 0;
  for (const auto& sheet : engine->workbook().sheets) {
    const auto used = sheet.used_range();
    for (std::int32_t column = 0; used && column <= used->last_column; ++column)
      cells += sheet.column(column).size();
  }
  const double parts_megabytes = static_cast<double>(parts) / (1 << 20);
  fmt::print(
      "memory: program {:.1f} MB, loaded {:.1f}, calculated {:.1f}, written {:.1f}; parts {:.1f} "
      "MB, {} cells: {:.1f} bytes a cell beyond the parts\n",
      empty, loaded, calculated, written, parts_megabytes, cells,
      (written - parts_megabytes) * (1 << 20) / static_cast<double>(cells));
}

void MeasureTimes(const fs::path& book, const fs::path& target) {
  std::size_t nowhere = 0;
  const double inflating = BestSeconds([&] { nowhere += InflateAndScan(book); });
  const double copying = BestSeconds([&] {
    const std::string bytes = zavhost::ReadFile(book, std::uint64_t{1} << 32);
    std::ofstream(target, std::ios::binary) << bytes;
  });
  const double loading = BestSeconds([&] { nowhere += zavhost::ReadXlsx(book).formulas.size(); });
  const double calculating = BestSeconds([&] { Loaded(book)->Recalculate(); }) - loading;
  const Workbook workbook = zavhost::ReadXlsx(book);
  const std::vector<CellAddress> cells = FormulaCells(workbook);
  const double writing =
      BestSeconds([&] { zavhost::WriteXlsx(book, target, workbook, {.cells = cells}); });
  const double floors = inflating + copying;
  fmt::print(
      "floors: inflate and scan {:.0f} ms, copy {:.0f} ms\nload {:.0f} ms, calculate {:.0f} ms, "
      "write {:.0f} ms: load and write take {:.2f} of the floors{}\n",
      inflating * 1e3, copying * 1e3, loading * 1e3, calculating * 1e3, writing * 1e3,
      (loading + writing) / floors, nowhere == 1 ? "." : "");
}

}  // namespace
}  // namespace zavrel::bench

int main(int count, char** arguments) {
  if (count < 2) return 2;
  const std::filesystem::path book = arguments[1];
  const std::filesystem::path target = book.string() + ".new";
  if (count > 2) {
    zavrel::bench::MeasureMemory(book, target);
  } else {
    zavrel::bench::MeasureTimes(book, target);
  }
  std::filesystem::remove(target);
}
