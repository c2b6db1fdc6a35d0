// Workbooks, and Workbook.
#include <filesystem>
#include <functional>

#include "host/automation/password_hash.h"
#include "host/automation/windows/objects.h"

namespace zavhost {
namespace {

class Workbooks final : public ObjectOf<Workbooks> {
 public:
  static constexpr std::u16string_view kName = u"Workbooks";
  static std::span<const Member<Workbooks>> Members();
  using ObjectOf::ObjectOf;

  Variant Item(const Variant& index) const {
    const auto& books = excel().books;
    const auto place = PlaceIn(books, index, [](const BookPtr& book) { return book->name; });
    if (!place) RefuseIndex();
    return MakeWorkbook(shared_excel(), books[*place]);
  }
};

Variant WorkbookItem(Workbooks& self, const Arguments& given) { return self.Item(given[0]); }

constexpr Member<Workbooks> kWorkbooksMembers[] = {
    {u"Count", kProperty, "",
     [](Workbooks& self, const Arguments&) { return Count(self.excel().books.size()); }},
    {u"Item", kProperty, "Index:v", WorkbookItem},
    {u"_Default", kProperty, "Index:v", WorkbookItem},
    {u"Application", kProperty, "",
     [](Workbooks& self, const Arguments&) -> Variant {
       return MakeApplication(self.shared_excel());
     }},
    {u"Add", kMethod, "Template?v",
     [](Workbooks& self, const Arguments&) -> Variant {
       return MakeWorkbook(self.shared_excel(), self.excel().AddBook());
     }},
    {u"Open", kMethod, "Filename:s UpdateLinks?v ReadOnly?b",
     [](Workbooks& self, const Arguments& given) -> Variant {
       const BookPtr book = self.excel().OpenBook(std::filesystem::path(given.Text(0)));
       book->is_read_only = given.Boolean(2);
       return MakeWorkbook(self.shared_excel(), book);
     }},
};

std::span<const Member<Workbooks>> Workbooks::Members() { return kWorkbooksMembers; }

class WorkbookItself final : public BookObject<WorkbookItself> {
 public:
  static constexpr std::u16string_view kName = u"Workbook";
  static std::span<const Member<WorkbookItself>> Members();
  using BookObject::BookObject;
};

std::u16string FullName(const Book& book) {
  return book.file.empty() ? book.name : Utf16FromPath(book.file);
}

Variant Close(WorkbookItself& self, const Arguments&) {
  self.excel().CloseBook(self.book());
  return {};
}

Variant Protect(WorkbookItself& self, const Arguments& given) {
  Book& book = self.book();
  if (!given.Boolean(1, true)) return {};
  if (!book.is_structure_protected) book.structure_password = PasswordHash(given.Text(0));
  book.is_structure_protected = true;
  return {};
}

Variant Unprotect(WorkbookItself& self, const Arguments& given) {
  Book& book = self.book();
  if (book.is_structure_protected && PasswordHash(given.Text(0)) != book.structure_password)
    Refuse(kWrongPassword);
  book.is_structure_protected = false;
  book.structure_password = 0;
  return {};
}

constexpr Member<WorkbookItself> kWorkbookMembers[] = {
    {u"Name", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       return std::u16string_view(self.book().name);
     }},
    {u"FullName", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       return std::u16string_view(FullName(self.book()));
     }},
    {u"Path", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       return std::u16string_view(Utf16FromPath(self.book().file.parent_path()));
     }},
    {u"Saved", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant { return self.book().is_saved; }, 'b',
     [](WorkbookItself& self, const Arguments& given) { self.book().is_saved = given.boolean(); }},
    {u"ReadOnly", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant { return self.book().is_read_only; }},
    {u"ProtectStructure", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       return self.book().is_structure_protected;
     }},
    {u"ProtectWindows", kProperty, "",
     [](WorkbookItself&, const Arguments&) -> Variant { return false; }},
    {u"Application", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       return MakeApplication(self.shared_excel());
     }},
    {u"Parent", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       return MakeApplication(self.shared_excel());
     }},
    {u"Worksheets", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       return MakeWorksheets(self.shared_excel(), self.shared_book());
     }},
    {u"Sheets", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       return MakeWorksheets(self.shared_excel(), self.shared_book());
     }},
    {u"Names", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       return MakeNames(self.shared_excel(), self.shared_book());
     }},
    {u"Windows", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       return MakeWindows(self.shared_excel(), self.shared_book());
     }},
    {u"ActiveSheet", kProperty, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       return MakeWorksheet(self.shared_excel(), self.shared_book(), self.book().active);
     }},
    {u"Activate", kMethod, "",
     [](WorkbookItself& self, const Arguments&) -> Variant {
       self.excel().active = self.shared_book();
       return {};
     }},
    {u"Close", kMethod, "SaveChanges?b Filename?s RouteWorkbook?v", Close},
    {u"Protect", kMethod, "Password?s Structure?b Windows?b", Protect},
    {u"Unprotect", kMethod, "Password?s", Unprotect},
};

std::span<const Member<WorkbookItself>> WorkbookItself::Members() { return kWorkbookMembers; }

}  // namespace

ObjectPtr MakeWorkbooks(const ExcelPtr& excel) { return Make<Workbooks>(excel); }
ObjectPtr MakeWorkbook(const ExcelPtr& excel, const BookPtr& book) {
  return Make<WorkbookItself>(excel, book);
}

}  // namespace zavhost
