#include "services/windows/calm_excel.h"

#include "services/windows/try_to.h"

namespace zavrel::services {

CalmExcel::CalmExcel(const MsExcel::Application& application)
    : application_(application),
      screen_updating_(application.ScreenUpdating()),
      events_(application.EnableEvents()),
      alerts_(application.DisplayAlerts()),
      calculation_(application.CalculationMode()),
      sheet_(application.ActiveSheet()),
      selection_(application.SelectedCells()) {
  // A failure from here on is the destructor's, which does not run: these are put back at once.
  try {
    application_.SetScreenUpdating(false);
    application_.SetEnableEvents(false);
    application_.SetDisplayAlerts(false);
    application_.SetCalculationMode(MsExcel::Calculation::kManual);
  } catch (...) {
    PutBack();
    throw;
  }
}

CalmExcel::~CalmExcel() { PutBack(); }

void CalmExcel::LeaveAt(const MsExcel::Worksheet& sheet) {
  sheet_ = sheet;
  selection_.reset();
}

void CalmExcel::PutBack() const noexcept {
  // What cannot be put back is left as it is: the rest still is put back.
  TryTo([&] {
    if (sheet_) sheet_->Activate();
  });
  TryTo([&] {
    if (selection_) selection_->Select();
  });
  TryTo([&] { application_.SetCalculationMode(calculation_); });
  TryTo([&] { application_.SetDisplayAlerts(alerts_); });
  TryTo([&] { application_.SetEnableEvents(events_); });
  TryTo([&] { application_.SetScreenUpdating(screen_updating_); });
}

}  // namespace zavrel::services
