#include "calc/uno.h"

#include <new>

namespace zavcalc {
namespace {

TypeReference NamedType(typelib_TypeClass type_class, std::u16string_view name) {
  rtl_uString* text = NewText(name);
  TypeReference type = nullptr;
  typelib_typedescriptionreference_new(&type, type_class, text);
  rtl_uString_release(text);
  return type;
}

}  // namespace

rtl_uString* NewText(std::u16string_view text) {
  rtl_uString* made = nullptr;
  rtl_uString_newFromStr_WithLength(&made, reinterpret_cast<const sal_Unicode*>(text.data()),
                                    static_cast<sal_Int32>(text.size()));
  return made;
}

TypeReference InterfaceType(std::u16string_view name) {
  return NamedType(typelib_TypeClass_INTERFACE, name);
}

TypeReference SimpleType(typelib_TypeClass type_class) {
  return *typelib_static_type_getByTypeClass(type_class);
}

TypeReference SequenceType(std::u16string_view name) {
  return NamedType(typelib_TypeClass_SEQUENCE, name);
}

void ConstructVoid(uno_Any& result) { uno_any_construct(&result, nullptr, nullptr, nullptr); }

void ConstructNumber(uno_Any& result, double number) {
  static const TypeReference type = SimpleType(typelib_TypeClass_DOUBLE);
  uno_type_any_construct(&result, &number, type, nullptr);
}

void ConstructText(uno_Any& result, std::u16string_view text) {
  static const TypeReference type = SimpleType(typelib_TypeClass_STRING);
  rtl_uString* made = NewText(text);
  uno_type_any_construct(&result, &made, type, nullptr);
  rtl_uString_release(made);
}

void ConstructInterface(uno_Any& result, uno_Interface* object, TypeReference type) {
  uno_type_any_construct(&result, &object, type, nullptr);
}

uno_Sequence* NewSequence(TypeReference type, const void* elements, std::size_t count) {
  uno_Sequence* sequence = nullptr;
  const auto length = static_cast<sal_Int32>(count);
  if (uno_type_sequence_construct(&sequence, type, const_cast<void*>(elements), length, nullptr) ==
      0) {
    throw std::bad_alloc();
  }
  return sequence;
}

}  // namespace zavcalc
