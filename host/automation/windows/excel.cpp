#include "host/automation/windows/excel.h"

#include <algorithm>

#include "host/xlsx/xlsx_file.h"

namespace zavhost {

BookPtr Excel::AddBook() {
  Workbook workbook;
  workbook.sheets.emplace_back(u"Sheet1");
  workbook.file_name = u"Book" + Utf16FromUtf8(std::to_string(++books_made_));
  books.push_back(
      std::make_shared<Book>(std::move(workbook), std::filesystem::path(), options.add_ins));
  return active = books.back();
}

BookPtr Excel::OpenBook(const std::filesystem::path& file) {
  const bool is_csv = EqualIgnoringCase(Utf16FromPath(file.extension()), u".csv");
  Workbook workbook = is_csv ? ReadCsv(file) : ReadXlsx(file);
  workbook.file_name = Utf16FromPath(file.filename());
  books.push_back(std::make_shared<Book>(std::move(workbook), std::filesystem::absolute(file),
                                         options.add_ins));
  return active = books.back();
}

void Excel::CloseBook(Book& book) {
  book.is_closed = true;
  const auto closed = std::find_if(books.begin(), books.end(),
                                   [&](const BookPtr& held) { return held.get() == &book; });
  if (closed == books.end()) return;
  const BookPtr held = *closed;
  books.erase(closed);
  if (active == held) active = books.empty() ? nullptr : books.back();
}

}  // namespace zavhost
