#include "bindings/binding.h"

#include "diagnostics/log.h"
#include "platform/message_box.h"
#include "platform/utf.h"

namespace zavrel {

Binding& Binding::From(CompanionLibrary& library, const BindingTitles& titles) {
  titles_ = titles;
  library_ = library.IsPresent() ? &library : nullptr;
  if (library_ == nullptr)
    failures_.push_back(
        {titles.not_loaded, u"Could not load " + Utf16FromPath(library.path()) + u"."});
  return *this;
}

ExportAddress Binding::Find(const char* name) {
  if (library_ == nullptr) return nullptr;
  if (const ExportAddress found = library_->FindExport(name)) return found;
  failures_.push_back({titles_.no_function, u"The function " + Utf16FromUtf8(name) +
                                                u" could not be found in " +
                                                Utf16FromPath(library_->path())});
  library_->Release();
  library_ = nullptr;
  return nullptr;
}

void Binding::Report(Told told) const {
  for (const auto& [title, text] : failures_) {
    const std::u16string line = title.empty() ? text : std::u16string(title) + u": " + text;
    LogComposedLine([&] { return Utf8FromUtf16(line); });
    if (told == Told::kUserToo) ShowErrorBox(std::u16string(title), text);
  }
}

}  // namespace zavrel
