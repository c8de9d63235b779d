#include "hal/HalCallbacksItf.h"

#include <cstdarg>
#include <cstdio>

#include "Funnel.h"

using namespace softcard;

namespace {

std::string Formatted(const char* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string text(length > 0 ? static_cast<size_t>(length) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

class LogIntoCallLog : public HalCallbacksItf {
 public:
  void log(int level, const char* format, ...) override {
    CallLog& call_log = Card::Get().log();
    if (!call_log.Records(EventKind::kLog)) return;
    va_list arguments;
    va_start(arguments, format);
    call_log.Add(EventKind::kLog, "log " + Text(level) + ": " + Formatted(format, arguments));
    va_end(arguments);
  }
};

}  // namespace

HalCallbacksItf::~HalCallbacksItf() = default;

HalCallbacksItf* HalCallbacksItf::getInstance() {
  // Never destroyed: modules log until the process is gone.
  static HalCallbacksItf* const callbacks = new LogIntoCallLog;
  return Access("HalCallbacksItf::getInstance", Args(), [] { return callbacks; });
}
