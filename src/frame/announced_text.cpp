#include "frame/announced_text.h"

namespace zavrel {

std::u16string AnnouncedText(const char16_t* text) {
  if (text == nullptr) return {};
  std::size_t size = 0;
  while (size < kAnnouncedTextLimit && text[size] != 0) ++size;
  return {text, size};
}

bool IsWideText(std::string_view bytes) {
  return bytes.size() % 2 == 0 && bytes.find('\0') != std::string_view::npos;
}

}  // namespace zavrel
