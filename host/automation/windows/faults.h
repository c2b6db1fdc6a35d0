#pragma once
// Calls that fail on request, so that a test sees what its code makes of a busy or failing Excel.

#include <windows.h>
// The order matters: the automation types build on the basic ones.
#include <oaidl.h>

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/automation/windows/variant.h"

namespace zavhost {

/// What a call gives instead of its own result. The call itself is not executed.
struct Fault {
  /// E_ACCESSDENIED and so on. kExcelError comes as an exception with the text.
  HRESULT status = E_FAIL;
  /// What the exception says; empty: what Excel says of such a member.
  std::u16string text{};
  /// With S_OK as the status: a value of another type than the caller awaits.
  Variant value{};
};

/// Faults that wait for their calls, and the number of calls so far. A call is one Invoke of any
/// object; its faults come before its arguments are looked at.
class Faults {
 public:
  /// The k-th call from now on fails, from 1.
  void FailCall(std::size_t k, Fault fault);
  /// The next `times` calls of a member fail: "Formula" of any object, or "Range.Formula".
  void FailMember(std::u16string_view member, std::size_t times, Fault fault);

  std::size_t calls() const { return calls_; }
  /// Counts from 0 again, and forgets the faults.
  void Reset() { *this = {}; }

  /// Counts a call; the fault that it has, if any.
  std::optional<Fault> Next(std::u16string_view class_name, std::u16string_view member);

 private:
  struct OfMember {
    std::u16string member;
    std::size_t times;
    Fault fault;
  };

  std::size_t calls_ = 0;
  std::map<std::size_t, Fault> by_call_;
  std::vector<OfMember> by_member_;
};

}  // namespace zavhost
