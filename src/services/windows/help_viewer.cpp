#include "services/windows/help_viewer.h"

#include <windows.h>

// After windows.h.
#include <htmlhelp.h>
#include <shellapi.h>

#include <algorithm>
#include <array>

#include "platform/windows/wide.h"

namespace zavrel::services {
namespace {

/// The library of compiled help, which belongs to Windows.
std::optional<Module> LoadHtmlHelp() {
  std::array<wchar_t, MAX_PATH> folder;
  const UINT length = GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
  if (length == 0 || length >= folder.size()) return std::nullopt;
  auto library = Module::Load(std::filesystem::path(folder.data()) / L"hhctrl.ocx");
  // It has threads of its own, which may still run when its last window is closed.
  if (library) PinModuleContaining(library->FindExport("HtmlHelpW"));
  return library;
}

bool ShowPage(const std::filesystem::path& page) {
  constexpr std::intptr_t kLastFailure = 32;
  const HINSTANCE result =
      ShellExecuteW(nullptr, L"open", page.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<std::intptr_t>(result) > kLastFailure;
}

}  // namespace

HelpViewer::~HelpViewer() {
  if (html_help_ != nullptr) html_help_(nullptr, nullptr, HH_CLOSE_ALL, 0);
}

bool HelpViewer::Show(std::span<const HelpPlace> places, const HelpTopic& topic) {
  return std::ranges::any_of(places, [&](const HelpPlace& place) {
    return place.is_compiled ? ShowCompiled(place.file, topic) : ShowPage(place.file);
  });
}

bool HelpViewer::ShowCompiled(const std::filesystem::path& file, const HelpTopic& topic) {
  if (!library_) {
    library_ = LoadHtmlHelp();
    if (library_) html_help_ = AsFunction<HelpCall>(library_->FindExport("HtmlHelpW"));
  }
  if (html_help_ == nullptr) return false;
  if (topic.number) {
    return html_help_(nullptr, file.c_str(), HH_HELP_CONTEXT,
                      static_cast<std::uintptr_t>(*topic.number)) != nullptr;
  }
  const std::wstring page = file.native() + L"::/" + ToWide(topic.page) + L".html";
  return html_help_(nullptr, page.c_str(), HH_DISPLAY_TOPIC, 0) != nullptr;
}

}  // namespace zavrel::services
