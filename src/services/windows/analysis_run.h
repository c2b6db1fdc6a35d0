#pragma once

#include <optional>
#include <string_view>

#include "analyses/analysis.h"
#include "msexcel/windows/application.h"
#include "msexcel/windows/workbook.h"
#include "services/progress.h"

namespace zavrel::services {

/// An analysis of cells of an open workbook, whose sheet is added behind theirs.
///
/// All throw VekAnalysisImpossible with a reason for people if the data are not fit for it, and
/// what Excel refuses; the workbook is then as it was.
class AnalysisRun {
 public:
  /// Throws VekParameterError if there is no such analysis, and VekAnalysisImpossible if it is one
  /// of the second add-in and that is not there.
  AnalysisRun(std::string_view analysis, analyses::Language language);

  /// Asks the user for the data, and for the column that divides the rows where there is one.
  /// False if he cancels.
  bool Ask(const MsExcel::Application& application) const;
  /// `by` is the name of the column that divides the rows; empty for none.
  void Run(const MsExcel::Range& data, std::string_view by) const;

 private:
  void RunWith(Progress& progress, const MsExcel::Range& data, std::string_view by) const;
  std::optional<MsExcel::Range> AskFor(const MsExcel::Application& application,
                                       std::string_view prompt, std::u16string_view proposal) const;

  const analyses::Analysis* analysis_;
  analyses::Language language_;
};

/// Runs the latest analysis of the workbook once more, on the same cells. Throws
/// VekAnalysisImpossible if it had none.
void RepeatAnalysis(const MsExcel::Workbook& book, analyses::Language language);

/// The menu of the analyses for Excel's ribbon; without that of the second add-in if it is not
/// there. A chosen item calls ZavrelAnalysisChosen of the macro modules with the analysis as its
/// tag.
std::u16string AnalysesMenu(analyses::Language language);

}  // namespace zavrel::services
