#ifndef _WIN32
#include <doctest/doctest.h>

#include <map>
#include <utility>

#include "contracts/message_table.h"
#include "messages/text_files.h"

TEST_CASE("the table holds the texts of the files, ordered by language and id") {
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::u16string> expected;
  for (const TextFile& file : TextFiles()) {
    for (const auto& [id, text] : file.utf8) {
      INFO("name = ", file.name, ", id = ", id);
      CHECK(expected.emplace(std::pair(file.language_id, id), file.Text(id)).second);
    }
  }
  const auto messages = zavrel::messages::Messages();
  REQUIRE(messages.size() == expected.size());
  auto next = expected.begin();
  for (const auto& message : messages) {
    INFO("language = ", message.language, ", id = ", message.id);
    CHECK(std::pair<std::uint32_t, std::uint32_t>(message.language, message.id) == next->first);
    CHECK((message.text == next->second));
    ++next;
  }
}
#endif
