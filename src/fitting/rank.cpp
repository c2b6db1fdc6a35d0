#include "fitting/rank.h"

#include <algorithm>

#include "distributions/catalogue.h"
#include "fitting/sample.h"

namespace DistLib {
namespace {

/// Whether the density is a sum so long that its search would take longer than all others.
bool TakesLong(const Description& description) {
  return &description == &kNoncentralF || &description == &kNoncentralBeta;
}

}  // namespace

std::vector<RankedFit> RankFits(std::span<const double> values, const Cancelled& cancelled) {
  const Sample sample(values);
  if (sample.distinct() == 1)
    throw FitError("all values of the sample are " + NumberText(sample.smallest()));
  std::vector<RankedFit> ranked;
  for (const Description* description : Distributions()) {
    if (description->kind == Kind::kDiscrete && !sample.OnlyWhole()) continue;
    ranked.push_back({description, {}, {}});
    if (TakesLong(*description)) {
      ranked.back().why_not = "its fit takes long; ask for it by name";
      continue;
    }
    try {
      ranked.back().fit = FitDistribution(*description, values, {}, cancelled);
    } catch (const FitError& failure) {
      ranked.back().why_not = failure.what();
    }
  }
  std::ranges::stable_sort(ranked, [](const RankedFit& a, const RankedFit& b) {
    if (!a.fit || !b.fit) return a.fit.has_value() && !b.fit;
    return a.fit->aic < b.fit->aic;
  });
  return ranked;
}

}  // namespace DistLib
