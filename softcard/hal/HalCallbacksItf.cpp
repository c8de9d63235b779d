#include "hal/HalCallbacksItf.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <utility>

#include "softcard/Funnel.h"

using namespace softcard;

namespace {

class LogIntoCallLog : public HalCallbacksItf {
 public:
  void log(int level, const char* format, ...) override {
    CallLog& call_log = Card::Get().log();
    if (!call_log.RecordsLogLines()) return;
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);

    std::string text(static_cast<size_t>(std::max(length, 0)), '\0');
    va_start(arguments, format);
    static_cast<void>(std::vsnprintf(text.data(), text.size() + 1, format, arguments));
    va_end(arguments);
    call_log.Add(calls::LogLine{level, std::move(text)});
  }
};

}  // namespace

HalCallbacksItf::~HalCallbacksItf() = default;

HalCallbacksItf* HalCallbacksItf::getInstance() {
  // Never destroyed: modules log until the process is gone.
  static HalCallbacksItf* const callbacks = new LogIntoCallLog;
  return Call<Named("HalCallbacksItf::getInstance")>(Args(), [] { return callbacks; });
}
