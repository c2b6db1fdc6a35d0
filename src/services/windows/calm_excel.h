#pragma once

#include <optional>

#include "msexcel/windows/application.h"
#include "msexcel/windows/workbook.h"

namespace zavrel::services {

/// Keeps Excel from drawing, asking, calculating and calling macros while a workbook is changed. In
/// the end all of that is as it was, and so are the active sheet and the selected cells.
class CalmExcel {
 public:
  explicit CalmExcel(const MsExcel::Application& application);
  CalmExcel(const CalmExcel&) = delete;
  CalmExcel& operator=(const CalmExcel&) = delete;
  ~CalmExcel();

  /// The sheet that is active in the end, in place of the one that was.
  void LeaveAt(const MsExcel::Worksheet& sheet);

 private:
  void PutBack() const noexcept;

  MsExcel::Application application_;
  bool screen_updating_, events_, alerts_;
  MsExcel::Calculation calculation_;
  std::optional<MsExcel::Worksheet> sheet_;
  std::optional<MsExcel::Range> selection_;
};

}  // namespace zavrel::services
