#ifndef TESTS_SOFTCARD_ON_CARD_H
#define TESTS_SOFTCARD_ON_CARD_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bcm/error.h"
#include "hal/EgressManager.h"
#include "hal/HalBcmCommon.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/IntfObject.h"
#include "hal/MyStationManager.h"
#include "softcard/Card.h"

using Lines = std::vector<std::string>;

/// Calls the platform's functions on an empty card. The shorthands fill in what a test does not care for.
class OnCard : public ::testing::Test {
 protected:
  OnCard() { card_.Reset(); }
  ~OnCard() override { card_.Reset(); }

  int CreateIntf(unsigned int vlan_id = 100) { return intfs_.CreateIntf(0, 1, vlan_id, router_mac_, 1500, 0); }
  int CreateEgress(int intf, int port = 3) {
    return egresses_.CreateEgress(intf, host_mac_, 100, 0, port, 0xFFFFFFFF, false, false, EXP_LABEL_CONTROL_NONE);
  }
  /// The interface's object; null when there is none.
  IntfObject* Intf(int intf) {
    IntfObject* object = nullptr;
    return intfs_.GetIntfObject(intf, &object) ? object : nullptr;
  }
  Lines Rows(const char* table) const { return softcard::Texts(card_.Rows(table)); }
  Lines Log() { return card_.log().Lines(); }
  /// A text that shows each line on its own, for comparison with a raw string.
  static std::string Shown(const Lines& lines) {
    std::string text = "\n";
    for (const std::string& line : lines) text += line + '\n';
    return text;
  }
  std::string LastLine() { return card_.log().Lines().back(); }

  softcard::Card& card_ = softcard::Card::Get();
  HwEncapsulationResourceManager& manager_ = *HwEncapsulationResourceManager::GetInstance();
  IntfManager& intfs_ = *manager_.intf_mng();
  EgressManager& egresses_ = *manager_.egress_mng();
  IngressManager& ingress_ = *manager_.ingress_mng();
  MyStationManager& stations_ = *manager_.my_station_mng();
  unsigned char router_mac_[6] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x01};
  unsigned char host_mac_[6] = {0x02, 0x00, 0x00, 0x00, 0x00, 0x0a};
};

#endif
