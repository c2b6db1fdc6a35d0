#include "host/automation/saved_book.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "host/automation/saved_sheet.h"
#include "host/automation/stored_state.h"
#include "host/report/new_workbook.h"
#include "host/report/stored_formula.h"
#include "host/xlsx/file_io.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

/// A file beside its place, deleted in the end.
class WorkingFile {
 public:
  explicit WorkingFile(const std::filesystem::path& target) : path_(target) {
    path_ += ".new.xlsx";
    Remove();
  }
  ~WorkingFile() { Remove(); }
  WorkingFile(const WorkingFile&) = delete;
  WorkingFile& operator=(const WorkingFile&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  void Remove() const {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  std::filesystem::path path_;
};

void SaveNames(lxw_workbook* saved, const Book& book) {
  for (const auto& defined : book.names()) {
    std::u16string name = defined->name;
    if (defined->sheet) name.insert(0, QuotedSheetName(defined->sheet->name) + u"!");
    Check(workbook_define_name(saved, Utf8FromUtf16(name).c_str(),
                               ("=" + StoredFormula(defined->text)).c_str()));
  }
}

void WriteWhole(Book& book, const std::filesystem::path& file) {
  NewWorkbook saved(file);
  SavedFormats formats(saved.get());
  std::vector<lxw_worksheet*> sheets;
  // All sheets first: the formulas of one name others.
  for (const SheetPtr& sheet : book.sheets()) {
    sheets.push_back(workbook_add_worksheet(saved.get(), Utf8FromUtf16(sheet->name).c_str()));
    if (sheets.back() == nullptr) throw WorkbookError("a sheet's name cannot be written");
  }
  for (std::size_t i = 0; i < sheets.size(); ++i) {
    const SheetPtr& sheet = book.sheets()[i];
    SaveSheet(saved.get(), sheets[i], book, *sheet, formats);
    if (sheet->visibility != kSheetVisible) worksheet_hide(sheets[i]);
    if (sheet == book.active) worksheet_activate(sheets[i]);
  }
  // The library shows the first sheet unless it is told not to.
  const auto visible =
      std::find_if(book.sheets().begin(), book.sheets().end(),
                   [](const SheetPtr& sheet) { return sheet->visibility == kSheetVisible; });
  if (visible != book.sheets().end())
    worksheet_set_first_sheet(sheets[static_cast<std::size_t>(visible - book.sheets().begin())]);
  SaveNames(saved.get(), book);
  saved.Close();
}

}  // namespace

void SaveBook(Book& book, const std::filesystem::path& file) {
  constexpr std::uint64_t kMostBytes = 1u << 30;
  const WorkingFile working(file);
  WriteWhole(book, working.path());
  WriteFile(file, WithState(ReadFile(working.path(), kMostBytes), book));
}

BookPtr OpenBook(const std::filesystem::path& file,
                 const std::vector<std::filesystem::path>& add_ins) {
  const bool is_csv = EqualIgnoringCase(Utf16FromPath(file.extension()), u".csv");
  Workbook workbook = is_csv ? ReadCsv(file) : ReadXlsx(file);
  workbook.file_name = Utf16FromPath(file.filename());
  auto book = std::make_shared<Book>(std::move(workbook), std::filesystem::absolute(file), add_ins);
  if (!is_csv) ReadState(ReadFile(file, XlsxLimits().file_bytes), *book);
  return book;
}

}  // namespace zavhost
