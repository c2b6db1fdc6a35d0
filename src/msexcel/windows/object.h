#pragma once
// The root of all wrappers: an object of Excel's, called late bound by the names of its members.

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "msexcel/windows/variant.h"

namespace MsExcel {

/// A member of a class of objects, "Range.Formula", and its number. The number is the same for all
/// objects of the class, so it is looked up once. Excel's main thread only.
struct Member {
  std::string_view class_name;
  std::string_view name;
  // The interface that has given the number: an emulation may stand beside Excel.
  const void* asked = nullptr;
  DISPID id = 0;

  std::string Text() const { return std::string(class_name) + "." + std::string(name); }
};

class Answer;

/// A counted reference to an object; may be null. Every call throws VekExcelCallFailed with the
/// member and Excel's own text if Excel refuses, VekExcelUnsupportedMethodCall if the object has no
/// such member, and VekExcelBusy if Excel stays busy for longer than a moment.
class Object {
 public:
  Object() = default;
  /// Adds a reference.
  explicit Object(IDispatch* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  Object(const Object& other) : Object(other.object_) {}
  Object(Object&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Object& operator=(Object other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Object() {
    if (object_ != nullptr) object_->Release();
  }

  explicit operator bool() const { return object_ != nullptr; }
  IDispatch* get() const { return object_; }

 protected:
  /// `flags` as IDispatch::Invoke takes them. Arguments left out at the end need not be given.
  Answer Invoke(Member& member, WORD flags, std::initializer_list<Variant> arguments) const;
  void PutValue(Member& member, const Variant& value) const;

 private:
  IDispatch* object_ = nullptr;
};

/// What a member has answered, read as what is expected. Throws VekExcelCallFailed if it is
/// something else.
class Answer {
 public:
  Answer(Variant value, const Member& member) : value_(std::move(value)), member_(&member) {}

  std::u16string Text() const;
  double Number() const;
  long Integer() const;
  bool Flag() const;
  /// An object; `Class` is the wrapper. A null one is refused.
  template <class Class>
  Class As() const {
    return Class(Object(NeededObject()));
  }
  /// The same, but nothing where Excel gives none.
  template <class Class>
  std::optional<Class> AsOptional() const {
    return HasObject() ? std::optional<Class>(As<Class>()) : std::nullopt;
  }
  bool HasObject() const { return value_.get().vt == VT_DISPATCH && value_.get().pdispVal; }
  /// True if the cells of a range differ in the property.
  bool IsMixed() const { return value_.get().vt == VT_NULL; }
  CellValue Value() const { return ValueIn(value_.get()); }
  Block Values() const;

 private:
  IDispatch* NeededObject() const;
  zavrel::OwnedVariant Changed(VARTYPE type) const;
  [[noreturn]] void Refuse() const;

  Variant value_;
  const Member* member_;
};

/// The name of a member as a template's argument.
template <std::size_t kSize>
struct MemberName {
  // NOLINTNEXTLINE(google-explicit-constructor): written as a plain text.
  consteval MemberName(const char (&name)[kSize]) { std::copy_n(name, kSize, text); }
  char text[kSize];
};

/// The base of a wrapper, which has its name in Excel as `kName`.
template <class Class>
class ObjectOf : public Object {
 public:
  // NOLINTBEGIN(bugprone-crtp-constructor-accessibility): the wrappers inherit them, with their
  // accessibility.
  ObjectOf() = default;
  explicit ObjectOf(Object object) : Object(std::move(object)) {}
  // NOLINTEND(bugprone-crtp-constructor-accessibility)

 protected:
  template <MemberName kMember>
  Answer Get(std::initializer_list<Variant> arguments = {}) const {
    // Both flags, as macros do: of a property with arguments only Excel knows whether it is one.
    return Invoke(MemberOf<kMember>(), DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
  }
  template <MemberName kMember>
  void Put(Variant value) const {
    PutValue(MemberOf<kMember>(), value);
  }
  template <MemberName kMember>
  Answer Call(std::initializer_list<Variant> arguments = {}) const {
    return Invoke(MemberOf<kMember>(), DISPATCH_METHOD, arguments);
  }

 private:
  template <MemberName kMember>
  static Member& MemberOf() {
    static Member member{Class::kName, kMember.text};
    return member;
  }
};

/// A collection, whose items count from 1 and may have names.
template <class Class, class Item>
// NOLINTNEXTLINE(bugprone-crtp-constructor-accessibility): as above
class Collection : public ObjectOf<Class> {
 public:
  using ObjectOf<Class>::ObjectOf;

  long Count() const { return this->template Get<"Count">().Integer(); }
  std::vector<Item> All() const {
    std::vector<Item> items;
    for (long i = 1, count = Count(); i <= count; ++i) items.push_back(At(i));
    return items;
  }
  Item At(long index) const { return this->template Get<"Item">({index}).template As<Item>(); }
  Item Named(std::u16string_view name) const {
    return this->template Get<"Item">({name}).template As<Item>();
  }
};

}  // namespace MsExcel
