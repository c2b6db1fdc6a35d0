// The memory of the add-ins that ship is exhausted: at once, or after some requests more, for the
// rest of a call or for one request. A function then gives an error or the right value, and the
// next call the right one.
#include <doctest/doctest.h>

#include <filesystem>

#include "failing_memory/library_memory.h"
#include "faults/function_calls.h"
#include "platform/export.h"

extern "C" ZAV_EXPORT int MdCallBack12(int function, int count, XLOPER12** arguments,
                                       XLOPER12* result) {
  return zavrel::ExcelCallback()(function, count, arguments, result);
}

namespace zavrel::tests {
namespace {

using Shortage = LibraryMemory::Shortage;

std::filesystem::path FileOf(const char* file) {
  return std::filesystem::absolute(file).make_preferred();
}

/// An add-in as it ships, open in a host of the tests'; everything is registered.
class OpenLibrary {
 public:
  explicit OpenLibrary(const char* file)
      : owner_(Module::Load(FileOf(file))),
        library_(*LoadedModule::ByName(FileOf(file).u16string())) {
    FillSheet(excel);
    LibraryMemory::Watch(library_);
    REQUIRE(Export<std::int32_t()>("xlAutoOpen")() == 1);
    Export<void(void*, void*, std::uint16_t, const char16_t*, std::int32_t, const char16_t*,
                const char16_t*)>("InitializeXlaInformationW")(nullptr, nullptr, 5, nullptr, 9,
                                                               nullptr, nullptr);
  }
  ~OpenLibrary() { Export<std::int32_t()>("xlAutoClose")(); }
  OpenLibrary(const OpenLibrary&) = delete;
  OpenLibrary& operator=(const OpenLibrary&) = delete;

  std::vector<RegisteredFunction> functions() const { return FunctionsOf(excel, library_); }

  FakeExcel excel;

 private:
  template <class Function>
  Function* Export(const char* name) {
    void* const found = library_.FindExport(name);
    REQUIRE_MESSAGE(found != nullptr, name);
    return AsFunction<Function>(found);
  }

  std::optional<Module> owner_;
  LoadedModule library_;
};

/// A call without memory after `granted` requests; nothing if it makes no more.
std::optional<Outcome> CallWithout(const RegisteredFunction& function, std::size_t shape,
                                   std::int64_t granted, Shortage shortage) {
  bool failed = false;
  Outcome outcome = function.Call(shape, [&](bool begins) {
    if (begins) {
      LibraryMemory::RunOut(granted, shortage);
    } else {
      failed = LibraryMemory::Return();
    }
  });
  return failed ? std::optional(std::move(outcome)) : std::nullopt;
}

/// Calls a function without memory and holds what it gives against what it gives with memory.
class Trial {
 public:
  Trial(const RegisteredFunction& function, std::size_t shape)
      : function_(function), shape_(shape) {}

  /// Memory stays exhausted for the rest of the call, and comes back only when each request was
  /// the first to fail: what the library takes memory for once has none either.
  void WithoutMemory() {
    std::fprintf(stderr, "DBG %s %d\n", function_.name().c_str(), (int)shape_);
    std::vector<Outcome> outcomes;
    while (auto outcome = CallWithout(function_, shape_, Count(outcomes), Shortage::kLasting))
      outcomes.push_back(*std::move(outcome));
    right_ = function_.Call(shape_);
    for (std::size_t k = 0; k < outcomes.size(); ++k) Require(outcomes[k], k);
    failures_ += outcomes.size();
  }

  /// One request after another fails, and each time the next call is right.
  void WithoutOneRequest() {
    right_ = function_.Call(shape_);
    for (std::size_t k = 0;; ++k, ++failures_) {
      const auto outcome =
          CallWithout(function_, shape_, static_cast<std::int64_t>(k), Shortage::kOneRequest);
      if (!outcome) break;
      Require(*outcome, k);
      const Outcome next = function_.Call(shape_);
      if (!IsRight(next)) FAIL_CHECK(function_.name(), ": ", next.shown, " afterwards");
    }
  }

  static std::size_t failures() { return failures_; }

 private:
  static std::int64_t Count(const std::vector<Outcome>& outcomes) {
    return static_cast<std::int64_t>(outcomes.size());
  }
  bool IsRight(const Outcome& outcome) const {
    return function_.is_volatile() || outcome.shown == right_.shown;
  }
  void Require(const Outcome& outcome, std::size_t k) const {
    if (!outcome.is_failure && !IsRight(outcome))
      FAIL_CHECK(function_.name(), ", shape ", shape_, ", request ", k, ": ", outcome.shown);
  }

  inline static std::size_t failures_ = 0;

  const RegisteredFunction& function_;
  std::size_t shape_;
  Outcome right_;
};

}  // namespace

TEST_CASE("whenever memory is exhausted, a function gives an error or the right value") {
  OpenLibrary add_in(ZAVREL_ADD_IN);
  const std::vector<RegisteredFunction> functions = add_in.functions();
  for (std::size_t shape = 0; shape < RegisteredFunction::kShapes; shape += 5) {
    for (const RegisteredFunction& function : functions) Trial(function, shape).WithoutMemory();
    for (const RegisteredFunction& function : functions) Trial(function, shape).WithoutOneRequest();
    CHECK(add_in.excel.unfreed() <= 1);  // the latest result may hold a value of the host's
  }
  MESSAGE(Trial::failures());
}

}  // namespace zavrel::tests
