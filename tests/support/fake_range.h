#pragma once
// A range as a macro passes it.

#include <doctest/doctest.h>

#include "support/fake_object.h"

namespace zavrel::tests {

/// A range object as a macro has one, by row and column from 1.
struct FakeRange {
  FakeRange(long row, long column, long row_count = 1, long column_count = 1) {
    book.texts[L"Name"] = L"Book.xlsx";
    sheet.texts[L"Name"] = L"Data";
    sheet.objects[L"Parent"] = &book;
    areas.numbers[L"Count"] = 1;
    rows.numbers[L"Count"] = row_count;
    columns.numbers[L"Count"] = column_count;
    range.objects = {
        {L"Worksheet", &sheet}, {L"Areas", &areas}, {L"Rows", &rows}, {L"Columns", &columns}};
    range.numbers = {{L"Row", row}, {L"Column", column}};
    variant.vt = VT_DISPATCH;
    variant.pdispVal = &range;
  }
  ~FakeRange() {
    for (const FakeObject* object : {&book, &sheet, &areas, &rows, &columns, &range})
      CHECK(object->references == 1);
  }
  FakeRange(const FakeRange&) = delete;
  FakeRange& operator=(const FakeRange&) = delete;

  FakeObject book, sheet, areas, rows, columns, range;
  VARIANT variant{};
};

}  // namespace zavrel::tests
