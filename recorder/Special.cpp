// The platform's functions whose result the module uses to reach further: what they hand out is put in front of, too.

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "hal/HalBcmCommon.h"
#include "hal/HalCallbacksItf.h"
#include "hal/IntfObject.h"
#include "hal/fm.h"
#include "recorder/Note.h"

// Weak, as all that the platform defines: a process without one loads this library, too.
__asm__(".weak _ZTV15HalCallbacksItf");
__asm__(".weak _ZTI15HalCallbacksItf");
__asm__(".weak _ZN15HalCallbacksItfD2Ev");

using calls::Named;
using namespace recorder;

namespace {

std::string Formatted(const char* format, va_list arguments) {
  char text[256];
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(text, sizeof text, format, arguments);
  std::string whole(text, std::min(static_cast<std::size_t>(std::max(length, 0)), sizeof text - 1));
  if (whole.size() < static_cast<std::size_t>(std::max(length, 0))) {
    whole.resize(static_cast<std::size_t>(length));
    static_cast<void>(std::vsnprintf(whole.data(), whole.size() + 1, format, again));
  }
  va_end(again);
  return whole;
}

/// The log object that the module gets: notes a line and passes it on, formatted.
class Log : public HalCallbacksItf {
 public:
  void log(int level, const char* format, ...) override {
    va_list arguments;
    va_start(arguments, format);
    const std::string text = Formatted(format, arguments);
    va_end(arguments);
    if (Within::Here() == Place::kRequest) Recorder::Get().Note([&] { return calls::LogLine{level, text}; });
    const Within platform(Place::kPlatform);
    behind_->log(level, "%s", text.c_str());
  }

  static HalCallbacksItf* InFrontOf(HalCallbacksItf* behind) {
    static Log* const instance = new Log;
    behind_ = behind;
    return instance;
  }

 private:
  static thread_local HalCallbacksItf* behind_;
};

thread_local HalCallbacksItf* Log::behind_ = nullptr;

/// An operation that the platform hands out; the module uses it at once.
template <int kIndex>
class ProtocolControl {
 public:
  static fm_vlan_proto_ctrl_t InFrontOf(fm_vlan_proto_ctrl_t behind) {
    if (Within::Here() != Place::kRequest || !behind) return behind;
    the_next[kIndex] = reinterpret_cast<void*>(behind);
    return [](int unit, unsigned short vlan_id) { return Plain<kIndex, int>(unit, vlan_id); };
  }
};

}  // namespace

namespace {

HalCallbacksItf* NotedCallbacks() {
  constexpr int kIndex = Named("HalCallbacksItf::getInstance");
  HalCallbacksItf* const callbacks = NotedPlain<kIndex, HalCallbacksItf*>();
  return callbacks ? Log::InFrontOf(callbacks) : callbacks;
}

HalBcmCommon* NotedCommon() {
  constexpr int kIndex = Named("HalBcmCommon::GetInstance");
  // Seen before it is noted: the recording's header tells the unit that it holds.
  HalBcmCommon* const common = reinterpret_cast<HalBcmCommon* (*)()>(Next(kIndex))();
  Recorder::Get().See(common);
  Recorder::Get().Note([] { return calls::Call{&calls::kFunctions[kIndex], {}}; });
  return common;
}

}  // namespace

HalCallbacksItf* HalCallbacksItf::getInstance() {
  return Way<Named("HalCallbacksItf::getInstance"), NotedCallbacks>::Go();
}

HalBcmCommon* HalBcmCommon::GetInstance() { return Way<Named("HalBcmCommon::GetInstance"), NotedCommon>::Go(); }

extern "C" {

fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_slot_t slot) {
  return ProtocolControl<Named("vlan_proto_ctrl_enable")>::InFrontOf(
      Plain<Named("fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable"), fm_vlan_proto_ctrl_t>(slot));
}
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_slot_t slot) {
  return ProtocolControl<Named("vlan_proto_ctrl_disable")>::InFrontOf(
      Plain<Named("fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable"), fm_vlan_proto_ctrl_t>(slot));
}
}

// Under its linker name: defined as the class's first virtual function it would bring the class's virtual table, which
// is the platform's to define.
#if _GLIBCXX_USE_CXX11_ABI
std::string IntfText(const IntfObject* intf, bool deep) __asm__("_ZNK10IntfObject8ToStringB5cxx11Eb");
#else
std::string IntfText(const IntfObject* intf, bool deep) __asm__("_ZNK10IntfObject8ToStringEb");
#endif
#pragma GCC visibility push(default)
std::string IntfText(const IntfObject* intf, bool deep) {
  return Member<Named("IntfObject::ToString"), std::string>(intf, deep);
}
#pragma GCC visibility pop
