// Reads bytes as a recording: they are refused as one, or what is read of them can be written and read again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "recorder/Reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  try {
    recorder::Reader reader(in);
    while (const auto entry = reader.Next()) {
      const auto* const step = std::get_if<recorder::Step>(&*entry);
      const auto* const request = step ? std::get_if<recorder::Request>(&step->action) : nullptr;
      if (!request) continue;
      const std::string text = recorder::Text(*request);
      const auto again = recorder::ReadRequest(text);
      if (!again || recorder::Text(*again) != text) std::abort();
    }
  } catch (const recorder::BadRecording&) {
    return 0;
  }
  return 0;
}
