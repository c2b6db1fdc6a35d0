// Reads an argument list made of arbitrary bytes, before a host that answers from them too. Nothing
// may crash, leak or touch what was not given, and what the caches remember must never show.
#include <bit>
#include <cstring>
#include <memory>
#include <vector>

#include "data/get_parameters.h"
#include "fuzz/hostile_answers.h"
#include "fuzz/target.h"

namespace zavrel::tests {

namespace {

// Of long data sets this many cells are looked at from each end.
constexpr std::size_t kLookedAt = 1000;

bool IsLookedAt(std::size_t index, std::size_t size) {
  return index < kLookedAt || index + kLookedAt >= size;
}

void Add(std::vector<std::uint64_t>& seen, std::span<const double> numbers) {
  seen.push_back(numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (IsLookedAt(i, numbers.size())) seen.push_back(std::bit_cast<std::uint64_t>(numbers[i]));
  }
}

void Add(std::vector<std::uint64_t>& seen, ExcelData& data) {
  for (int code = 0; code < kCellClasses; ++code)
    seen.push_back(data.CountOfClass(static_cast<CellClass>(code)));
  for (std::size_t i = 0; i < data.size(); ++i) {
    if (!IsLookedAt(i, data.size())) continue;
    const SingleValue value = data[i];
    seen.insert(seen.end(), {value.type(), std::bit_cast<std::uint64_t>(value.number),
                             static_cast<std::uint32_t>(value.code)});
    for (const char16_t unit : value.text) seen.push_back(unit);
  }
  for (int code = 0; code < static_cast<int>(kMissingDataPolicies); ++code) {
    const auto policy = static_cast<MissingDataPolicy>(code);
    for (const bool propagate : {false, true})
      seen.push_back(data.Acceptance(policy, propagate).type());
    Add(seen, data.Numbers(policy));
  }
  const std::span<const double> sorted = data.SortedNumbers();
  if (sorted.size() != data.Numbers(MissingDataPolicy::kNumbersOnly).size())
    ReportFault("the sorted numbers are not the numbers");
  Add(seen, sorted);
}

/// Everything that a function could see of its parameters.
std::vector<std::uint64_t> Read(std::string_view kinds, MissingDataPolicy policy,
                                std::span<const XLOPER12* const> arguments,
                                ParameterOptions options) {
  const OrFailure<Parameters> read = GetParameters(kinds, policy, arguments, options);
  if (!read.ok())
    return {1, read.failure().uncalculated(),
            static_cast<std::uint32_t>(read.failure().value().record().val.err)};
  const Parameters& parameters = *read;
  std::vector<std::uint64_t> seen{0};
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    seen.push_back(parameters.given(i));
    if (!parameters.given(i)) continue;
    if (std::strchr("RrV", kinds[i]) != nullptr) {
      Add(seen, parameters.data(i));
      Add(seen, parameters.numbers(i));
    } else if (std::strchr("Ss", kinds[i]) != nullptr) {
      for (const char16_t unit : parameters.text(i)) seen.push_back(unit);
    }
  }
  return seen;
}

void ReadHostileArguments(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  const auto policy = static_cast<MissingDataPolicy>(bytes.Below(kMissingDataPolicies));
  const auto flags = bytes.Take<std::uint8_t>();
  const ParameterOptions options{static_cast<Lengths>((flags >> 4) % 3), (flags & 1) != 0};
  static constexpr std::string_view kLetters = "RRRrVVDdLlSsBbx";
  std::string kinds(1 + bytes.Below(5), 'R');
  for (char& kind : kinds) kind = kLetters[bytes.Below(kLetters.size())];
  std::vector<std::uint8_t> answers(HostileAnswers::kAnswers * HostileAnswers::kAnswerBytes);
  const std::size_t answered = bytes.Below(HostileAnswers::kAnswers);
  for (std::size_t i = 0; i < answers.size(); ++i)
    answers[i] = i < answered * HostileAnswers::kAnswerBytes ? bytes.Take<std::uint8_t>()
                                                             : static_cast<std::uint8_t>(i * 37);

  ValueMemory memory;
  HostileValues values(bytes, memory);
  std::vector<std::unique_ptr<const XLOPER12>> records;
  const std::size_t count = bytes.Below(8);
  records.reserve(count);
  for (std::size_t i = 0; i < count; ++i)
    records.push_back(std::make_unique<const XLOPER12>(values.Any()));
  std::vector<const XLOPER12*> arguments;
  arguments.reserve(records.size());
  for (const auto& record : records) arguments.push_back(record.get());
  if ((flags & 4) != 0) arguments.insert(arguments.begin(), nullptr);
  if ((flags & 8) != 0 && !arguments.empty()) arguments.resize(300, arguments.front());

  FakeExcel excel;
  HostileAnswers host(excel, std::move(answers));
  const auto read = [&] { return Read(kinds, policy, arguments, options); };
  const auto first = read();
  if (read() != first) ReportFault("the same cells gave another result");
  host.ChangeCells();
  const auto cached = read();
  const WithoutCaches without;
  if (read() != cached) ReportFault("cells that changed gave a stale result");
}

const FuzzTarget target("argument_reading", ReadHostileArguments);

}  // namespace
}  // namespace zavrel::tests
