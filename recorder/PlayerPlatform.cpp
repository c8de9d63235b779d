// What the player's platform has besides the functions of Platform.cpp: objects, texts, what is handed out.

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <vector>

#include "bcm/error.h"
#include "hal/HalBcmCommon.h"
#include "hal/HalCallbacksItf.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IntfObject.h"
#include "hal/fm.h"
#include "recorder/Answer.h"
#include "recorder/Words.h"

using calls::Named;
using namespace recorder;

namespace {

constexpr int kStatuses = 20;
char the_words[kStatuses][64] = {"Success",
                                 "Internal error",
                                 "Out of memory",
                                 "Invalid unit",
                                 "Invalid parameter",
                                 "Table empty",
                                 "Table full",
                                 "No such entry",
                                 "Entry exists",
                                 "Timed out",
                                 "Busy",
                                 "Operation failed",
                                 "Disabled",
                                 "Invalid identifier",
                                 "Out of resources",
                                 "Invalid configuration",
                                 "Unavailable",
                                 "Not initialised",
                                 "No such port",
                                 "Unknown error"};

class Log : public HalCallbacksItf {
 public:
  void log(int level, const char* format, ...) override {
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(static_cast<std::size_t>(std::max(length, 0)), '\0');
    va_start(arguments, format);
    static_cast<void>(std::vsnprintf(text.data(), text.size() + 1, format, arguments));
    va_end(arguments);
    Player::Get().Log({level, std::move(text)});
  }
};

template <int kIndex>
int Operate(int unit, unsigned short vlan_id) {
  return Plain<kIndex, int>(unit, vlan_id);
}

}  // namespace

void recorder::SetStatusWords(int status, std::string_view words) {
  constexpr int kUnknown = kStatuses - 1;
  char* const text = the_words[status <= 0 && status >= BCM_E_PORT ? -status : kUnknown];
  text[words.copy(text, sizeof the_words[0] - 1)] = '\0';
}

const char* const _shr_errmsg[kStatuses] = {the_words[0],  the_words[1],  the_words[2],  the_words[3],  the_words[4],
                                            the_words[5],  the_words[6],  the_words[7],  the_words[8],  the_words[9],
                                            the_words[10], the_words[11], the_words[12], the_words[13], the_words[14],
                                            the_words[15], the_words[16], the_words[17], the_words[18], the_words[19]};

HalCallbacksItf::~HalCallbacksItf() = default;

HalCallbacksItf* HalCallbacksItf::getInstance() {
  static_cast<void>(Plain<Named("HalCallbacksItf::getInstance"), int>());
  return The<Log>();
}

bool LimIdLess::operator()(const limid_t& left, const limid_t& right) const { return left.word < right.word; }

HalBcmCommon* HalBcmCommon::GetInstance() {
  static_cast<void>(Plain<Named("HalBcmCommon::GetInstance"), int>());
  return &Player::Get().common();
}

HwEncapsulationResourceManager::~HwEncapsulationResourceManager() = default;
HwObject::HwObject() : vlan_id_(0) {}
HwObject::~HwObject() = default;
TunnelObject::TunnelObject() : type_(kTunnelTypeNone), ttl_(0), mpls_capability_(HAL_MPLS_CAPABILITY_NONE) {}
IntfObject::IntfObject() : id_(0), vrf_(0), macsa_{}, mtu_(0), l3_flags_(0) {}

std::string IntfObject::ToString(bool deep) const {
  return Player::Get().AnswerText(calls::MakeCall(calls::kFunctions[Named("IntfObject::ToString")], calls::Args(deep)));
}

extern "C" {
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_slot_t slot) {
  static_cast<void>(Plain<Named("fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable"), int>(slot));
  return Operate<Named("vlan_proto_ctrl_enable")>;
}
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_slot_t slot) {
  static_cast<void>(Plain<Named("fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable"), int>(slot));
  return Operate<Named("vlan_proto_ctrl_disable")>;
}
}
