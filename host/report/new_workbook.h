#pragma once
// A workbook that libxlsxwriter makes.

#include <xlsxwriter.h>

#include <filesystem>
#include <utility>

namespace zavhost {

/// Throws WorkbookError for a failure of the library.
void Check(lxw_error error);

/// The workbook, closed without a look back if writing ends early. Throws
/// WorkbookError.
class NewWorkbook {
 public:
  explicit NewWorkbook(const std::filesystem::path& file);
  ~NewWorkbook();
  NewWorkbook(const NewWorkbook&) = delete;
  NewWorkbook& operator=(const NewWorkbook&) = delete;

  lxw_workbook* get() const { return book_; }
  void Close() { Check(workbook_close(std::exchange(book_, nullptr))); }

 private:
  lxw_workbook* book_;
};

}  // namespace zavhost
