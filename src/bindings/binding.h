#pragma once
// Binds the functions of companions by name, once in a process.

#include <string>
#include <string_view>
#include <vector>

#include "bindings/companion_library.h"

namespace zavrel {

/// Where missing libraries and functions are reported: always in the log, or in a message box to
/// the user as well.
enum class Told { kLogAlone, kUserToo };

/// Titles of the reports that a library cannot be loaded or lacks a function.
struct BindingTitles {
  std::u16string_view not_loaded;
  std::u16string_view no_function;
};

/// One attempt to bind the functions of one or more libraries.
class Binding {
 public:
  /// The functions bound next come from this library.
  Binding& From(CompanionLibrary& library, const BindingTitles& titles = {});
  /// If a function is missing, its library is released and nothing more is bound from it.
  template <class Function>
  Binding& Bind(const char* name, Function*& function) {
    function = AsFunction<Function>(Find(name));
    return *this;
  }
  /// True when nothing has been missing so far.
  bool complete() const { return failures_.empty(); }
  void Report(Told told) const;

 private:
  struct Failure {
    std::u16string_view title;
    std::u16string text;
  };

  ExportAddress Find(const char* name);

  CompanionLibrary* library_ = nullptr;  // null when nothing can be bound
  BindingTitles titles_;
  std::vector<Failure> failures_;
};

/// A table of functions that companions export. Excel's main thread only.
template <class Functions>
class BoundFunctions {
 public:
  constexpr BoundFunctions(Told told, void (*bind)(Binding& binding, Functions& functions))
      : told_(told), bind_(bind) {}

  /// Null when a library or a function is missing. Only the first call tries to bind, and reports.
  /// One that ends in std::bad_alloc does not count.
  const Functions* Get() {
    if (!tried_) {
      Binding binding;  // NOLINT(misc-const-correctness): bind_ changes it
      bind_(binding, functions_);
      // The outcome is set before anything is shown: while a box is open Excel may calculate, and a
      // formula may call this function again.
      bound_ = binding.complete();
      tried_ = true;
      binding.Report(told_);
    }
    return bound_ ? &functions_ : nullptr;
  }

 private:
  Told told_;
  void (*bind_)(Binding& binding, Functions& functions);
  bool tried_ = false;
  bool bound_ = false;
  Functions functions_{};
};

}  // namespace zavrel
