// The finished library, read as the add-in reads it.
#include <doctest/doctest.h>

#include <filesystem>

#include "messages/text_files.h"
#include "platform/string_resource.h"

TEST_CASE("the library gives the texts of the files in each language, and nothing for other ids") {
  const auto library =
      zavrel::StringResources::Load(std::filesystem::absolute(ZAVREL_MESSAGE_LIBRARY));
  REQUIRE(library);
  for (const TextFile& file : TextFiles()) {
    CAPTURE(file.name);
    const auto language = static_cast<std::uint16_t>(file.language_id);
    for (std::uint16_t id = 0; id < 3000; ++id) {
      CAPTURE(id);
      CHECK((library->Find(language, id).value_or(u"") == file.Text(id)));
    }
  }
  CHECK(library->LanguagesOf(2400).size() == TextFiles().size());
}
