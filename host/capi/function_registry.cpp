#include "host/capi/function_registry.h"

#include <algorithm>
#include <utility>

#include "host/workbook/text.h"

namespace zavhost {
namespace {

// Excel's ids are large and can be negative, so add-ins must not treat them as indices or test
// their sign.
double IdOf(std::int64_t number) {
  const double id = static_cast<double>(0x7A10000 + number * 8);
  return number % 2 == 0 ? -id : id;
}

}  // namespace

double FunctionRegistry::Add(RegisteredFunction function, TypeText type, void* address,
                             const LoadedAddIn& add_in) {
  hidden_by_name_[LowerCase(function.name)] = function.macro_type == 0;
  ForgetLeft(function.name);
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].address == address && functions_[i].name == function.name &&
        functions_[i].type_text == function.type_text) {
      ++entries_[i].use_count;
      return entries_[i].register_id;
    }
  }
  const double id = IdOf(next_id_++);
  function.register_id = id;
  function.is_volatile = type.is_volatile;
  if (function.macro_type != 2) ids_by_name_[LowerCase(function.name)].push_back(id);
  functions_.push_back(std::move(function));
  entries_.push_back({id, std::move(type), address, &add_in, 1});
  ++generation_;
  return id;
}

bool FunctionRegistry::Remove(double register_id) {
  const auto entry = std::find_if(entries_.begin(), entries_.end(), [&](const RegistryEntry& e) {
    return e.register_id == register_id;
  });
  if (entry == entries_.end()) return false;
  if (--entry->use_count > 0) return true;
  const auto function = functions_.begin() + (entry - entries_.begin());
  const auto name = ids_by_name_.find(LowerCase(function->name));
  if (name != ids_by_name_.end()) {
    std::erase(name->second, register_id);
    if (name->second.empty()) ids_by_name_.erase(name);
  }
  std::u16string left = std::move(function->name);
  functions_.erase(function);
  entries_.erase(entry);
  ++generation_;
  const bool is_named = hidden_by_name_.contains(LowerCase(left));
  if (is_named && std::none_of(functions_.begin(), functions_.end(),
                               [&](const auto& f) { return EqualIgnoringCase(f.name, left); }))
    names_left_.push_back(std::move(left));
  return true;
}

void FunctionRegistry::DeleteName(std::u16string_view name) {
  const auto known = hidden_by_name_.find(LowerCase(name));
  if (known == hidden_by_name_.end() || !known->second) return;
  ids_by_name_.erase(known->first);
  hidden_by_name_.erase(known);
  ForgetLeft(name);
  ++generation_;
}

void FunctionRegistry::ForgetLeft(std::u16string_view name) {
  std::erase_if(names_left_, [&](const auto& left) { return EqualIgnoringCase(left, name); });
}

std::vector<std::u16string> FunctionRegistry::TakeNamesLeft() {
  return std::exchange(names_left_, {});
}

void FunctionRegistry::Clear() {
  functions_.clear();
  entries_.clear();
  ids_by_name_.clear();
  hidden_by_name_.clear();
  names_left_.clear();
  ++generation_;
}

std::size_t FunctionRegistry::Find(std::u16string_view name) const {
  const auto found = ids_by_name_.find(LowerCase(name));
  if (found == ids_by_name_.end()) return npos;
  const double id = found->second.back();
  const auto entry = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const RegistryEntry& e) { return e.register_id == id; });
  return static_cast<std::size_t>(entry - entries_.begin());
}

}  // namespace zavhost
