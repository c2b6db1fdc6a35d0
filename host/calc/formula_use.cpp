#include "host/calc/formula_use.h"

#include <algorithm>

#include "formula/lexer.h"
#include "host/formula/builtin_functions.h"
#include "host/formula/file_marks.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

using formula::Token;
using formula::TokenKind;

/// The part after a sheet or workbook prefix.
std::u16string_view WithoutPrefix(std::u16string_view token) {
  const std::size_t mark = token.rfind(u'!');
  return mark == std::u16string_view::npos ? token : token.substr(mark + 1);
}

/// A function's name without its parenthesis and without the prefixes that files add.
std::u16string_view FunctionName(std::u16string_view token) {
  std::u16string_view name = WithoutPrefix(token);
  name = name.substr(0, name.find_last_not_of(u"( \t\r\n") + 1);
  return WithoutFileMarks(name);
}

/// Cells or a name of another workbook, or cells of several sheets. "[0]" is this workbook.
bool IsForeign(std::u16string_view token) {
  const std::size_t mark = token.rfind(u'!');
  if (mark == std::u16string_view::npos) return false;
  std::u16string_view prefix = token.substr(0, mark);
  if (prefix.starts_with(u'\'')) prefix.remove_prefix(1);
  if (prefix.starts_with(u"[0]")) prefix.remove_prefix(3);
  return prefix.find_first_of(u"[:") != std::u16string_view::npos;
}

bool IsOneOf(std::u16string_view name, std::initializer_list<std::u16string_view> names) {
  return std::any_of(names.begin(), names.end(),
                     [name](std::u16string_view other) { return EqualIgnoringCase(name, other); });
}

bool Merge(const FormulaUse& from, FormulaUse& to) {
  bool changed = false;
  if (from.uses_add_in && !to.uses_add_in) to.uses_add_in = changed = true;
  if (from.is_volatile && !to.is_volatile) to.is_volatile = changed = true;
  if (!from.foreign.empty() && to.foreign.empty()) {
    to.foreign = from.foreign;
    changed = true;
  }
  return changed;
}

}  // namespace

FormulaUses::FormulaUses(const Workbook& workbook, const FunctionRegistry& registry)
    : workbook_(workbook),
      registry_(registry),
      uses_(workbook.formula_texts.size()),
      known_(workbook.formula_texts.size()) {
  LookAtNames();
}

void FormulaUses::LookAtFunction(std::u16string_view token, FormulaUse& use) const {
  const std::u16string_view name = FunctionName(token);
  const std::size_t registered = registry_.Find(name);
  if (registered != FunctionRegistry::npos) {
    use.uses_add_in = true;
    use.is_volatile = use.is_volatile || registry_.entry(registered).type.is_volatile;
  } else if (EqualIgnoringCase(name.substr(0, 3), u"Zav")) {
    use.uses_add_in = true;
  } else if (IsOneOf(name, {u"NOW", u"TODAY", u"RAND", u"RANDBETWEEN", u"RANDARRAY"})) {
    use.is_volatile = true;
  } else if (use.foreign.empty() && !IsBuiltIn(name) &&
             !IsOneOf(name, {u"SINGLE", u"ANCHORARRAY"})) {
    use.foreign = name;
  }
}

FormulaUse FormulaUses::Look(std::u16string_view text, std::vector<std::u16string>& names) const {
  FormulaUse use;
  if (text.size() > kLongestFormula) return use;  // nobody computes it
  for (const Token& token : formula::Tokenize(text)) {
    switch (token.kind) {
      case TokenKind::kFunction:
        LookAtFunction(token.text, use);
        break;
      case TokenKind::kName:
        if (IsForeign(token.text)) {
          if (use.foreign.empty()) use.foreign = token.text;
          break;
        }
        names.push_back(LowerCase(WithoutPrefix(token.text)));
        break;
      case TokenKind::kReference:
      case TokenKind::kStructuredReference:
        if (use.foreign.empty() && IsForeign(token.text)) use.foreign = token.text;
        break;
      default:
        break;
    }
  }
  return use;
}

// A name also uses everything that the names in its text use. This is propagated until nothing
// changes, so cycles of names do no harm.
void FormulaUses::LookAtNames() {
  std::vector<std::u16string> changed;
  for (const DefinedName& name : workbook_.names) {
    std::vector<std::u16string> mentioned;
    const FormulaUse use = Look(name.text, mentioned);
    const std::u16string key = LowerCase(name.name);
    if (Merge(use, names_[key].use)) changed.push_back(key);
    for (std::u16string& other : mentioned) names_[std::move(other)].users.push_back(key);
  }
  while (!changed.empty()) {
    const std::u16string key = std::move(changed.back());
    changed.pop_back();
    const NameUse& name = names_.at(key);
    for (const std::u16string& user : name.users) {
      if (Merge(name.use, names_.at(user).use)) changed.push_back(user);
    }
  }
}

FormulaUse FormulaUses::OfText(std::u16string_view text) const {
  std::vector<std::u16string> mentioned;
  FormulaUse use = Look(text, mentioned);
  for (const std::u16string& name : mentioned) {
    const auto found = names_.find(name);
    if (found != names_.end()) Merge(found->second.use, use);
  }
  return use;
}

const FormulaUse& FormulaUses::Of(std::uint32_t text) {
  if (!known_[text]) {
    known_[text] = true;
    uses_[text] = OfText(workbook_.formula_texts[text]);
  }
  return uses_[text];
}

}  // namespace zavhost
