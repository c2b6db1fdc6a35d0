#include "bindings/sibling_library.h"

#include "bindings/companion_library.h"

namespace zavrel {
namespace {

template <class Function>
void Find(const char* name, Function*& function) {
  function = AsFunction<Function>(SiblingLibrary().FindExport(name));
}

SiblingFunctions FindAll() {
  SiblingFunctions functions{};
  Find("QLX4_CalcDoubleArrayTarget3", functions.calc_double_array_target);
  Find("QLX4_DoubleIsError", functions.double_is_error);
  Find("QLX4_Rand", functions.rand);
  return functions;
}

}  // namespace

const SiblingFunctions& SiblingProduct() {
  static const SiblingFunctions functions = FindAll();
  return functions;
}

}  // namespace zavrel
