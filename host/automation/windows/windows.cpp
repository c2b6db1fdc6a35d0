// Windows, and Window: one for each workbook.
#include "host/automation/windows/range.h"

namespace zavhost {
namespace {

class Window final : public BookObject<Window> {
 public:
  static constexpr std::u16string_view kName = u"Window";
  static std::span<const Member<Window>> Members();
  using BookObject::BookObject;
  /// What the window shows of the active sheet.
  SheetView& view() const { return book().active->view; }
};

/// The windows of the application, or of the workbook if there is one.
class Windows final : public ObjectOf<Windows> {
 public:
  static constexpr std::u16string_view kName = u"Windows";
  static std::span<const Member<Windows>> Members();
  Windows(ExcelPtr excel, BookPtr book) : ObjectOf(std::move(excel)), book_(std::move(book)) {}
  std::vector<BookPtr> Books() const { return book_ ? std::vector<BookPtr>{book_} : excel().books; }

 private:
  BookPtr book_;
};

Variant Item(Windows& self, const Arguments& given) {
  const std::vector<BookPtr> books = self.Books();
  const auto place = PlaceIn(books, given[0], [](const BookPtr& book) { return book->caption; });
  if (!place) RefuseIndex();
  return Make<Window>(self.shared_excel(), books[*place]);
}

constexpr Member<Windows> kWindowsMembers[] = {
    {u"Count", kProperty, "",
     [](Windows& self, const Arguments&) { return Count(self.Books().size()); }},
    {u"Item", kProperty, "Index:v", Item},
    {u"_Default", kProperty, "Index:v", Item},
};

std::span<const Member<Windows>> Windows::Members() { return kWindowsMembers; }

/// A number of the view between two limits.
template <std::int32_t SheetView::*kNumber, std::int32_t kLeast, std::int32_t kMost>
constexpr Member<Window> ViewNumber(std::u16string_view name) {
  return {name,
          kProperty,
          "",
          [](Window& self, const Arguments&) -> Variant { return self.view().*kNumber; },
          'i',
          [](Window& self, const Arguments& given) {
            if (given.integer() < kLeast || given.integer() > kMost) Refuse();
            self.view().*kNumber = given.integer();
          }};
}

/// Without a split, the panes freeze at the selected cell.
void PutFreezePanes(Window& self, const Arguments& given) {
  SheetView& view = self.view();
  view.is_frozen = given.boolean();
  if (!view.is_frozen) {
    view.split_row = view.split_column = 0;
  } else if (view.split_row == 0 && view.split_column == 0) {
    view.split_row = view.selection.front().first_row;
    view.split_column = view.selection.front().first_column;
  }
}

constexpr Member<Window> kWindowMembers[] = {
    {u"Caption", kProperty, "",
     [](Window& self, const Arguments&) -> Variant {
       return std::u16string_view(self.book().caption);
     },
     's', [](Window& self, const Arguments& given) { self.book().caption = given.text(); }},
    {u"Visible", kProperty, "",
     [](Window& self, const Arguments&) -> Variant { return self.book().is_window_visible; }, 'b',
     [](Window& self, const Arguments& given) { self.book().is_window_visible = given.boolean(); }},
    {u"DisplayGridlines", kProperty, "",
     [](Window& self, const Arguments&) -> Variant { return self.view().has_gridlines; }, 'b',
     [](Window& self, const Arguments& given) { self.view().has_gridlines = given.boolean(); }},
    {u"FreezePanes", kProperty, "",
     [](Window& self, const Arguments&) -> Variant { return self.view().is_frozen; }, 'b',
     PutFreezePanes},
    ViewNumber<&SheetView::zoom, 10, 400>(u"Zoom"),
    ViewNumber<&SheetView::split_row, 0, kSheetRows - 1>(u"SplitRow"),
    ViewNumber<&SheetView::split_column, 0, kSheetColumns - 1>(u"SplitColumn"),
    ViewNumber<&SheetView::scroll_row, 1, kSheetRows>(u"ScrollRow"),
    ViewNumber<&SheetView::scroll_column, 1, kSheetColumns>(u"ScrollColumn"),
    {u"RangeSelection", kProperty, "",
     [](Window& self, const Arguments&) -> Variant {
       return Make<RangeObject>(self.shared_excel(), self.shared_book(), self.book().active,
                                self.view().selection);
     }},
    {u"Activate", kMethod, "",
     [](Window& self, const Arguments&) -> Variant {
       self.excel().active = self.shared_book();
       return true;
     }},
};

std::span<const Member<Window>> Window::Members() { return kWindowMembers; }

}  // namespace

ObjectPtr MakeWindows(const ExcelPtr& excel, const BookPtr& book) {
  return Make<Windows>(excel, book);
}

ObjectPtr MakeActiveWindow(const ExcelPtr& excel) {
  const BookPtr& book = excel->active;
  return book && book->is_window_visible ? Make<Window>(excel, book) : nullptr;
}

}  // namespace zavhost
