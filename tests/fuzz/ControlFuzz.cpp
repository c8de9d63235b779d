// A client may say anything: each line is answered, and the last line of the answer says how it ended.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "serve/Conversation.h"
#include "tests/scenario/Parsed.h"
#include "tests/serve/PlainFormat.h"

namespace {

bool EndsWell(std::string_view answer) {
  for (const std::string_view name : {"", "other "}) {
    const std::string_view end = answer.substr(answer.size() - std::min(answer.size(), name.size() + 6));
    if (end.size() == name.size() + 6 && end.substr(0, name.size()) == name && end.substr(name.size(), 4) == "end " &&
        end.back() == '\n') {
      return true;
    }
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const serve::Formats formats = PlainFormat::All();
  scenario::Session session(TheLanguage(), softcard::Card::Get(), {});
  serve::Conversation conversation(session, TheLanguage(), formats, "fuzz");
  std::string_view text(reinterpret_cast<const char*>(data), size);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string answer = conversation.Answer(text.substr(0, end));
    if (!EndsWell(answer)) {
      std::cerr << "no end: " << answer << '\n';
      std::abort();
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return 0;
}
