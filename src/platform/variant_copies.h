#pragma once
// To be included wherever a std::variant with a text among its alternatives is declared.
//
// libstdc++ takes a std::variant of texts, numbers and the like for one that always has a value,
// and leaves out the question whether it does. Yet one that is being copied has none when the copy
// of its text finds no memory, and is destroyed then: by a jump to anywhere. So texts are taken out
// of the alternatives that the library believes this of.

#include <string>
#include <type_traits>

#ifdef __GLIBCXX__
namespace std::__detail::__variant {  // NOLINT(cert-dcl58-cpp): the fault is there

template <>
struct _Never_valueless_alt<std::string> : std::false_type {};
template <>
struct _Never_valueless_alt<std::u16string> : std::false_type {};

}  // namespace std::__detail::__variant
#endif
