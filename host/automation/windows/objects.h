#pragma once
// The classes of automation objects: what each stands for, and how one is made.

#include "host/automation/windows/excel.h"

namespace zavhost {

// NOLINTBEGIN(bugprone-crtp-constructor-accessibility): each stands between others and a class.
/// An object of a workbook.
template <class Self>
class BookObject : public ObjectOf<Self> {
 public:
  BookObject(ExcelPtr excel, BookPtr book)
      : ObjectOf<Self>(std::move(excel)), book_(std::move(book)) {}
  Book& book() const { return *book_; }
  const BookPtr& shared_book() const { return book_; }

 protected:
  void CheckAlive() const override {
    if (book_->is_closed) throw AutomationError{RPC_E_DISCONNECTED};
  }

 private:
  BookPtr book_;
};

/// An object of a worksheet.
template <class Self>
class SheetObject : public BookObject<Self> {
 public:
  SheetObject(ExcelPtr excel, BookPtr book, SheetPtr sheet)
      : BookObject<Self>(std::move(excel), std::move(book)), sheet_(std::move(sheet)) {}
  SheetState& sheet() const { return *sheet_; }
  const SheetPtr& shared_sheet() const { return sheet_; }

 protected:
  void CheckAlive() const override {
    BookObject<Self>::CheckAlive();
    if (sheet_->is_deleted) throw AutomationError{kObjectGone};
  }

 private:
  SheetPtr sheet_;
};

/// An object of a part of a worksheet with `is_deleted`, such as a chart.
template <class Self, class Part>
class PartObject : public SheetObject<Self> {
 public:
  using PartPtr = std::shared_ptr<Part>;
  PartObject(ExcelPtr excel, BookPtr book, SheetPtr sheet, PartPtr part)
      : SheetObject<Self>(std::move(excel), std::move(book), std::move(sheet)),
        part_(std::move(part)) {}
  Part& part() const { return *part_; }
  const PartPtr& shared_part() const { return part_; }

 protected:
  void CheckAlive() const override {
    SheetObject<Self>::CheckAlive();
    if (part_->is_deleted) throw AutomationError{kObjectGone};
  }

 private:
  PartPtr part_;
};

// NOLINTEND(bugprone-crtp-constructor-accessibility)

/// Another object of the same workbook, sheet or part.
template <class Class, class Self>
ObjectPtr MakeBeside(const BookObject<Self>& of) {
  return Make<Class>(of.shared_excel(), of.shared_book());
}
template <class Class, class Self, class... Parts>
ObjectPtr MakeBeside(const SheetObject<Self>& of, Parts&&... parts) {
  return Make<Class>(of.shared_excel(), of.shared_book(), of.shared_sheet(),
                     std::forward<Parts>(parts)...);
}

/// The place in a list that an index names, by number from 1 or by the name that name_of(element)
/// gives; nothing if there is none.
template <class List, class NameOf>
std::optional<std::size_t> PlaceIn(const List& list, const Variant& index, const NameOf& name_of) {
  if (index.type() == VT_BSTR) {
    for (std::size_t i = 0; i < list.size(); ++i) {
      if (EqualIgnoringCase(name_of(list[i]), index.text())) return i;
    }
    return std::nullopt;
  }
  Variant number(index);
  if (FAILED(VariantChangeType(number.address(), number.address(), 0, VT_I4))) RefuseType();
  const LONG place = number.get().lVal;
  if (place < 1 || static_cast<std::size_t>(place) > list.size()) return std::nullopt;
  return static_cast<std::size_t>(place) - 1;
}

inline Variant Count(std::size_t count) { return static_cast<std::int32_t>(count); }

ObjectPtr MakeApplication(const ExcelPtr& excel);
ObjectPtr MakeWorkbooks(const ExcelPtr& excel);
ObjectPtr MakeWorkbook(const ExcelPtr& excel, const BookPtr& book);
ObjectPtr MakeWorksheets(const ExcelPtr& excel, const BookPtr& book);
ObjectPtr MakeWorksheet(const ExcelPtr& excel, const BookPtr& book, const SheetPtr& sheet);
/// The names of a worksheet; of the whole workbook without one.
ObjectPtr MakeNames(const ExcelPtr& excel, const BookPtr& book, const SheetPtr& sheet = nullptr);
/// The windows of a workbook; of the whole application without one.
ObjectPtr MakeWindows(const ExcelPtr& excel, const BookPtr& book = nullptr);
/// The window in front; nothing if there is none.
ObjectPtr MakeActiveWindow(const ExcelPtr& excel);

}  // namespace zavhost
