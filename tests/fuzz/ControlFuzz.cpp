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
  constexpr std::string_view kEnd = "end 0\n";
  if (answer.size() < kEnd.size() || answer.back() != '\n') return false;
  std::string_view last = answer.substr(0, answer.size() - 1);
  last.remove_prefix(last.find('\n') == std::string_view::npos ? 0 : last.rfind('\n') + 1);
  constexpr std::string_view kOther = "other ";
  if (last.substr(0, kOther.size()) == kOther) last.remove_prefix(kOther.size());
  return last.size() == kEnd.size() - 1 && last.substr(0, 4) == kEnd.substr(0, 4);
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
