// The memory of the add-ins that ship is exhausted while they open, are announced and withdrawn,
// tell their names and close. First in the order of files, since it opens them for the first time:
// what they take memory for once has none either.
#include <doctest/doctest.h>

#include <functional>
#include <string>

#include "failing_memory/library_memory.h"
#include "failing_memory/shipped_library.h"
#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

using Shortage = LibraryMemory::Shortage;

constexpr const char* kSteps[] = {"opening",          "announcing", "withdrawing",
                                  "announcing again", "telling",    "closing"};
constexpr std::size_t kClosing = std::size(kSteps) - 1;

/// What was registered when.
struct Life {
  std::int32_t opened = 0;
  std::vector<std::size_t> registered;                          // after each step
  std::map<std::u16string, std::vector<std::u16string>> texts;  // in the end, by export name
  std::string name;
  std::size_t names_left = 0;  // which Excel would go on showing
};

/// Where memory is exhausted, and how.
struct Place {
  std::size_t step;
  std::int64_t granted;
  Shortage shortage;
};

class Trial {
 public:
  explicit Trial(const ShippedLibrary& library) : library_(library) {}

  /// Memory comes back only when each request was the first to fail.
  void ForTheFirstTime() {
    for (std::size_t step = 0; step <= kClosing; ++step) Fail(step, Shortage::kLasting, [] {});
    whole_ = Whole();
    CHECK(whole_.registered[1] > 10);
    CHECK(whole_.registered[3] == whole_.registered[1]);
  }

  /// Each time the next life is whole.
  void Again() {
    for (std::size_t step = 0; step <= kClosing; ++step) {
      for (const Shortage shortage : {Shortage::kOneRequest, Shortage::kLasting})
        Fail(step, shortage, [&] { CheckWhole(Whole()); });
    }
  }

  int failures() const { return failures_; }

 private:
  void Fail(std::size_t step, Shortage shortage, const std::function<void()>& afterwards) {
    for (std::int64_t k = 0;; k += 1 + k / 10, ++failures_) {
      INFO(std::string(kSteps[step]), " after ", k, " requests, ",
           std::string(shortage == Shortage::kLasting ? "all fail" : "one fails"));
      failed_ = false;
      const Life life = Live(Place{step, k, shortage});
      CHECK((life.opened == 0 || life.opened == 1));
      CHECK((step == 0 || life.opened == 1));
      // The call that deletes a name takes memory for its text.
      const bool ends_without = (step == 0 || step == kClosing) && shortage == Shortage::kLasting;
      CHECK((ends_without || life.names_left <= 1));
      afterwards();
      if (!failed_) break;
    }
  }

  void CheckWhole(const Life& life) const {
    CHECK(life.opened == 1);
    CHECK(life.registered == whole_.registered);
    CHECK(life.texts == whole_.texts);
    CHECK(life.name == whole_.name);
    CHECK(life.names_left == 0);
  }

  Life Whole() { return Live(Place{kClosing + 1, 0, Shortage::kLasting}); }

  Life Live(const Place& place) {
    FakeExcel excel;
    excel.registers_twice = true;
    Life life;
    const auto live = [&](std::size_t step, const auto& body) {
      if (step == place.step) LibraryMemory::RunOut(place.granted, place.shortage);
      body();
      if (step == place.step) failed_ = LibraryMemory::Return();
      life.registered.push_back(excel.functions().size());
    };
    live(0, [&] { life.opened = library_.Open(); });
    live(1, [&] { library_.Announce(); });
    live(2, [&] { library_.Withdraw(); });
    live(3, [&] { library_.Announce(); });
    for (const auto& [name, registered] : excel.functions()) life.texts[name] = registered.texts;
    const Argument which(Cell(1.0));
    const XLOPER12* name = nullptr;
    live(4, [&] { name = library_.Tell(which); });
    life.name = Shown(*name);
    live(kClosing, [&] { library_.Close(); });
    life.names_left = excel.names().size();
    CHECK(excel.functions().empty());
    CHECK(excel.unfreed() == 0);
    return life;
  }

  const ShippedLibrary& library_;
  Life whole_;
  bool failed_ = false;
  int failures_ = 0;
};

}  // namespace

TEST_CASE(
    "whenever memory is exhausted while an add-in opens and closes, the next opening is whole") {
  for (const char* const file : {ZAVREL_ADD_IN, ZAVREL_DISTRIBUTIONS_ADD_IN}) {
    const ShippedLibrary library(file, {});
    Trial trial(library);
    trial.ForTheFirstTime();
    trial.Again();
    MESSAGE(trial.failures(), " failures");
    CHECK(trial.failures() > 500);
  }
}

}  // namespace zavrel::tests
