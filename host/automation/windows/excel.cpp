#include "host/automation/windows/excel.h"

#include <algorithm>

#include "host/automation/saved_book.h"

namespace zavhost {

BookPtr Excel::AddBook() {
  Workbook workbook;
  workbook.sheets.emplace_back(u"Sheet1");
  workbook.file_name = u"Book" + Utf16FromUtf8(std::to_string(++books_made_));
  books.push_back(
      std::make_shared<Book>(std::move(workbook), std::filesystem::path(), options.add_ins));
  return active = books.back();
}

BookPtr Excel::Open(const std::filesystem::path& file) {
  books.push_back(OpenBook(file, options.add_ins));
  return active = books.back();
}

void Excel::CloseBook(Book& book) {
  book.is_closed = true;
  const auto closed = std::find_if(books.begin(), books.end(),
                                   [&](const BookPtr& held) { return held.get() == &book; });
  if (closed == books.end()) return;
  const BookPtr held = std::move(*closed);
  books.erase(closed);
  if (active == held) active = books.empty() ? nullptr : books.back();
}

}  // namespace zavhost
