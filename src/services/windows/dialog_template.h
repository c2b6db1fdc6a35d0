#pragma once
// A dialog as Windows reads it from memory.

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zavrel::services {

/// In dialog units, which follow the size of the font.
struct DialogArea {
  short x, y, width, height;
};

/// A dialog with the font of Windows' own, and its controls in the order in which they are added.
class DialogTemplate {
 public:
  DialogTemplate(DWORD style, DWORD extended_style, short width, short height,
                 std::u16string_view title) {
    const DLGTEMPLATE head{style | DS_SETFONT, extended_style, 0, 0, 0, width, height};
    Append(&head, sizeof head);
    AppendText(u"");  // no menu
    AppendText(u"");  // the usual class
    AppendText(title);
    units_.push_back(9);  // points
    AppendText(u"Segoe UI");
  }

  void Add(std::u16string_view window_class, DWORD style, DialogArea area, std::uint16_t id,
           std::u16string_view text = {}) {
    const DLGITEMTEMPLATE head{
        style | WS_CHILD | WS_VISIBLE, 0, area.x, area.y, area.width, area.height, id};
    if (units_.size() % 2 != 0) units_.push_back(0);  // a control begins at a multiple of 4 bytes
    Append(&head, sizeof head);
    AppendText(window_class);
    AppendText(text);
    units_.push_back(0);  // no data
    ++reinterpret_cast<DLGTEMPLATE*>(units_.data())->cdit;
  }

  const DLGTEMPLATE* get() const { return reinterpret_cast<const DLGTEMPLATE*>(units_.data()); }

 private:
  void Append(const void* bytes, std::size_t size) {
    const auto* first = static_cast<const WORD*>(bytes);
    units_.insert(units_.end(), first, first + size / sizeof(WORD));
  }
  void AppendText(std::u16string_view text) {
    units_.insert(units_.end(), text.begin(), text.end());
    units_.push_back(0);
  }

  std::vector<WORD> units_;
};

}  // namespace zavrel::services
