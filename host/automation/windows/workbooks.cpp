// Workbooks.
#include <filesystem>

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
       const BookPtr book = self.excel().Open(std::filesystem::path(given.Text(0)));
       book->is_read_only = given.Boolean(2);
       return MakeWorkbook(self.shared_excel(), book);
     }},
};

std::span<const Member<Workbooks>> Workbooks::Members() { return kWorkbooksMembers; }

}  // namespace

ObjectPtr MakeWorkbooks(const ExcelPtr& excel) { return Make<Workbooks>(excel); }

}  // namespace zavhost
