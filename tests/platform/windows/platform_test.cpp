#include <doctest/doctest.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <vector>

#include "platform/file_version.h"
#include "platform/message_box.h"
#include "platform/module.h"
#include "platform/named_mutex.h"
#include "platform/registry.h"
#include "platform/string_resource.h"
#include "platform/temporary_folder.h"
#include "platform/windows/system_handle.h"

namespace zavrel {
namespace {

namespace fs = std::filesystem;

fs::path SystemLibrary(const wchar_t* name) {
  wchar_t folder[MAX_PATH];
  GetSystemDirectoryW(folder, MAX_PATH);
  return fs::path(folder) / name;
}

TEST_CASE("registry: what is written is there, what is not text is not read as text") {
  const std::u16string path = u"Software\\Zavrel Functions test\\platform";
  CHECK_FALSE(RegistryKey::Open(RegistryHive::kPerUser, path));
  {
    auto key = RegistryKey::Create(RegistryHive::kPerUser, path);
    REQUIRE(key);
    CHECK(key->WriteNumber(u"5", 4000000000u));
    CHECK(key->ReadNumber(u"5") == 4000000000u);
    CHECK(key->WriteText(u"text", u"äö"));
    CHECK_FALSE(key->ReadNumber(u"text"));
    CHECK(key->DeleteValue(u"text"));
    CHECK(key->DeleteValue(u"text"));
    CHECK_FALSE(key->ReadText(u"text"));
    CHECK(key->WriteText(u"text", u""));
    CHECK(key->ReadText(u"text") == u"");
    CHECK(key->DeleteValue(u"text"));
  }
  {
    auto for_reading = RegistryKey::Open(RegistryHive::kPerUser, path);
    std::string problem;
    CHECK_FALSE(for_reading->WriteText(u"text", u"", &problem));
    CHECK(!problem.empty());
    problem.clear();
    CHECK_FALSE(RegistryKey::Open(RegistryHive::kPerUser, path + u"\\missing", &problem));
    CHECK(!problem.empty());
  }
  const wchar_t* wide_path = L"Software\\Zavrel Functions test\\platform";
  DWORD number = 0;
  DWORD size = sizeof number;
  CHECK(RegGetValueW(HKEY_CURRENT_USER, wide_path, L"5", RRF_RT_REG_DWORD, nullptr, &number,
                     &size) == ERROR_SUCCESS);
  CHECK(number == 4000000000u);

  const std::wstring longer_than_any_buffer(5000, L'ä');
  for (const auto& [name, text] :
       {std::pair{L"empty", std::wstring()}, std::pair{L"long", longer_than_any_buffer}}) {
    RegSetKeyValueW(HKEY_CURRENT_USER, wide_path, name, REG_SZ, text.c_str(),
                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }
  RegSetKeyValueW(HKEY_CURRENT_USER, wide_path, L"not terminated", REG_SZ, L"abc", 4);
  RegSetKeyValueW(HKEY_CURRENT_USER, wide_path, L"with a variable", REG_EXPAND_SZ, L"%TEMP%", 14);
  {
    const auto key = RegistryKey::Open(RegistryHive::kPerUser, path);
    REQUIRE(key);
    CHECK(key->ReadText(u"empty") == u"");
    CHECK(key->ReadText(u"long") == std::u16string(5000, u'ä'));
    CHECK(key->ReadText(u"not terminated") == u"ab");
    CHECK_FALSE(key->ReadText(u"5"));
    CHECK_FALSE(key->ReadText(u"missing"));
    std::map<std::u16string, std::u16string> texts;
    for (const auto& [name, text] : key->ReadTexts()) texts[name] = text;
    CHECK(texts == std::map<std::u16string, std::u16string>{{u"empty", u""},
                                                            {u"long", std::u16string(5000, u'ä')},
                                                            {u"not terminated", u"ab"},
                                                            {u"with a variable", u"%TEMP%"}});
  }
  CHECK(RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Zavrel Functions test") == ERROR_SUCCESS);
  CHECK_FALSE(RegistryKey::Open(RegistryHive::kMachineWide, path));
}

TEST_CASE("a named mutex is there for others as long as it is kept") {
  const auto exists = [] {
    return static_cast<bool>(SystemHandle(OpenMutexW(SYNCHRONIZE, FALSE, L"Zavrel   test mutex")));
  };
  CHECK_FALSE(exists());
  {
    auto first = NamedMutex::Open(u"Zavrel   test mutex");
    REQUIRE(first);
    first = NamedMutex::Open(u"Zavrel   test mutex");
    CHECK(exists());
  }
  CHECK_FALSE(exists());
}

TEST_CASE("libraries: version, exports, use count, a path with non-ASCII letters") {
  const fs::path folder = TemporaryFolder() / u"zavrel test Ünïcode ф";
  fs::create_directories(folder);
  const fs::path library = folder / u"zavrel copy.dll";
  fs::copy_file(SystemLibrary(L"version.dll"), library, fs::copy_options::overwrite_existing);
  const auto version = ReadFileVersion(library);
  REQUIRE(version);
  CHECK((*version)[0] >= 5);
  CHECK(VersionText({8, 0, 12, 65535}) == "8.0.12.65535");
  {
    auto module = Module::Load(library);
    REQUIRE(module);
    const ExportAddress found = module->FindExport("VerQueryValueW");
    REQUIRE(found != nullptr);
    CHECK(module->FindExport("NotThere") == nullptr);
    CHECK(fs::equivalent(PathOfModuleContaining(found), library));
    REQUIRE(LoadedModule::ByName(u"zavrel copy"));
    CHECK(LoadedModule::ByName(u"zavrel copy")->FindExport("VerQueryValueW") == found);
  }
  CHECK_FALSE(LoadedModule::ByName(u"zavrel copy"));  // finding it did not keep it
  fs::remove_all(folder);
}

/// A copy of this program that gets string tables.
class ProgramWithTexts {
 public:
  ProgramWithTexts() : path_(TemporaryFolder() / u"zavrel test texts ä.dll") {
    fs::copy_file(HostExecutablePath(), path_, fs::copy_options::overwrite_existing);
    update_ = BeginUpdateResourceW(path_.c_str(), TRUE);
  }
  ~ProgramWithTexts() {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }
  ProgramWithTexts(const ProgramWithTexts&) = delete;
  ProgramWithTexts& operator=(const ProgramWithTexts&) = delete;

  void Add(WORD language, WORD block, std::wstring units) {
    UpdateResourceW(update_, RT_STRING, MAKEINTRESOURCEW(block), language, units.data(),
                    static_cast<DWORD>(units.size() * sizeof(wchar_t)));
  }
  const fs::path& Finish() {
    CHECK(EndUpdateResourceW(update_, FALSE));
    return path_;
  }

 private:
  fs::path path_;
  HANDLE update_;
};

TEST_CASE("string tables: exact language, missing texts, tables that lie about their length") {
  using namespace std::string_literals;
  ProgramWithTexts program;
  // Block 26 holds the ids 400 to 415.
  program.Add(7, 26, L"\2äö\0\3end"s + std::wstring(13, L'\0'));
  program.Add(9, 26, L"\1a\1b"s);
  program.Add(9, 27,
              L"\1a\x7FFF"
              L"b"s);
  const auto resources = StringResources::Load(program.Finish());
  REQUIRE(resources);
  CHECK(resources->Find(7, 400) == u"äö");
  CHECK_FALSE(resources->Find(7, 401));
  CHECK(resources->Find(7, 402) == u"end");
  CHECK_FALSE(resources->Find(7, 415));
  CHECK_FALSE(resources->Find(7, 416));
  CHECK_FALSE(resources->Find(12, 400));
  CHECK(resources->Find(9, 401) == u"b");
  CHECK_FALSE(resources->Find(9, 402));
  CHECK(resources->Find(9, 416) == u"a");
  CHECK_FALSE(resources->Find(9, 417));
  CHECK_FALSE(resources->Find(9, 65535));
  std::vector<std::uint16_t> languages = resources->LanguagesOf(415);
  std::sort(languages.begin(), languages.end());
  CHECK(languages == std::vector<std::uint16_t>{7, 9});
  CHECK(resources->LanguagesOf(416) == std::vector<std::uint16_t>{9});
  CHECK(resources->LanguagesOf(432).empty());

  CHECK_FALSE(StringResources::Load(TemporaryFolder() / "no such file.dll"));
}

}  // namespace
}  // namespace zavrel
