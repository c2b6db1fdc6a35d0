#include "calc/uno_reference.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace zavcalc {
namespace {

/// The description of "INTERFACE::METHOD"; it lives as long as the office does.
const typelib_TypeDescription* MemberDescription(std::u16string_view member) {
  static std::unordered_map<std::u16string, typelib_TypeDescription*> known;
  const auto [entry, is_new] = known.try_emplace(std::u16string(member), nullptr);
  if (is_new) {
    UnoText name(member);
    typelib_typedescription_getByName(&entry->second, *name.address());
  }
  if (entry->second == nullptr) throw CallFailure();
  return entry->second;
}

}  // namespace

void UnoReference::Call(std::u16string_view member, void* result,
                        std::initializer_list<void*> arguments) const {
  std::vector<void*> given(arguments);
  uno_Any failure;
  uno_Any* exception = &failure;
  object_->pDispatcher(object_, MemberDescription(member), result, given.data(), &exception);
  if (exception == nullptr) return;
  uno_any_destruct(exception, nullptr);
  throw CallFailure();
}

UnoReference UnoReference::As(std::u16string_view interface_name) const {
  TypeReference type = InterfaceType(interface_name);
  uno_Any answer;
  Call(u"com.sun.star.uno.XInterface::queryInterface", &answer, {&type});
  UnoReference found;
  if (answer.pType->eTypeClass == typelib_TypeClass_INTERFACE)
    found = Sharing(*static_cast<uno_Interface**>(answer.pData));
  uno_any_destruct(&answer, nullptr);
  if (!found) throw CallFailure();
  return found;
}

UnoReference UnoReference::ObjectFrom(std::u16string_view member,
                                      std::initializer_list<void*> arguments) const {
  uno_Interface* object = nullptr;
  Call(member, &object, arguments);
  if (object == nullptr) throw CallFailure();
  return Owning(object);
}

UnoReference NewService(const UnoReference& context, std::u16string_view name) {
  UnoText service(name);
  uno_Interface* given = context.get();
  return context.ObjectFrom(u"com.sun.star.uno.XComponentContext::getServiceManager", {})
      .As(u"com.sun.star.lang.XMultiComponentFactory")
      .ObjectFrom(u"com.sun.star.lang.XMultiComponentFactory::createInstanceWithContext",
                  {service.address(), &given});
}

UnoReference AnyValue::Object() const {
  if (any_.pType->eTypeClass != typelib_TypeClass_INTERFACE) throw CallFailure();
  return UnoReference::Sharing(*static_cast<uno_Interface**>(any_.pData));
}

}  // namespace zavcalc
