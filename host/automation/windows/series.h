#pragma once
// The series of a chart: what their objects share.

#include "host/automation/windows/chart.h"

namespace zavhost {

using SeriesPtr = std::shared_ptr<ChartSeries>;

/// An object of a series.
template <class Self>
class SeriesPart : public ChartPart<Self> {
 public:
  // NOLINTNEXTLINE(bugprone-crtp-constructor-accessibility): it stands between others and a class.
  SeriesPart(ExcelPtr excel, BookPtr book, SheetPtr sheet, std::shared_ptr<Chart> chart,
             SeriesPtr series)
      : ChartPart<Self>(std::move(excel), std::move(book), std::move(sheet), std::move(chart)),
        series_(std::move(series)) {}
  const SeriesPtr& shared_series() const { return series_; }
  ChartSeries& series() const { return *series_; }
  ChartSeries& ChangedSeries() const {
    this->Changed();
    return series();
  }

 protected:
  void CheckAlive() const override {
    ChartPart<Self>::CheckAlive();
    if (series_->is_deleted) throw AutomationError{kObjectGone};
  }

 private:
  SeriesPtr series_;
};

ObjectPtr MakeSeriesFormat(const ExcelPtr& excel, const BookPtr& book, const SheetPtr& sheet,
                           const std::shared_ptr<Chart>& chart, const SeriesPtr& series);

}  // namespace zavhost
