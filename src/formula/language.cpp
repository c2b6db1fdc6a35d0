#include "formula/language.h"

#include "platform/letter_case.h"

namespace formula {
namespace {

template <class Names>
std::u16string_view Found(const Names& names, std::u16string_view name) {
  const auto place = names.find(zavrel::UpperCase(name));
  return place == names.end() ? std::u16string_view() : place->second;
}

}  // namespace

bool Language::Add(std::u16string_view english, std::u16string_view own) {
  if (own_.contains(english) || english_.contains(own)) return false;
  own_.emplace(english, own);
  english_.emplace(own, english);
  return true;
}

std::u16string_view Language::Own(std::u16string_view english) const {
  return Found(own_, english);
}

std::u16string_view Language::English(std::u16string_view own) const {
  return Found(english_, own);
}

}  // namespace formula
