// The exported functions of the whole list of distributions.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <limits>
#include <string>
#include <vector>

#include "companions/pdflib/answer.h"
#include "random/mersenne_twister.h"

namespace DistLib {
namespace {

/// The list in the form of the contract.
class DescribedList {
 public:
  /// Null if memory runs out; the next call tries again.
  static const DescribedList* Get() noexcept {
    try {
      static const DescribedList list;
      return &list;
    } catch (...) {
      return nullptr;
    }
  }
  const pdfDescription& operator[](std::size_t place) const { return descriptions_[place]; }

 private:
  DescribedList() {
    for (const Description* description : Distributions()) Add(*description);
  }

  void Add(const Description& description) {
    std::vector<pdfParameter>& parameters = parameters_.emplace_back();
    for (const Parameter& parameter : description.parameters)
      parameters.push_back(Of(parameter, texts_.emplace_back(parameter.domain.Text())));
    std::string& other_names = texts_.emplace_back();
    for (const std::string& name : description.other_names)
      other_names += (other_names.empty() ? "" : ", ") + name;
    descriptions_.push_back({description.name.c_str(), other_names.c_str(), parameters.data(),
                             static_cast<std::int32_t>(parameters.size()),
                             description.kind == Kind::kDiscrete, description.support.c_str(),
                             description.formula.c_str(), description.source.c_str()});
  }

  static pdfParameter Of(const Parameter& parameter, const std::string& domain_text) {
    const Domain& domain = parameter.domain;
    return {parameter.name.c_str(),
            domain_text.c_str(),
            domain.low,
            domain.high,
            domain.with_low,
            domain.with_high,
            domain.whole,
            parameter.by_default.has_value(),
            parameter.by_default.value_or(std::numeric_limits<double>::quiet_NaN())};
  }

  // Their elements do not move.
  std::deque<std::vector<pdfParameter>> parameters_;
  std::deque<std::string> texts_;
  std::vector<pdfDescription> descriptions_;
};

const Description* At(std::int32_t place) {
  const auto list = Distributions();
  return place >= 0 && static_cast<std::size_t>(place) < list.size()
             ? list[static_cast<std::size_t>(place)]
             : nullptr;
}

/// Which distribution is asked for.
struct Asked {
  std::int32_t place;
  const double* parameters;
  std::int32_t parameter_count;
};

/// Throws what MakeDistribution throws.
std::int16_t MakeFor(const Asked& asked, std::unique_ptr<PdfDist>& distribution) {
  const Description* const description = At(asked.place);
  if (description == nullptr) return PDFLIB_NO_SUCH_DISTRIBUTION;
  if (asked.parameter_count < 0) return PDFLIB_WRONG_COUNT;
  if (asked.parameters == nullptr && asked.parameter_count > 0) return PDFLIB_NULL_POINTER;
  distribution = MakeDistribution(
      *description, {asked.parameters, static_cast<std::size_t>(asked.parameter_count)});
  return PDFLIB_OK;
}

/// Calls use(distribution); the code of what is wrong with the question if it cannot.
template <class Use>
std::int16_t With(const Asked& asked, Use use) noexcept {
  return Guarded([&] {
    std::unique_ptr<PdfDist> distribution;
    const std::int16_t code = MakeFor(asked, distribution);
    if (code == PDFLIB_OK) use(*distribution);
    return code;
  });
}

struct Request {
  double (PdfDist::*value)(double) const;
  std::int16_t request;
  bool of_probability;
};

constexpr Request kRequests[] = {
    {&PdfDist::Density, PDFLIB_DENSITY, false},
    {&PdfDist::LogDensity, PDFLIB_LOG_DENSITY, false},
    {&PdfDist::Cumulative, PDFLIB_CUMULATIVE, false},
    {&PdfDist::UpperTail, PDFLIB_UPPER_TAIL, false},
    {&PdfDist::Quantile, PDFLIB_QUANTILE, true},
    {&PdfDist::UpperQuantile, PDFLIB_UPPER_QUANTILE, true},
};

/// Values outside the domain are frequent in arrays, and an exception for each would take longer
/// than a value.
bool InDomain(const PdfDist& distribution, const Request& request, double x) {
  if (request.of_probability) return x >= 0 && x <= 1;
  return std::isfinite(x) && x >= distribution.Lowest() && x <= distribution.Highest();
}

/// Writes the value, a not-a-number if there is none.
template <class Compute>
std::int16_t WriteValue(double& result, Compute compute) noexcept {
  try {
    const double value = compute();
    const bool held = std::isfinite(value);
    result = held ? value : std::numeric_limits<double>::quiet_NaN();
    return held ? PDFLIB_OK : PDFLIB_NO_VALUE;
  } catch (...) {
    result = std::numeric_limits<double>::quiet_NaN();
    return PDFLIB_NO_VALUE;
  }
}

std::int16_t Evaluate(const PdfDist& distribution, const Request& request, double x,
                      double& result) noexcept {
  if (InDomain(distribution, request, x))
    return WriteValue(result, [&] { return (distribution.*request.value)(x); });
  result = std::numeric_limits<double>::quiet_NaN();
  return PDFLIB_OUTSIDE_DOMAIN;
}

}  // namespace
}  // namespace DistLib

using DistLib::PdfDist;

int32_t pdfCount(void) { return static_cast<int32_t>(DistLib::Distributions().size()); }

int32_t pdfFind(const char* name) {
  if (name == nullptr) return -1;
  try {
    const DistLib::Description* const found = DistLib::FindDistribution(name);
    const auto list = DistLib::Distributions();
    const auto place = std::ranges::find(list, found);
    return place == list.end() ? -1 : static_cast<int32_t>(place - list.begin());
  } catch (...) {
    return -1;
  }
}

const pdfDescription* pdfDescribe(int32_t distribution) {
  const DistLib::DescribedList* const list = DistLib::DescribedList::Get();
  if (list == nullptr || DistLib::At(distribution) == nullptr) return nullptr;
  return &(*list)[static_cast<std::size_t>(distribution)];
}

int16_t pdfProblem(int32_t distribution, const double* parameters, int32_t parameter_count,
                   char* text, int32_t room) {
  if (text == nullptr || room < 1) return PDFLIB_NULL_POINTER;
  std::string problem;
  const int16_t code = DistLib::Guarded([&]() -> int16_t {
    try {
      std::unique_ptr<PdfDist> made;
      return DistLib::MakeFor({distribution, parameters, parameter_count}, made);
    } catch (const std::logic_error& wrong) {
      problem = wrong.what();
      return PDFLIB_OK;
    }
  });
  const std::size_t length = std::min(problem.size(), static_cast<std::size_t>(room) - 1);
  std::memcpy(text, problem.data(), length);
  text[length] = 0;
  return code;
}

int16_t pdfEvaluate(int32_t distribution, int16_t request, const double* parameters,
                    int32_t parameter_count, const double* x, double* results, int16_t* status,
                    int64_t count) {
  const auto* const known =
      std::ranges::find(DistLib::kRequests, request, &DistLib::Request::request);
  if (known == std::ranges::end(DistLib::kRequests)) return PDFLIB_UNKNOWN_REQUEST;
  if (count < 0) return PDFLIB_WRONG_COUNT;
  if (count > 0 && (x == nullptr || results == nullptr)) return PDFLIB_NULL_POINTER;
  return DistLib::With({distribution, parameters, parameter_count}, [&](const PdfDist& made) {
    for (int64_t i = 0; i < count; ++i) {
      const int16_t code = DistLib::Evaluate(made, *known, x[i], results[i]);
      if (status != nullptr) status[i] = code;
    }
  });
}

int16_t pdfMoments(int32_t distribution, const double* parameters, int32_t parameter_count,
                   double* results, int16_t* status) {
  if (results == nullptr || status == nullptr) return PDFLIB_NULL_POINTER;
  return DistLib::With({distribution, parameters, parameter_count}, [&](const PdfDist& made) {
    DistLib::WriteMoments(made.Moments(), results, status);
  });
}

int16_t pdfRandom(int32_t distribution, const double* parameters, int32_t parameter_count,
                  uint32_t seed, double* results, int64_t count) {
  if (count < 0) return PDFLIB_WRONG_COUNT;
  if (results == nullptr && count > 0) return PDFLIB_NULL_POINTER;
  return DistLib::With({distribution, parameters, parameter_count}, [&](const PdfDist& made) {
    zavrel::MersenneTwister generator(seed);
    for (int64_t i = 0; i < count; ++i)
      DistLib::WriteValue(results[i], [&] { return made.Random(generator); });
  });
}
