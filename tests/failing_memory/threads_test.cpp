// Matrices that are large enough for other threads, while these have no memory, or the thread that
// calls them, or none of all: a function gives an error or the right matrix, and the next call the
// right one. The threads begin without memory.
#include <doctest/doctest.h>

#include <memory>
#include <string>
#include <vector>

#include "failing_memory/library_memory.h"
#include "failing_memory/shipped_library.h"
#include "host/capi/native_call.h"

namespace zavrel::tests {
namespace {

using Shortage = LibraryMemory::Shortage;

constexpr std::int32_t kRows = 2'000;
constexpr std::int32_t kColumns = 8;
constexpr std::int32_t kFirstColumn = 10;  // beside what is in the sheet

/// Columns that depend on each other a little; some cells are blank.
void FillColumns(FakeExcel& excel, bool with_gaps) {
  std::uint32_t state = 1;
  for (std::int32_t row = 0; row < kRows; ++row) {
    for (std::int32_t column = 0; column < kColumns; ++column) {
      state = state * 1'664'525 + 1'013'904'223;
      const bool is_gap = with_gaps && state % 97 == 0;
      excel.Set(row, kFirstColumn + column, is_gap ? Cell() : Cell(row % 50 + (state >> 24) / 8.0));
    }
  }
}

/// A function of a matrix over these columns.
class MatrixCall {
 public:
  MatrixCall(const OpenLibrary& add_in, const char* function, bool ranks, bool listwise)
      : address_(add_in.library().FindExport(function)),
        ranks_(Cell(ranks ? 1.0 : 0.0)),
        listwise_(Cell(listwise ? 1.0 : 0.0)) {
    REQUIRE_MESSAGE(address_ != nullptr, function);
    arguments_.AddPointer(ranks_);
    arguments_.AddPointer(missing_);
    arguments_.AddPointer(listwise_);
    arguments_.AddPointer(data_);
    for (int rest = 1; rest < 27; ++rest) arguments_.AddPointer(missing_);
  }

  /// With memory, if nothing is said.
  std::string Result(std::int64_t granted = 0, Shortage* shortage = nullptr) {
    if (shortage != nullptr) LibraryMemory::RunOut(granted, *shortage);
    const std::uint64_t result = arguments_.CallForInteger(address_);
    failed_ = LibraryMemory::Return();
    return Shown(*reinterpret_cast<const XLOPER12*>(result));
  }
  /// Whether a request of the latest call has failed.
  bool failed() const { return failed_; }

 private:
  void* address_;
  Argument missing_{xltypeMissing};
  Argument ranks_;
  Argument listwise_;
  Reference data_{Area(0, kRows - 1, kFirstColumn, kFirstColumn + kColumns - 1)};
  zavhost::MachineArguments arguments_;
  bool failed_ = false;
};

/// How often a request has failed.
int Try(MatrixCall& call) {
  int failures = 0;
  std::vector<std::string> given;
  for (Shortage shortage : {Shortage::kOtherThreads, Shortage::kEverywhere, Shortage::kLasting,
                            Shortage::kOneRequest}) {
    for (std::int64_t k = 0;; k += 1 + k / 20) {
      given.push_back(call.Result(k, &shortage));
      if (call.failed()) ++failures;
      if (!call.failed() || shortage == Shortage::kOtherThreads) break;
    }
  }
  const std::string right = call.Result();
  REQUIRE(right.size() > 100);
  for (const std::string& result : given) CHECK((result == right || result.starts_with("#")));
  return failures;
}

}  // namespace

TEST_CASE("a matrix whose threads have no memory is right, or an error") {
  OpenLibrary add_in(ZAVREL_ADD_IN, {});
  int failures = 0;
  for (const bool with_gaps : {false, true}) {
    FillColumns(add_in.excel, with_gaps);
    for (const char* const function : {"ZavrelCorrelationMatrix", "ZavrelCovarianceMatrix"}) {
      for (const bool ranks : {false, true}) {
        for (const bool listwise : {false, true}) {
          INFO(std::string(function), with_gaps, ranks, listwise);
          MatrixCall call(add_in, function, ranks, listwise);
          failures += Try(call);
        }
      }
    }
  }
  MESSAGE(failures, " failures");
  CHECK(failures > 500);
}

}  // namespace zavrel::tests
