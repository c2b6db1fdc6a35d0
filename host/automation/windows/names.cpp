// Names of a workbook or of a worksheet, and Name.
#include "host/automation/formula_edit.h"
#include "host/automation/windows/cell_values.h"
#include "host/automation/windows/range.h"

namespace zavhost {
namespace {

using NamePtr = std::shared_ptr<NameState>;

/// The names of the workbook, or of the worksheet if there is one.
class Names final : public BookObject<Names> {
 public:
  static constexpr std::u16string_view kName = u"Names";
  static std::span<const Member<Names>> Members();
  Names(ExcelPtr excel, BookPtr book, SheetPtr sheet)
      : BookObject(std::move(excel), std::move(book)), sheet_(std::move(sheet)) {}
  const SheetPtr& shared_sheet() const { return sheet_; }

  std::vector<NamePtr> List() const {
    std::vector<NamePtr> list;
    for (const NamePtr& name : book().names()) {
      if (!sheet_ || name->sheet == sheet_) list.push_back(name);
    }
    return list;
  }

 private:
  SheetPtr sheet_;
};

class Name final : public BookObject<Name> {
 public:
  static constexpr std::u16string_view kName = u"Name";
  static std::span<const Member<Name>> Members();
  Name(ExcelPtr excel, BookPtr book, NamePtr name)
      : BookObject(std::move(excel), std::move(book)), name_(std::move(name)) {}
  NameState& state() const { return *name_; }

 protected:
  void CheckAlive() const override {
    BookObject::CheckAlive();
    if (name_->is_deleted) throw AutomationError{kObjectGone};
  }

 private:
  NamePtr name_;
};

std::u16string FullName(const NameState& name) {
  return name.sheet ? QuotedSheetName(name.sheet->name) + u"!" + name.name : name.name;
}

/// What a name refers to, as a formula without its "=": a range object, a formula as text, or a
/// constant.
std::u16string FormulaOf(const Book& book, const Variant& given) {
  if (const auto* range = In<RangeObject>(given)) return range->FormulaText();
  if (given.type() != VT_BSTR) return GeneralText(ValueIn(given.get()));
  const std::u16string_view text = given.text();
  if (!text.starts_with(u'=')) {
    std::u16string constant = u"\"";
    for (const char16_t unit : text) constant.append(unit == u'"' ? 2 : 1, unit);
    return constant + u"\"";
  }
  CheckFormula(book, text.substr(1));
  return std::u16string(text.substr(1));
}

Variant Item(Names& self, const Arguments& given) {
  const std::vector<NamePtr> list = self.List();
  auto place = PlaceIn(list, given[0], [](const NamePtr& name) { return FullName(*name); });
  if (!place)
    place = PlaceIn(list, given[0], [](const NamePtr& name) { return std::u16string(name->name); });
  if (!place) Refuse();
  return Make<Name>(self.shared_excel(), self.shared_book(), list[*place]);
}

/// A name that exists already gets the new formula. "Sheet1!Name" is that sheet's own.
Variant Add(Names& self, const Arguments& given) {
  Book& book = self.book();
  std::u16string_view text = given.Text(0);
  SheetPtr sheet = self.shared_sheet();
  if (const std::size_t mark = text.rfind(u'!'); mark != std::u16string_view::npos) {
    std::u16string_view prefix = text.substr(0, mark);
    if (prefix.size() > 2 && prefix.front() == u'\'') prefix = prefix.substr(1, prefix.size() - 2);
    sheet = book.FindSheet(prefix);
    text.remove_prefix(mark + 1);
    if (!sheet) Refuse();
  }
  if (!IsDefinedName(text) || !given.Has(1)) Refuse();
  const std::u16string formula = FormulaOf(book, given[1]);
  const NamePtr* known = nullptr;
  for (const NamePtr& name : book.names()) {
    if (name->sheet == sheet && EqualIgnoringCase(name->name, text)) known = &name;
  }
  const NamePtr name = known != nullptr ? *known : std::make_shared<NameState>();
  name->name = text;
  name->text = formula;
  name->sheet = sheet;
  name->is_visible = given.Boolean(2, true);
  if (known == nullptr) book.names().push_back(name);
  book.Touch();
  return Make<Name>(self.shared_excel(), self.shared_book(), name);
}

constexpr Member<Names> kNamesMembers[] = {
    {u"Count", kProperty, "",
     [](Names& self, const Arguments&) { return Count(self.List().size()); }},
    {u"Item", kAccessor, "Index?v IndexLocal?v RefersTo?v", Item},
    {u"_Default", kAccessor, "Index?v IndexLocal?v RefersTo?v", Item},
    {u"Add", kMethod, "Name:s RefersTo?v Visible?b", Add},
};

std::span<const Member<Names>> Names::Members() { return kNamesMembers; }

Variant RefersToRange(Name& self, const Arguments&) {
  Book& book = self.book();
  const SheetPtr& sheet = self.state().sheet ? self.state().sheet : book.active;
  const auto cells = CellsNamed(book, sheet, FullName(self.state()));
  if (!cells) Refuse();
  return Make<RangeObject>(self.shared_excel(), self.shared_book(), cells->sheet, cells->areas);
}

Variant Delete(Name& self, const Arguments&) {
  self.state().is_deleted = true;
  std::erase_if(self.book().names(), [](const NamePtr& name) { return name->is_deleted; });
  self.book().Touch();
  return {};
}

Variant GetRefersTo(Name& self, const Arguments&) {
  return std::u16string_view(u"=" + self.state().text);
}
void PutRefersTo(Name& self, const Arguments& given) {
  self.state().text = FormulaOf(self.book(), given.value());
  self.book().Touch();
}

constexpr Member<Name> kNameMembers[] = {
    {u"Name", kProperty, "",
     [](Name& self, const Arguments&) -> Variant {
       return std::u16string_view(FullName(self.state()));
     }},
    {u"RefersTo", kProperty, "", GetRefersTo, 'v', PutRefersTo},
    {u"RefersToRange", kProperty, "", RefersToRange},
    {u"Visible", kProperty, "",
     [](Name& self, const Arguments&) -> Variant { return self.state().is_visible; }, 'b',
     [](Name& self, const Arguments& given) { self.state().is_visible = given.boolean(); }},
    {u"Delete", kMethod, "", Delete},
};

std::span<const Member<Name>> Name::Members() { return kNameMembers; }

}  // namespace

ObjectPtr MakeNames(const ExcelPtr& excel, const BookPtr& book, const SheetPtr& sheet) {
  return Make<Names>(excel, book, sheet);
}

}  // namespace zavhost
