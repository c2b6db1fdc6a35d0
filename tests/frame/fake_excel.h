#pragma once
// A host that only registers: it records what the add-in asks for.

#include <map>
#include <string>
#include <vector>

#include "excel/xloper12.h"
#include "frame/session.h"

namespace zavrel::tests {

struct Registered {
  std::vector<std::u16string> texts;  // one per argument, empty for what is no text
  std::vector<std::uint32_t> types;   // of the arguments
  double macro_type = -1;

  const std::u16string& export_name() const { return texts[1]; }
};

/// In place as the add-in's callback while it lives.
class FakeExcel {
 public:
  FakeExcel();
  ~FakeExcel();
  FakeExcel(const FakeExcel&) = delete;
  FakeExcel& operator=(const FakeExcel&) = delete;

  /// What is registered now, by export name; a second registration of one name is a fault.
  const std::map<std::u16string, Registered>& functions() const { return by_name_; }
  bool Has(const char16_t* export_name) const { return by_name_.count(export_name) == 1; }

  std::u16string refused_export;    // xlfRegister of this one fails
  std::vector<std::string> faults;  // what a host would not forgive
  int registrations = 0;            // ever

 private:
  static int Callback(int function, int count, XLOPER12** arguments, XLOPER12* result);
  int Register(int count, XLOPER12** arguments, XLOPER12* result);
  int Unregister(double id, XLOPER12* result);

  std::map<std::u16string, Registered> by_name_;
  std::map<double, std::u16string> names_;
  double next_id_ = -3;  // ids may be negative, and zero
};

/// Surroundings of a session that reach nothing outside the test: an empty registry, little memory
/// in use, and texts like "9:1114" for English (9) and German (7).
SessionServices QuietServices();

}  // namespace zavrel::tests
