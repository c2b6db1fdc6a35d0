#pragma once
// Calls of automation objects by name, as a macro makes them, and what they give as text.

#include <doctest/doctest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "host/automation/windows/excel_session.h"

namespace zavhost::tests {

/// An argument by its name.
struct Named {
  const char16_t* name;
  Variant value;
};

/// What a call gave.
struct Outcome {
  HRESULT status = S_OK;
  SCODE code = 0;    // of the exception
  std::string text;  // its description
  Variant result;
};

/// 2.5, "text", TRUE, null, empty, #2042 (an error value), object, nothing; arrays "1,2;3,4;".
std::string Shown(const Variant& value);

class LateBound {
 public:
  explicit LateBound(ObjectPtr object) : object_(std::move(object)) {}
  explicit LateBound(IDispatch* object) : object_(object) {}

  IDispatch* get() const { return object_.Get(); }
  // NOLINTNEXTLINE(google-explicit-constructor): an object is an argument.
  operator Variant() const { return object_; }

  /// The raw call; `flags` as for Invoke. The last of the arguments is the value of a put.
  Outcome Invoke(const char16_t* name, WORD flags, const std::vector<Variant>& arguments,
                 const std::vector<Named>& named = {}) const;

  /// A member that must succeed.
  Variant Get(const char16_t* name, const std::vector<Variant>& arguments = {}) const;
  LateBound At(const char16_t* name, const std::vector<Variant>& arguments = {}) const;
  void Put(const char16_t* name, const Variant& value) const;
  std::string operator()(const char16_t* name, const std::vector<Variant>& arguments = {}) const {
    return Shown(Get(name, arguments));
  }
  std::string Named(const char16_t* name, const std::vector<tests::Named>& named) const;

  /// How a member fails: "800A03EC text" for an exception, otherwise "80020003"; what it gives if
  /// it does not.
  std::string Fails(const char16_t* name, const std::vector<Variant>& arguments = {}) const;
  std::string PutFails(const char16_t* name, const Variant& value) const;

 private:
  ObjectPtr object_;
};

/// A session with an empty workbook, whose objects must all be gone in the end.
class TestSession {
 public:
  explicit TestSession(ExcelSessionOptions options = {}) : session(std::move(options)) {
    session.AddWorkbook();
  }
  ~TestSession() { CHECK(session.live_objects() == 0); }
  TestSession(const TestSession&) = delete;
  TestSession& operator=(const TestSession&) = delete;

  LateBound application() const { return LateBound(session.application()); }
  LateBound book() const { return application().At(u"ActiveWorkbook"); }
  LateBound sheet() const { return application().At(u"ActiveSheet"); }
  LateBound range(const char16_t* address) const { return sheet().At(u"Range", {address}); }

  ExcelSession session;
};

/// A two-dimensional array based at 0, row by row.
Variant Block(std::initializer_list<std::initializer_list<Variant>> rows);

}  // namespace zavhost::tests
