#include "functions/cached_statistic.h"

#include "diagnostics/log.h"
#include "stats/data_set_summary.h"
#include "stats/moment_block.h"
#include "stats/single_statistics.h"

namespace zavrel {
namespace {

void ComputeInto(ExcelData& data, StatisticId id, Form form) {
  StatisticCache& cache = data.statistics();
  const RunningSum* const first_pass = data.cells().running_sum();
  // Most sheets ask for the mean alone. The log shows all moments.
  if (id == StatisticId::kMean && first_pass != nullptr && EnabledLog() == nullptr) {
    if (const auto mean = MeanAlone(*first_pass, data.NumberCount())) {
      for (const Form either : {Form::kPopulation, Form::kSample})
        cache.Set(either, 0, static_cast<std::size_t>(id), *mean);
      return;
    }
  }
  const std::span<const double> numbers = data.Numbers(MissingDataPolicy::kNumbersOnly);
  if (!IsMoment(id)) {
    cache.Set(form, 0, static_cast<std::size_t>(id), SingleStatistic(id, numbers));
    return;
  }
  const MomentBlocks blocks = ComputeBothForms(numbers, first_pass);
  LogComposedLine([&] {
    return SummaryOf(blocks.sample, data.size(), data.cells().count(CellTag::kError)).Text();
  });
  for (std::size_t i = 0; IsMoment(static_cast<StatisticId>(i)); ++i) {
    cache.Set(Form::kPopulation, 0, i, blocks.population[static_cast<StatisticId>(i)]);
    cache.Set(Form::kSample, 0, i, blocks.sample[static_cast<StatisticId>(i)]);
  }
}

}  // namespace

double CachedStatistic(ExcelData& data, StatisticId id, Form form) {
  const StatisticCache& cache = data.statistics();
  const auto index = static_cast<std::size_t>(id);
  if (!cache.Has(form, 0, index)) ComputeInto(data, id, form);
  return cache.Get(form, 0, index);
}

}  // namespace zavrel
