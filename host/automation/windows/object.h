#pragma once
// One dispatcher for all automation objects. A class is a table of members, each with its kind, its
// parameters and what it does:
//
//   {u"Address", kProperty, "RowAbsolute?b ColumnAbsolute?b", [](Range& range, const Arguments&
//    given) -> Variant { ... }},
//
// A parameter is its name, ":" if it must be given or "?" if it may be left out, and the letter of
// what it takes: v anything, i an integer, n a number, b a boolean, s text, o an object.

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/automation/windows/automation_error.h"
#include "host/automation/windows/variant.h"

namespace zavhost {

struct Excel;
using ExcelPtr = std::shared_ptr<Excel>;

enum MemberKind {
  kProperty,
  kMethod,
  kAccessor,  // a method that returns an object, which callers also read as a property
};

/// What of a member the dispatcher needs to know.
struct MemberShape {
  std::u16string_view name;
  MemberKind kind;
  std::string_view parameters;
  char put;  // the letter of what the property takes; 0 if it is read only
};

/// The arguments of a call in the order of the parameters, converted to their types.
class Arguments {
 public:
  explicit Arguments(std::vector<Variant> values) : values_(std::move(values)) {}

  bool Has(std::size_t index) const { return !values_[index].IsMissing(); }
  const Variant& operator[](std::size_t index) const { return values_[index]; }
  std::int32_t Integer(std::size_t index, std::int32_t absent = 0) const {
    return Has(index) ? values_[index].get().lVal : absent;
  }
  double Number(std::size_t index, double absent = 0) const {
    return Has(index) ? values_[index].get().dblVal : absent;
  }
  bool Boolean(std::size_t index, bool absent = false) const {
    return Has(index) ? values_[index].get().boolVal != VARIANT_FALSE : absent;
  }
  std::u16string_view Text(std::size_t index) const { return values_[index].text(); }

  /// What a property is set to; of the type of its letter.
  const Variant& value() const { return values_.back(); }
  std::int32_t integer() const { return value().get().lVal; }
  double number() const { return value().get().dblVal; }
  bool boolean() const { return value().get().boolVal != VARIANT_FALSE; }
  std::u16string text() const { return std::u16string(value().text()); }

 private:
  std::vector<Variant> values_;
};

// The system's interfaces have no virtual destructor.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

class Object : public IDispatch {
 public:
  explicit Object(ExcelPtr excel);
  virtual ~Object();
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* given,
                                   VARIANT* result, EXCEPINFO* exception, UINT* wrong) override;

  Excel& excel() const { return *excel_; }
  const ExcelPtr& shared_excel() const { return excel_; }

 protected:
  virtual std::u16string_view class_name() const = 0;
  virtual std::size_t member_count() const = 0;
  virtual MemberShape shape(std::size_t member) const = 0;
  virtual Variant Get(std::size_t member, const Arguments& given) = 0;
  virtual void Put(std::size_t member, const Arguments& given) = 0;
  /// Throws AutomationError if what the object stands for is gone.
  virtual void CheckAlive() const {}

 private:
  struct Call;
  HRESULT Execute(const Call& call);
  HRESULT InvokeDefault(const Call& call, const MemberShape& member, std::size_t index);
  std::size_t MemberOf(DISPID id) const;

  ExcelPtr excel_;
  ULONG references_ = 0;
};

template <class Self>
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): in the order in which a row is read.
struct Member {
  std::u16string_view name;
  MemberKind kind;
  std::string_view parameters;
  Variant (*get)(Self& self, const Arguments& given);
  char put_type = 0;
  void (*put)(Self& self, const Arguments& given) = nullptr;
};

// NOLINTBEGIN(bugprone-crtp-constructor-accessibility): others stand between this and a class.
/// An object of a class with `static constexpr std::u16string_view kName` and
/// `static std::span<const Member<Self>> Members()`.
template <class Self>
class ObjectOf : public Object {
 public:
  using Object::Object;

 protected:
  std::u16string_view class_name() const override { return Self::kName; }
  std::size_t member_count() const override { return Self::Members().size(); }
  MemberShape shape(std::size_t member) const override {
    const Member<Self>& row = Self::Members()[member];
    return {row.name, row.kind, row.parameters, row.put_type};
  }
  Variant Get(std::size_t member, const Arguments& given) override {
    return Self::Members()[member].get(static_cast<Self&>(*this), given);
  }
  void Put(std::size_t member, const Arguments& given) override {
    Self::Members()[member].put(static_cast<Self&>(*this), given);
  }
};

// NOLINTEND(bugprone-crtp-constructor-accessibility)
#pragma GCC diagnostic pop

template <class Class, class... Parts>
ObjectPtr Make(Parts&&... parts) {
  return ObjectPtr(new Class(std::forward<Parts>(parts)...));
}

/// The tables of members of a class that has several, as one.
template <class Class>
std::vector<Member<Class>> Joined(std::initializer_list<std::span<const Member<Class>>> tables) {
  std::vector<Member<Class>> all;
  for (const auto& table : tables) all.insert(all.end(), table.begin(), table.end());
  return all;
}

/// The object of this session in a VARIANT; null for anything else.
Object* ObjectIn(const VARIANT& variant);
template <class Class>
Class* In(const Variant& variant) {
  return dynamic_cast<Class*>(ObjectIn(variant.get()));
}

}  // namespace zavhost
