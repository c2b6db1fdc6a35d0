// Wine has the library of compiled help; that it shows a page, only Windows can show.
#include "services/windows/help_viewer.h"

#include <doctest/doctest.h>

#include <array>
#include <fstream>

#include "platform/temporary_folder.h"
#include "services/help_file.h"

namespace zavrel::services {
namespace {

TEST_CASE("what cannot be opened is said so") {
  const std::filesystem::path broken = TemporaryFolder() / "zavrel broken.chm";
  std::ofstream(broken) << "no compiled help";
  CHECK(CanShowCompiledHelp(broken));
  CHECK_FALSE(CanShowCompiledHelp(TemporaryFolder()));
  CHECK_FALSE(CanShowCompiledHelp(L"\\\\machine\\share\\help.chm"));
  HelpViewer viewer;
  CHECK_FALSE(viewer.Show({}, {u"ZavMean", 1}));
  const std::array places = {HelpPlace{broken, true},
                             HelpPlace{TemporaryFolder() / "zavrel no such page.html", false}};
  CHECK_FALSE(viewer.Show(places, {u"ZavMean", 1}));
  CHECK_FALSE(viewer.Show(places, {u"ZavMean", std::nullopt}));
  std::filesystem::remove(broken);
}

}  // namespace
}  // namespace zavrel::services
