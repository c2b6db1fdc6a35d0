#pragma once
// LibreOffice's binary interface: values and objects as plain C structs. No C++ of LibreOffice's is
// used, so any compiler can build the component.

#ifdef _WIN32
// Here LibreOffice's headers know Microsoft's compiler only, and a Linux system's have its sizes.
#define CONFIG_TYPESIZES_H
#define SAL_TYPES_ALIGNMENT2 2
#define SAL_TYPES_ALIGNMENT4 4
#define SAL_TYPES_ALIGNMENT8 8
#define SAL_TYPES_SIZEOFSHORT 2
#define SAL_TYPES_SIZEOFINT 4
#define SAL_TYPES_SIZEOFLONG 4
#define SAL_TYPES_SIZEOFLONGLONG 8
#define SAL_TYPES_SIZEOFPOINTER 8
#define SAL_UNX  // in sal/types.h the branch for GCC; all of it holds on Windows too
#endif

#include <rtl/ustring.h>
#include <typelib/typedescription.h>
#include <uno/any2.h>
#include <uno/dispatcher.h>
#include <uno/sequence2.h>

#include <cstddef>
#include <span>
#include <string_view>

namespace zavcalc {

inline std::u16string_view TextOf(const rtl_uString* text) {
  return {reinterpret_cast<const char16_t*>(text->buffer), static_cast<std::size_t>(text->length)};
}
/// The caller owns the result.
rtl_uString* NewText(std::u16string_view text);

/// Types live as long as the office does.
using TypeReference = typelib_TypeDescriptionReference*;
TypeReference InterfaceType(std::u16string_view name);
/// A type without a name of its own.
TypeReference SimpleType(typelib_TypeClass type_class);
TypeReference SequenceType(std::u16string_view name);

// Each constructs a value in the memory of a result.
void ConstructVoid(uno_Any& result);
void ConstructNumber(uno_Any& result, double number);
void ConstructText(uno_Any& result, std::u16string_view text);
void ConstructInterface(uno_Any& result, uno_Interface* object, TypeReference type);
/// A sequence of `type` from elements that are copied.
uno_Sequence* NewSequence(TypeReference type, const void* elements, std::size_t count);

/// The elements of a sequence of this element type.
template <class Element>
std::span<Element> ElementsOf(uno_Sequence* sequence) {
  return {reinterpret_cast<Element*>(sequence->elements),
          static_cast<std::size_t>(sequence->nElements)};
}

}  // namespace zavcalc
