#include "support/fake_excel.h"

#include <algorithm>
#include <charconv>

#include "platform/utf.h"

namespace zavrel::tests {
namespace {

constexpr std::int64_t kMostCells = 20'000'000;  // that a look-up gives

const void* MemoryOf(const XLOPER12& value) {
  switch (TypeOf(value)) {
    case xltypeStr:
      return value.val.str;
    case xltypeMulti:
      return value.val.array.lparray;
    case xltypeRef:
      return value.val.mref.lpmref;
    default:
      return nullptr;
  }
}

}  // namespace

FakeExcel::FakeExcel() {
  current = this;
  SetExcelCallback(&Callback);
  OpenCaches();
}

FakeExcel::~FakeExcel() {
  SetSessionCaches(nullptr, nullptr);
  SetExcelCallback(nullptr);
  current = nullptr;
  Require(given_.empty(), "a value was not freed");
}

void FakeExcel::Set(std::int32_t row, std::int32_t column, Cell cell, std::uint64_t sheet) {
  if (std::holds_alternative<std::monostate>(cell)) {
    sheets_[sheet].erase({row, column});
  } else {
    sheets_[sheet][{row, column}] = std::move(cell);
  }
}

void FakeExcel::SetColumn(std::int32_t row, std::int32_t column, const std::vector<Cell>& cells,
                          std::uint64_t sheet) {
  for (const Cell& cell : cells) Set(row++, column, cell, sheet);
}

std::ptrdiff_t FakeExcel::CountOf(int function) const {
  return std::count(calls.begin(), calls.end(), function);
}

void FakeExcel::Require(bool holds, const std::string& otherwise) {
  if (holds) return;
  faults.push_back(otherwise);
  ReportFault(otherwise);
}

int FakeExcel::Callback(int function, int count, XLOPER12** arguments, XLOPER12* result) {
  ++inside;
  const int code = current->Call(function, {arguments, static_cast<std::size_t>(count)}, result);
  --inside;
  return code;
}

int FakeExcel::Call(int function, Arguments arguments, XLOPER12* result) {
  calls.push_back(function);
  if (function == xlEnableXLMsgs || function == xlDisableXLMsgs) {
    Bracket(function == xlEnableXLMsgs);
    return xlretSuccess;
  }
  Require(messages_enabled_, "a call without a bracket");
  ++calls_in_bracket_;
  if (function == xlFree) {
    for (XLOPER12* record : arguments) Free(*record);
    return free_code;
  }
  if (fault) {
    if (const std::optional<int> code = fault(function, arguments, *result)) return *code;
  }
  if (const auto scripted = answers_.find(function); scripted != answers_.end())
    return scripted->second(arguments, *result);
  switch (function) {
    case xlCoerce:
      return arguments.size() == 2
                 ? Convert(*arguments[0], static_cast<std::uint32_t>(arguments[1]->val.w), *result)
                 : LookUp(*arguments[0], *result);
    case xlfCounta:
      return CountUsed(*arguments[0], *result);
    case xlfCaller:
      return TellCaller(*result);
    case xlfRegister:
      return Register(arguments, *result);
    case xlfUnregister:
      return Unregister(arguments[0]->val.num, *result);
    case xlfSetName:
      return arguments.size() == 1 ? DeleteName(*arguments[0], *result) : xlretInvCount;
    default:
      return xlretInvXlfn;
  }
}

void FakeExcel::Bracket(bool enable) {
  Require(messages_enabled_ != enable, "an unbalanced bracket");
  Require(enable || calls_in_bracket_ == 1, "a bracket that is not around one call");
  messages_enabled_ = enable;
  calls_in_bracket_ = 0;
}

void FakeExcel::Free(XLOPER12& record) {
  const void* memory = MemoryOf(record);
  if (memory == nullptr) return;
  Require(given_.erase(memory) == 1, "freed twice, or what the host did not give");
  record.val.str = nullptr;
}

void FakeExcel::Give(XLOPER12& result, std::shared_ptr<const void> owner) {
  if (const void* memory = MemoryOf(result)) given_[memory] = std::move(owner);
}

void FakeExcel::Give(std::shared_ptr<const Argument> value, XLOPER12& result) {
  result = **value;
  Give(result, std::move(value));
}

void FakeExcel::GiveText(std::u16string_view text, XLOPER12& result) {
  Give(std::make_shared<Argument>(Cell(std::u16string(text))), result);
}

void FakeExcel::GiveArray(std::int32_t rows, std::int32_t columns, XLOPER12& result) {
  Give(std::make_shared<Argument>(rows, columns), result);
}

void FakeExcel::AnswerCoercions(const XXloper& cell) {
  texts_of_numbers = {{2.5, u"2,5"}};
  On(xlCoerce, [this, cell](Arguments arguments, XLOPER12& result) {
    if (arguments.size() == 2)
      return Convert(*arguments[0], static_cast<std::uint32_t>(arguments[1]->val.w), result);
    result = cell.record();
    return xlretSuccess;
  });
}

int FakeExcel::Convert(const XLOPER12& value, std::uint32_t type, XLOPER12& result) {
  if (type == xltypeStr) return ConvertToText(value, result);
  const std::string text = Utf8FromUtf16(TextIn(value));
  if (type == xltypeNum) {
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), result.val.num);
    result.xltype = xltypeNum;
    return !text.empty() && parsed.ptr == text.data() + text.size() ? xlretSuccess : xlretFailed;
  }
  if (type == xltypeBool) {
    result = XXloper::Boolean(text == "WAHR").record();
    return text == "WAHR" || text == "FALSCH" ? xlretSuccess : xlretFailed;
  }
  if (conversion_code != xlretSuccess) return conversion_code;
  if (type != xltypeRef || value.xltype != xltypeSRef) return xlretFailed;
  auto areas = std::make_shared<XLMREF12>(XLMREF12{1, {value.val.sref.ref}});
  result.xltype = xltypeRef;
  result.val.mref = {areas.get(), calling_sheet};
  Give(result, areas);
  return xlretSuccess;
}

int FakeExcel::ConvertToText(const XLOPER12& value, XLOPER12& result) {
  ++conversions;
  if (text_code != xlretSuccess) return text_code;
  if (value.xltype == xltypeBool) {
    GiveText(value.val.xbool != 0 ? u"WAHR" : u"FALSCH", result);
    return xlretSuccess;
  }
  const auto text = texts_of_numbers.find(value.xltype == xltypeInt ? value.val.w : value.val.num);
  if (text == texts_of_numbers.end()) return xlretFailed;
  GiveText(text->second, result);
  return xlretSuccess;
}

std::pair<const FakeExcel::Sheet&, XLREF12> FakeExcel::CellsOf(const XLOPER12& reference) {
  if (reference.xltype == xltypeSRef) return {sheets_[calling_sheet], reference.val.sref.ref};
  return {sheets_[reference.val.mref.idSheet], reference.val.mref.lpmref->reftbl[0]};
}

int FakeExcel::CountUsed(const XLOPER12& reference, XLOPER12& result) {
  const auto [sheet, area] = CellsOf(reference);
  result.xltype = xltypeNum;
  result.val.num = 0;
  for (const auto& [place, cell] : sheet) {
    const auto [row, column] = place;
    if (row >= area.rwFirst && row <= area.rwLast && column >= area.colFirst &&
        column <= area.colLast)
      ++result.val.num;
  }
  return xlretSuccess;
}

int FakeExcel::LookUp(const XLOPER12& reference, XLOPER12& result) {
  const auto [sheet, area] = CellsOf(reference);
  ++lookups;
  if (const int code = answer ? answer(area) : 0; code != xlretSuccess) return code;
  const bool one_cell = area.rwFirst == area.rwLast && area.colFirst == area.colLast;
  if (!one_cell) return GiveCells(sheet, area, result);
  const auto cell = sheet.find({area.rwFirst, area.colFirst});
  Give(std::make_shared<Argument>(cell != sheet.end() ? cell->second : Cell()), result);
  return xlretSuccess;
}

int FakeExcel::GiveCells(const Sheet& sheet, const XLREF12& area, XLOPER12& result) {
  const std::int64_t rows = std::int64_t{area.rwLast} - area.rwFirst + 1;
  const std::int64_t columns = std::int64_t{area.colLast} - area.colFirst + 1;
  if (rows * columns > kMostCells) return xlretFailed;
  auto cells = std::make_shared<Argument>(static_cast<std::int32_t>(rows),
                                          static_cast<std::int32_t>(columns));
  for (auto place = sheet.lower_bound({area.rwFirst, 0});
       place != sheet.end() && place->first.first <= area.rwLast; ++place) {
    const auto [row, column] = place->first;
    if (column >= area.colFirst && column <= area.colLast)
      cells->SetElement(
          static_cast<std::size_t>((row - area.rwFirst) * columns + column - area.colFirst),
          place->second);
  }
  Give(std::move(cells), result);
  return xlretSuccess;
}

int FakeExcel::TellCaller(XLOPER12& result) const {
  if (caller_code != xlretSuccess) return caller_code;
  result = XXloper::Error(ExcelError::kRef).record();
  if (caller) result = *static_cast<const XLOPER12*>(Reference(*caller));
  return xlretSuccess;
}

int FakeExcel::Register(Arguments arguments, XLOPER12& result) {
  if (arguments.size() < 6) return xlretInvCount;
  Registered made;
  for (const XLOPER12* argument : arguments) {
    made.texts.emplace_back(TextIn(*argument));
    made.types.push_back(TypeOf(*argument));
    Require(made.texts.back().size() <= 255, "a text over 255 characters");
  }
  made.macro_type = arguments[5]->val.num;
  const std::u16string name = made.export_name();
  if (name == refused_export) return xlretFailed;
  ++registrations;
  Require(registers_twice || !Has(name.c_str()), "registered twice: " + Utf8FromUtf16(name));
  names_[next_id_] = name;
  known_.insert(made.texts[3]);
  if (made.macro_type == 0) {
    hidden_.insert(made.texts[3]);
  } else {
    hidden_.erase(made.texts[3]);
  }
  by_name_[name] = std::move(made);
  result.xltype = xltypeNum;
  result.val.num = next_id_;
  next_id_ += 1.5;
  return xlretSuccess;
}

int FakeExcel::Unregister(double id, XLOPER12& result) {
  const auto found = names_.find(id);
  Require(found != names_.end(), "unregistered without a registration");
  result = XXloper::Boolean(found != names_.end()).record();
  if (found == names_.end()) return xlretSuccess;
  by_name_.erase(found->second);
  names_.erase(found);
  return xlretSuccess;
}

/// As Excel is known to do it: without a word the name of a function that is not hidden stays.
int FakeExcel::DeleteName(const XLOPER12& name, XLOPER12& result) {
  if (hidden_.erase(std::u16string(TextIn(name))) == 1) known_.erase(std::u16string(TextIn(name)));
  result = XXloper::Boolean(true).record();
  return xlretSuccess;
}

}  // namespace zavrel::tests
