#pragma once

#include <windows.h>

#include <optional>
#include <span>

#include "platform/module.h"
#include "services/help_topic.h"

namespace zavrel::services {

/// Owner of the windows of compiled help that it has opened, which end with it. One object stays in
/// the session; Excel's main thread only.
class HelpViewer {
 public:
  HelpViewer() = default;
  ~HelpViewer();
  HelpViewer(const HelpViewer&) = delete;
  HelpViewer& operator=(const HelpViewer&) = delete;

  /// Opens the first of the places that the system can open; false if it can open none. Pages are
  /// shown by the user's browser.
  bool Show(std::span<const HelpPlace> places, const HelpTopic& topic);

 private:
  using HelpCall = HWND WINAPI(HWND, const wchar_t*, UINT, DWORD_PTR);

  bool ShowCompiled(const std::filesystem::path& file, const HelpTopic& topic);

  std::optional<Module> library_;
  HelpCall* html_help_ = nullptr;  // null if the system has none, or before the first window
};

}  // namespace zavrel::services
