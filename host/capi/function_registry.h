#pragma once
// The functions that the add-ins have registered.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/capi/loaded_add_in.h"
#include "host/capi/registered_function.h"
#include "host/capi/type_text.h"

namespace zavhost {

struct RegistryEntry {
  double register_id = 0;
  TypeText type;
  void* address = nullptr;
  const LoadedAddIn* add_in = nullptr;  // outlives the registration
  std::uint32_t use_count = 1;
};

class FunctionRegistry {
 public:
  /// Adds a function and returns its id. Adding the same procedure with the same name and type text
  /// again counts one more use of the existing function.
  double Add(RegisteredFunction function, TypeText type, void* address, const LoadedAddIn& add_in);
  /// Counts one use less; removes the function after its last use, but not its name. False for an
  /// unknown id.
  bool Remove(double register_id);
  /// Deletes the name, as xlfSetName is known to do it: only if the function that was last
  /// registered under it is hidden. Otherwise it stays, without a word.
  void DeleteName(std::u16string_view name);
  /// The names that remain of removed functions, each of which is returned once.
  std::vector<std::u16string> TakeNamesLeft();
  void Clear();

  const std::vector<RegisteredFunction>& functions() const { return functions_; }
  /// The entry that belongs to functions()[index].
  const RegistryEntry& entry(std::size_t index) const { return entries_[index]; }
  /// The function that was last registered under this name, in any letter case; does not find
  /// commands. npos if there is none.
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);
  std::size_t Find(std::u16string_view name) const;
  /// Changes whenever functions are added or removed.
  std::uint64_t generation() const { return generation_; }

 private:
  void ForgetLeft(std::u16string_view name);

  std::vector<RegisteredFunction> functions_;
  std::vector<RegistryEntry> entries_;
  std::unordered_map<std::u16string, std::vector<double>> ids_by_name_;
  std::unordered_map<std::u16string, bool> hidden_by_name_;  // of the latest function of the name
  std::vector<std::u16string> names_left_;                   // as they were registered
  std::uint64_t generation_ = 0;
  std::int64_t next_id_ = 0;
};

}  // namespace zavhost
