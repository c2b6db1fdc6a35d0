// Workbook.
#include <filesystem>

#include "host/automation/password_hash.h"
#include "host/automation/saved_book.h"
#include "host/automation/windows/objects.h"

namespace zavhost {
namespace {

class WorkbookItself final : public BookObject<WorkbookItself> {
 public:
  static constexpr std::u16string_view kName = u"Workbook";
  static std::span<const Member<WorkbookItself>> Members();
  using BookObject::BookObject;
};

std::u16string FullName(const Book& book) {
  return book.file.empty() ? book.name : Utf16FromPath(book.file);
}

void SaveTo(Book& book, const std::filesystem::path& file) {
  book.CalculateIfDirty();
  SaveBook(book, file);
}

Variant Save(WorkbookItself& self, const Arguments&) {
  Book& book = self.book();
  if (book.file.empty() || book.is_read_only) Refuse();
  SaveTo(book, book.file);
  book.is_saved = true;
  return {};
}

/// Nobody answers the question whether a file may be replaced: it is refused.
Variant SaveAs(WorkbookItself& self, const Arguments& given) {
  constexpr std::int32_t kWorkbook = 51;
  if (given.Integer(1, kWorkbook) != kWorkbook) Refuse();
  Book& book = self.book();
  const std::filesystem::path file = std::filesystem::absolute(given.Text(0));
  std::error_code ignored;
  if (self.excel().display_alerts && std::filesystem::exists(file, ignored)) Refuse();
  SaveTo(book, file);
  book.file = file;
  book.name = book.caption = Utf16FromPath(file.filename());
  book.is_saved = true;
  book.is_read_only = false;
  return {};
}

Variant SaveCopyAs(WorkbookItself& self, const Arguments& given) {
  SaveTo(self.book(), std::filesystem::absolute(given.Text(0)));
  return {};
}

/// Nobody answers the question whether changes are to be saved: they are lost.
Variant Close(WorkbookItself& self, const Arguments& given) {
  if (given.Boolean(0)) Save(self, given);
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
    {u"Save", kMethod, "", Save},
    {u"SaveAs", kMethod, "Filename:s FileFormat?i", SaveAs},
    {u"SaveCopyAs", kMethod, "Filename:s", SaveCopyAs},
    {u"Close", kMethod, "SaveChanges?b Filename?s RouteWorkbook?v", Close},
    {u"Protect", kMethod, "Password?s Structure?b Windows?b", Protect},
    {u"Unprotect", kMethod, "Password?s", Unprotect},
};

std::span<const Member<WorkbookItself>> WorkbookItself::Members() { return kWorkbookMembers; }

}  // namespace

ObjectPtr MakeWorkbook(const ExcelPtr& excel, const BookPtr& book) {
  return Make<WorkbookItself>(excel, book);
}

}  // namespace zavhost
