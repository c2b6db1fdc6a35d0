// Application.
#include "host/automation/windows/cell_values.h"
#include "host/automation/windows/range.h"

namespace zavhost {
namespace {

Excel& RequireBook(Excel& excel) {
  if (!excel.active) Refuse();
  return excel;
}

class Application final : public ObjectOf<Application> {
 public:
  static constexpr std::u16string_view kName = u"Application";
  static std::span<const Member<Application>> Members();
  using ObjectOf::ObjectOf;

  ObjectPtr ActiveSheet() const {
    const BookPtr& book = excel().active;
    return book ? MakeWorksheet(shared_excel(), book, book->active) : nullptr;
  }
  ObjectPtr Cells(const SheetPtr& sheet, std::vector<CellRange> areas) const {
    return Make<RangeObject>(shared_excel(), excel().active, sheet, std::move(areas));
  }
};

/// A truth value of the session as a member.
template <bool Excel::*kSwitch>
constexpr Member<Application> Switch(std::u16string_view name) {
  return {name,
          kProperty,
          "",
          [](Application& self, const Arguments&) -> Variant { return self.excel().*kSwitch; },
          'b',
          [](Application& self, const Arguments& given) {
            self.excel().*kSwitch = given.boolean(); }};
}

/// Application.International; the numbers are Excel's XlApplicationInternational.
Variant International(const ExcelSessionOptions& options, std::int32_t index) {
  const auto text = [](char16_t unit) { return Variant(std::u16string_view(&unit, 1)); };
  switch (index) {
    case 1:
      return static_cast<double>(options.country);
    case 2:
      return static_cast<double>(options.country_setting);
    case 3:
      return text(options.decimal_separator);
    case 4:  // thousands
      return text(options.decimal_separator == u',' ? u'.' : u',');
    case 5:
      return text(options.list_separator);
    default:
      Refuse();
  }
}

/// What a user types, as the type of an input box; nothing if the box would ask again.
std::optional<Variant> Answer(Application& self, const std::u16string& typed, std::int32_t type) {
  constexpr std::int32_t kNumber = 1, kText = 2, kBoolean = 4, kReference = 8;
  if ((type & kReference) != 0) {
    const BookPtr& book = self.excel().active;
    const auto cells = book ? CellsNamed(*book, book->active, typed) : std::optional<NamedCells>();
    if (cells) return self.Cells(cells->sheet, cells->areas);
  }
  if ((type & kNumber) != 0) {
    if (const auto number = NumberFromText(typed)) return *number;
  }
  if ((type & kBoolean) != 0) {
    if (EqualIgnoringCase(typed, u"TRUE")) return true;
    if (EqualIgnoringCase(typed, u"FALSE")) return false;
  }
  if ((type & kText) != 0 || type == 0) return std::u16string_view(typed);
  return std::nullopt;
}

Variant InputBox(Application& self, const Arguments& given) {
  constexpr std::size_t kType = 7;
  auto& inputs = self.excel().inputs;
  while (!inputs.empty()) {
    const std::optional<std::u16string> typed = std::move(inputs.front());
    inputs.pop_front();
    if (!typed) return false;
    if (auto answer = Answer(self, *typed, given.Integer(kType, 2))) return std::move(*answer);
  }
  return false;
}

Variant Goto(Application& self, const Arguments& given) {
  RequireBook(self.excel());
  const auto go = [](Book& book, const SheetPtr& sheet, const std::vector<CellRange>& areas) {
    if (sheet->visibility != kSheetVisible) Refuse();
    book.active = sheet;
    sheet->view.selection = areas;
  };
  if (const auto* range = In<RangeObject>(given[0])) {
    self.excel().active = range->shared_book();
    go(range->book(), range->shared_sheet(), range->areas());
    return true;
  }
  Book& book = *self.excel().active;
  const auto cells = CellsNamed(book, book.active, given.Text(0));
  if (!cells) Refuse();
  go(book, cells->sheet, cells->areas);
  return true;
}

Variant CalculateAll(Application& self, const Arguments&) {
  for (const BookPtr& book : self.excel().books) book->Calculate();
  return {};
}

void PutCalculation(Application& self, const Arguments& given) {
  const std::int32_t mode = given.integer();
  if (mode != kCalculateAutomatically && mode != kCalculateManually &&
      mode != kCalculateSemiautomatically)
    Refuse();
  RequireBook(self.excel()).calculation = mode;
}

constexpr Member<Application> kMembers[] = {
    {u"Name", kProperty, "",
     [](Application&, const Arguments&) -> Variant { return u"Microsoft Excel"; }},
    {u"Version", kProperty, "", [](Application&, const Arguments&) -> Variant { return u"16.0"; }},
    {u"Hwnd", kProperty, "", [](Application&, const Arguments&) -> Variant { return 0; }},
    {u"Application", kProperty, "",
     [](Application& self, const Arguments&) -> Variant { return ObjectPtr(&self); }},
    {u"Parent", kProperty, "",
     [](Application& self, const Arguments&) -> Variant { return ObjectPtr(&self); }},
    {u"International", kProperty, "Index:i",
     [](Application& self, const Arguments& given) {
       return International(self.excel().options, given.Integer(0));
     }},
    {u"Ready", kProperty, "", [](Application&, const Arguments&) -> Variant { return true; }},
    Switch<&Excel::screen_updating>(u"ScreenUpdating"),
    Switch<&Excel::enable_events>(u"EnableEvents"),
    Switch<&Excel::display_alerts>(u"DisplayAlerts"),
    Switch<&Excel::interactive>(u"Interactive"),
    {u"Calculation", kProperty, "",
     [](Application& self, const Arguments&) -> Variant {
       return RequireBook(self.excel()).calculation;
     },
     'i', PutCalculation},
    {u"StatusBar", kProperty, "",
     [](Application& self, const Arguments&) { return self.excel().status_bar; }, 'v',
     [](Application& self, const Arguments& given) {
       // FALSE gives the line back to Excel.
       self.excel().status_bar = given.value();
     }},
    {u"ReferenceStyle", kProperty, "",
     [](Application& self, const Arguments&) -> Variant { return self.excel().reference_style; },
     'i',
     [](Application& self, const Arguments& given) {
       if (given.integer() != kA1Style && given.integer() != kR1C1Style) Refuse();
       self.excel().reference_style = given.integer();
     }},
    {u"Workbooks", kProperty, "",
     [](Application& self, const Arguments&) -> Variant {
       return MakeWorkbooks(self.shared_excel());
     }},
    {u"Windows", kProperty, "",
     [](Application& self, const Arguments&) -> Variant {
       return MakeWindows(self.shared_excel());
     }},
    {u"ActiveWindow", kProperty, "",
     [](Application& self, const Arguments&) -> Variant {
       return MakeActiveWindow(self.shared_excel());
     }},
    {u"ActiveWorkbook", kProperty, "",
     [](Application& self, const Arguments&) -> Variant {
       const BookPtr& book = self.excel().active;
       return book ? MakeWorkbook(self.shared_excel(), book) : nullptr;
     }},
    {u"ActiveSheet", kProperty, "",
     [](Application& self, const Arguments&) -> Variant { return self.ActiveSheet(); }},
    {u"Selection", kProperty, "",
     [](Application& self, const Arguments&) -> Variant {
       const BookPtr& book = self.excel().active;
       return book ? self.Cells(book->active, book->active->view.selection) : nullptr;
     }},
    // Only the worksheet functions of macros are called by cells.
    {u"Caller", kProperty, "Index?v",
     [](Application&, const Arguments&) { return VariantOf(ErrorCode::kRef); }},
    {u"Range", kProperty, "Cell1:v Cell2?v",
     [](Application& self, const Arguments& given) -> Variant {
       const BookPtr& book = RequireBook(self.excel()).active;
       return RangeFrom(self.shared_excel(), book, book->active, given);
     }},
    {u"Calculate", kMethod, "", CalculateAll},
    {u"CalculateFull", kMethod, "", CalculateAll},
    {u"InputBox", kMethod,
     "Prompt:s Title?s Default?v Left?n Top?n HelpFile?s HelpContextID?v Type?i", InputBox},
    {u"Goto", kMethod, "Reference:v Scroll?b", Goto},
};

std::span<const Member<Application>> Application::Members() { return kMembers; }

}  // namespace

ObjectPtr MakeApplication(const ExcelPtr& excel) { return Make<Application>(excel); }

}  // namespace zavhost
