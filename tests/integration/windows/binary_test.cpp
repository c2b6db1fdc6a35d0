// What ships, as the linker left it: exports, imports, protections, version.
#include <windows.h>

#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>

#include "integration/pe_file.h"
#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

const std::set<std::string> kSystemLibraries = {
    "advapi32.dll", "bcrypt.dll",   "comctl32.dll", "kernel32.dll", "msvcrt.dll",
    "ole32.dll",    "oleaut32.dll", "shell32.dll",  "user32.dll",   "version.dll"};

nlohmann::json Parsed(const std::string& name) {
  std::ifstream file(ZAVREL_SOURCE_DIR "/src/" + name);
  return nlohmann::json::parse(file);
}

/// Those of an add-in's functions in this folder, and of the frame.
std::set<std::string> DeclaredExports(const std::string& folder) {
  const nlohmann::json data = Parsed(folder + "/functions.json");
  std::set<std::string> names;
  for (const auto& table : data.at("tables")) {
    for (const auto& function : table.at("functions")) names.insert(function.at("export"));
  }
  for (const nlohmann::json& document : {data, Parsed("frame/entry_points.json")}) {
    for (const auto& group : document.at("entry_points")) {
      for (const auto& name : group.at("exports")) names.insert(name);
    }
  }
  return names;
}

std::vector<std::string> Difference(const std::set<std::string>& a,
                                    const std::set<std::string>& b) {
  std::vector<std::string> only_a;
  std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(only_a));
  return only_a;
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += text + ' ';
  return all;
}

}  // namespace

TEST_CASE("an add-in exports the functions and entry points of functions.json, and nothing else") {
  for (const auto& [file, folder] :
       {std::pair{AddInFile(), "functions"}, {DistributionsFile(), "distribution_functions"}}) {
    CAPTURE(folder);
    const std::set<std::string> declared = DeclaredExports(folder);
    const std::set<std::string> exported = PeFile(file).exports();
    CHECK_MESSAGE(Difference(declared, exported).empty(),
                  "not exported: " << Joined(Difference(declared, exported)));
    CHECK_MESSAGE(Difference(exported, declared).empty(),
                  "not declared: " << Joined(Difference(exported, declared)));
  }
}

TEST_CASE("every binary that ships imports system libraries only and can be placed anywhere") {
  for (const char* name : {"ZavrelFuncs8_x64.xll", "ZavrelDistributions8_x64.xll", "ZavHost.exe",
                           "ZavrelMessages8_x64.DLL", "Pdflib8_x64.DLL", "EUtilityLibrary8_x64.DLL",
                           "ZavrelFuncs Extensions/NonparametricTests8_x64.DLL"}) {
    CAPTURE(name);
    const PeFile binary(AddInFile().parent_path() / name);
    for (const std::string& library : binary.imported_libraries()) {
      CHECK_MESSAGE(kSystemLibraries.count(library) == 1, library);
    }
    const std::uint16_t wanted = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE |
                                 IMAGE_DLLCHARACTERISTICS_NX_COMPAT |
                                 IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA;
    CHECK((binary.dll_characteristics() & wanted) == wanted);
  }
  const PeFile messages(AddInFile().parent_path() / "ZavrelMessages8_x64.DLL");
  CHECK(messages.imported_libraries().empty());
  CHECK(messages.exports().empty());
  CHECK((messages.header().SizeOfCode == 0 && messages.header().AddressOfEntryPoint == 0));
  const PeFile distributions(AddInFile().parent_path() / "Pdflib8_x64.DLL");
  CHECK(distributions.exports() == std::set<std::string>{"pdfBinomial", "pdfChisq", "pdfCount",
                                                         "pdfDescribe", "pdfEvaluate", "pdfF",
                                                         "pdfFind", "pdfMoments", "pdfNormal",
                                                         "pdfProblem", "pdfRandom", "pdfStudent"});
  const PeFile tests(AddInFile().parent_path() / "ZavrelFuncs Extensions" /
                     "NonparametricTests8_x64.DLL");
  CHECK(tests.exports() == std::set<std::string>{"MWTiesAndSums", "MWUsingNormalApproximation",
                                                 "MWpValue", "WSRExactPValMaxSample",
                                                 "WSRTiesAndSums", "WSRpValue"});
  const PeFile utility(AddInFile().parent_path() / "EUtilityLibrary8_x64.DLL");
  CHECK(utility.exports() ==
        std::set<std::string>{"KWData", "KWpValue", "KWpValueComputationMethod"});
}

TEST_CASE("the version resource is the project's version") {
  const std::wstring file = AddInFile().wstring();
  std::vector<std::byte> resource(GetFileVersionInfoSizeW(file.c_str(), nullptr));
  REQUIRE(!resource.empty());
  REQUIRE(
      GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(resource.size()), resource.data()));
  VS_FIXEDFILEINFO* info = nullptr;
  UINT size = 0;
  REQUIRE(VerQueryValueW(resource.data(), L"\\", reinterpret_cast<void**>(&info), &size));
  CHECK(info->dwFileVersionMS == 0x00080000);
  CHECK(HIWORD(info->dwFileVersionLS) == 0);
}

}  // namespace zavrel::tests
