#include "host/automation/windows/excel_session.h"

#include "host/automation/windows/objects.h"
#include "host/workbook/cell_names.h"

namespace zavhost {

class ExcelSession::State {
 public:
  explicit State(ExcelSessionOptions options)
      : excel(std::make_shared<Excel>(std::move(options))), application(MakeApplication(excel)) {}

  ExcelPtr excel;
  ObjectPtr application;
};

ExcelSession::ExcelSession(ExcelSessionOptions options)
    : state_(std::make_unique<State>(std::move(options))) {}

ExcelSession::~ExcelSession() {
  Excel& excel = *state_->excel;
  excel.is_closed = true;
  while (!excel.books.empty()) excel.CloseBook(*excel.books.back());
}

IDispatch* ExcelSession::application() const { return state_->application.Get(); }
void ExcelSession::AddWorkbook() { state_->excel->AddBook(); }
void ExcelSession::Open(const std::filesystem::path& file) { state_->excel->Open(file); }

Engine& ExcelSession::engine() const {
  Excel& excel = *state_->excel;
  if (!excel.active) throw WorkbookError("there is no workbook");
  excel.Calculated(*excel.active).Renew();
  return excel.active->engine();
}

void ExcelSession::QueueInput(std::u16string_view text) {
  state_->excel->inputs.emplace_back(text);
}
void ExcelSession::QueueCancel() { state_->excel->inputs.emplace_back(); }

void ExcelSession::PlantPivotTable(std::u16string_view sheet, std::u16string_view name,
                                   std::string_view table_range, std::string_view data_range) {
  const BookPtr& book = state_->excel->active;
  const SheetPtr target = book ? book->FindSheet(sheet) : nullptr;
  const auto table = ParseRangeName(table_range), data = ParseRangeName(data_range);
  if (!target || !table || !data) throw WorkbookError("there is no such place for a pivot table");
  target->pivot_tables.push_back(
      std::make_shared<PivotTableState>(PivotTableState{std::u16string(name), *table, *data}));
}

Faults& ExcelSession::faults() const { return state_->excel->faults; }
std::size_t ExcelSession::live_objects() const { return state_->excel->live_objects - 1; }

}  // namespace zavhost
