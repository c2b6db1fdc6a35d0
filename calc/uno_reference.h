#pragma once
// Calls into LibreOffice's own objects.

#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "calc/uno.h"

namespace zavcalc {

/// A call that LibreOffice answered with an exception, or that the object does not offer.
class CallFailure : public std::runtime_error {
 public:
  CallFailure() : std::runtime_error("a call of LibreOffice failed") {}
};

/// Owns one use of an object.
class UnoReference {
 public:
  UnoReference() = default;
  /// Takes over a use that is already counted.
  static UnoReference Owning(uno_Interface* object) { return UnoReference(object); }
  static UnoReference Sharing(uno_Interface* object) {
    if (object != nullptr) object->acquire(object);
    return UnoReference(object);
  }
  UnoReference(UnoReference&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  UnoReference& operator=(UnoReference&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~UnoReference() {
    if (object_ != nullptr) object_->release(object_);
  }

  uno_Interface* get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  /// The same object by another interface; throws CallFailure if it has none such.
  UnoReference As(std::u16string_view interface_name) const;
  /// Calls "INTERFACE::METHOD" of the interface by which this is held. The result goes to the
  /// memory of its type.
  void Call(std::u16string_view member, void* result, std::initializer_list<void*> arguments) const;
  /// The object that the method returns; throws CallFailure if it returns none.
  UnoReference ObjectFrom(std::u16string_view member, std::initializer_list<void*> arguments) const;

 private:
  explicit UnoReference(uno_Interface* object) : object_(object) {}

  uno_Interface* object_ = nullptr;
};

/// A new object of a service; `context` is the office's XComponentContext.
UnoReference NewService(const UnoReference& context, std::u16string_view name);

/// Owns the value that a call gives.
class AnyValue {
 public:
  AnyValue(const UnoReference& object, std::u16string_view member,
           std::initializer_list<void*> arguments) {
    object.Call(member, &any_, arguments);
  }
  AnyValue(const AnyValue&) = delete;
  AnyValue& operator=(const AnyValue&) = delete;
  ~AnyValue() { uno_any_destruct(&any_, nullptr); }

  const uno_Any& get() const { return any_; }
  UnoReference Object() const;

 private:
  uno_Any any_;
};

/// Owns a sequence that a call has constructed.
class SequenceValue {
 public:
  explicit SequenceValue(std::u16string_view type) : type_(SequenceType(type)) {}
  SequenceValue(const SequenceValue&) = delete;
  SequenceValue& operator=(const SequenceValue&) = delete;
  ~SequenceValue() {
    if (sequence_ != nullptr) uno_type_destructData(&sequence_, type_, nullptr);
  }
  uno_Sequence** Receive() { return &sequence_; }
  uno_Sequence* get() const { return sequence_; }

 private:
  TypeReference type_;
  uno_Sequence* sequence_ = nullptr;
};

/// A text that LibreOffice counts the uses of.
class UnoText {
 public:
  explicit UnoText(std::u16string_view text) : text_(NewText(text)) {}
  UnoText(const UnoText&) = delete;
  UnoText& operator=(const UnoText&) = delete;
  ~UnoText() { rtl_uString_release(text_); }
  rtl_uString** address() { return &text_; }

 private:
  rtl_uString* text_;
};

}  // namespace zavcalc
