#pragma once
// What an .xlsx file says of a workbook beside its cells: which sheets and names are hidden, and
// what is protected by which password. libxlsxwriter does not write all of it, and the reader of
// workbooks does not need it.

#include <string>

#include "host/automation/book.h"

namespace zavhost {

/// The bytes of a file with the state of the book, whose sheets it has in the same order. Throws
/// WorkbookError.
std::string WithState(const std::string& bytes, const Book& book);

/// Sets the state of the book to that of its file. Throws WorkbookError.
void ReadState(const std::string& bytes, Book& book);

}  // namespace zavhost
