// The component that LibreOffice loads: a factory, and the object whose methods are the functions.
// One dispatcher serves every method, which it finds by name, so no function has code of its own.

#include <algorithm>
#include <atomic>
#include <map>
#include <string_view>
#include <vector>

#include "calc/add_in.h"
#include "calc/any_value.h"
#include "calc/document.h"
#include "calc/uno.h"

namespace zavcalc {
namespace {

using zavhost::ErrorCode;
using zavhost::Operand;
using zavhost::Value;

constexpr std::u16string_view kImplementation = u"org.zavrel.calc.Functions";
/// The prefix with which Excel stores the functions of an add-in.
constexpr std::u16string_view kService = u"_xll";

constexpr std::u16string_view kInterface = u"com.sun.star.uno.XInterface";
constexpr std::u16string_view kTypeProvider = u"com.sun.star.lang.XTypeProvider";
constexpr std::u16string_view kServiceInfo = u"com.sun.star.lang.XServiceInfo";
constexpr std::u16string_view kFactory = u"com.sun.star.lang.XSingleComponentFactory";
constexpr std::u16string_view kFunctions = u"org.zavrel.calc.XFunctions";

constexpr std::u16string_view kListener = u"com.sun.star.util.XModifyListener";

constexpr std::u16string_view kFactoryInterfaces[] = {kInterface, kTypeProvider, kServiceInfo,
                                                      kFactory};
constexpr std::u16string_view kFunctionInterfaces[] = {kInterface, kTypeProvider, kServiceInfo,
                                                       kFunctions};
constexpr std::u16string_view kListenerInterfaces[] = {kInterface, kListener};

/// An object of the component: what it implements and how many hold it.
struct Object {
  uno_Interface base;  // the first member: the address of both is the same
  std::atomic<int> users;
  std::span<const std::u16string_view> interfaces;
  uno_Interface* document = nullptr;  // that a listener listens to
};

Object& ObjectOf(uno_Interface* base) { return *reinterpret_cast<Object*>(base); }

void SAL_CALL Acquire(uno_Interface* base) { ++ObjectOf(base).users; }
void SAL_CALL Release(uno_Interface* base) {
  Object& object = ObjectOf(base);
  // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): an object belongs to all who hold it
  if (--object.users == 0) delete &object;
}
void SAL_CALL Dispatch(uno_Interface* base, const typelib_TypeDescription* member, void* result,
                       void** arguments, uno_Any** exception);

/// A new object with one user.
uno_Interface* NewObject(std::span<const std::u16string_view> interfaces,
                         uno_Interface* document = nullptr) {
  return &(new Object{{&Acquire, &Release, &Dispatch}, 1, interfaces, document})->base;
}

// The methods of every object.

void QueryInterface(Object& object, const void* wanted, uno_Any& result) {
  const auto* type = *static_cast<const TypeReference*>(wanted);
  const std::u16string_view name = TextOf(type->pTypeName);
  if (std::ranges::find(object.interfaces, name) == object.interfaces.end())
    return ConstructVoid(result);
  ConstructInterface(result, &object.base, InterfaceType(name));
}

uno_Sequence* TypesOf(const Object& object) {
  std::vector<TypeReference> types;
  for (const std::u16string_view name : object.interfaces) types.push_back(InterfaceType(name));
  return NewSequence(SequenceType(u"[]type"), types.data(), types.size());
}

uno_Sequence* ServiceNames() {
  rtl_uString* name = NewText(kService);
  uno_Sequence* names = NewSequence(SequenceType(u"[]string"), &name, 1);
  rtl_uString_release(name);
  return names;
}

// The documents, by the objects that Calc passes for them.

std::map<uno_Interface*, Document>& Documents() {
  static auto& documents = *new std::map<uno_Interface*, Document>;
  return documents;
}

Document& DocumentOf(uno_Interface* model) {
  auto& documents = Documents();
  if (const auto known = documents.find(model); known != documents.end()) return known->second;
  const UnoReference listener = UnoReference::Owning(NewObject(kListenerInterfaces, model));
  uno_Interface* address = listener.get();
  const UnoReference shared = UnoReference::Sharing(model);
  shared.As(u"com.sun.star.util.XModifyBroadcaster")
      .Call(u"com.sun.star.util.XModifyBroadcaster::addModifyListener", nullptr, {&address});
  return documents.try_emplace(model, UnoReference::Sharing(model)).first->second;
}

void AnswerListener(const Object& listener, std::u16string_view method) {
  const auto document = Documents().find(listener.document);
  if (document == Documents().end()) return;
  if (method == u"modified") document->second.Forget();
  if (method == u"disposing") Documents().erase(document);
}

// The functions.

/// The first argument is the document, which formulas do not show; then come theirs.
Operand CallFunction(std::u16string_view name, const typelib_TypeDescription* member,
                     void** arguments) {
  static AddIn& add_in = *new AddIn;  // for the life of the office: its end has no good order
  const auto* method = reinterpret_cast<const typelib_InterfaceMethodTypeDescription*>(member);
  std::vector<Operand> operands;
  for (sal_Int32 i = 1; i < method->nParams; ++i)
    operands.push_back(ToOperand(*static_cast<const uno_Any*>(arguments[i])));
  auto* model = *static_cast<uno_Interface**>(arguments[0]);
  if (model == nullptr) return Value(ErrorCode::kValue);
  const auto meanings = DocumentOf(model).Resolve(name, operands);
  if (meanings.empty()) return Value(ErrorCode::kValue);
  Operand result = add_in.Call(name, meanings.front());
  for (const auto& other : std::span(meanings).subspan(1)) {
    if (!IsSame(add_in.Call(name, other), result)) return Value(ErrorCode::kValue);
  }
  return result;
}

void AnswerFunction(std::u16string_view name, const typelib_TypeDescription* member,
                    void** arguments, uno_Any& result) {
  // An exception must not reach the office, which is not built with this compiler's library.
  try {
    ConstructResult(result, CallFunction(name, member, arguments));
  } catch (...) {
    ConstructResult(result, Value(ErrorCode::kValue));
  }
}

void SAL_CALL Dispatch(uno_Interface* base, const typelib_TypeDescription* member, void* result,
                       void** arguments, uno_Any** exception) {
  *exception = nullptr;
  Object& object = ObjectOf(base);
  const std::u16string_view name = TextOf(member->pTypeName);
  const std::size_t colons = name.rfind(u"::");
  const std::u16string_view method = name.substr(colons + 2);
  if (name.substr(0, colons) == kFunctions) {
    AnswerFunction(method, member, arguments, *static_cast<uno_Any*>(result));
  } else if (object.document != nullptr && method != u"queryInterface") {
    AnswerListener(object, method);
  } else if (method == u"queryInterface") {
    QueryInterface(object, arguments[0], *static_cast<uno_Any*>(result));
  } else if (method == u"getTypes") {
    *static_cast<uno_Sequence**>(result) = TypesOf(object);
  } else if (method == u"getImplementationId") {
    *static_cast<uno_Sequence**>(result) = NewSequence(SequenceType(u"[]byte"), nullptr, 0);
  } else if (method == u"getImplementationName") {
    *static_cast<rtl_uString**>(result) = NewText(kImplementation);
  } else if (method == u"supportsService") {
    *static_cast<sal_Bool*>(result) =
        TextOf(*static_cast<rtl_uString**>(arguments[0])) == kService ? 1 : 0;
  } else if (method == u"getSupportedServiceNames") {
    *static_cast<uno_Sequence**>(result) = ServiceNames();
  } else if (method == u"createInstanceWithContext" ||
             method == u"createInstanceWithArgumentsAndContext") {
    *static_cast<uno_Interface**>(result) = NewObject(kFunctionInterfaces);
  }
}

}  // namespace
}  // namespace zavcalc

/// LibreOffice asks for the factory of an implementation; the caller owns it.
extern "C" __attribute__((visibility("default"))) void* component_getFactory(const char*, void*,
                                                                             void*) {
  return zavcalc::NewObject(zavcalc::kFactoryInterfaces);
}
