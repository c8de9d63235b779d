#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "bcm/error.h"
#include "calls/Value.h"

using namespace calls;

namespace {

std::string Status(int rv) { return Text(Kind::kStatus, ToValue(rv)); }

/// What is left of the text behind the value, and the value's own text.
std::string ReadAndWritten(Kind kind, std::string_view text) {
  const auto value = Read(kind, &text);
  return value ? Text(kind, *value) + '|' + std::string(text) : "nothing";
}

}  // namespace

TEST(AStatus, CarriesItsName) {
  EXPECT_EQ(Status(0), "0");
  EXPECT_EQ(Status(100001), "100001");
  EXPECT_EQ(Status(BCM_E_PARAM), "-4 (Invalid parameter)");
  EXPECT_EQ(Status(BCM_E_PORT), "-18 (No such port)");
  EXPECT_EQ(Status(-19), "-19 (Unknown error)");
  EXPECT_EQ(Status(std::numeric_limits<int>::min()), "-2147483648 (Unknown error)");
}

TEST(AStatus, HasATextOfItsOwn) {
  std::set<std::string> texts;
  for (int status = 0; status < 20; ++status) texts.insert(_shr_errmsg[status]);
  EXPECT_EQ(texts.size(), 20u);
}

TEST(AMacAddress, IsWrittenByteByByte) {
  const unsigned char mac[6] = {0x00, 0x0a, 0xff, 0x10, 0x01, 0xab};
  EXPECT_EQ(Text(Kind::kMac, ToValue(mac)), "00:0a:ff:10:01:ab");
  EXPECT_EQ(Text(Kind::kMac, ToValue(static_cast<const unsigned char*>(nullptr))), "null");
}

TEST(AMacAddress, IsCopied) {
  unsigned char mac[6] = {1, 2, 3, 4, 5, 6};
  const Value value = ToValue(mac);
  mac[0] = 0xFF;
  EXPECT_EQ(Text(Kind::kMac, value), "01:02:03:04:05:06");
}

TEST(Numbers, ReadAsTheirKindSays) {
  EXPECT_EQ(Text(Kind::kLabel, ToValue(0U)), "0");
  EXPECT_EQ(Text(Kind::kLabel, ToValue(0xFFFFFU)), "1048575");
  EXPECT_EQ(Text(Kind::kLabel, ToValue(0xFFFFFFFFU)), "none");
  EXPECT_EQ(Text(Kind::kNumber, ToValue(0xFFFFFFFFU)), "4294967295");
  EXPECT_EQ(Text(Kind::kNumber, ToValue(-1)), "-1");
  EXPECT_EQ(Text(Kind::kHex, ToValue(0xFFFFFFFFU)), "0xffffffff");
  EXPECT_EQ(Text(Kind::kBool, ToValue(true)), "true");
}

TEST(ALimId, IsItsWordWhereNobodyKnowsTheEncoding) {
  EXPECT_EQ(Text(Kind::kLimId, ToValue(limid_t{0})), "0x0");
  EXPECT_EQ(Text(Kind::kLimId, ToValue(limid_t{0xAB00002A})), "0xab00002a");
}

TEST(Enumerators, HaveNamesAndOtherNumbersAreNumbers) {
  EXPECT_EQ(Text(Kind::kLimIdType, ToValue(limid_type_ethernet)), "ethernet");
  EXPECT_EQ(Text(Kind::kLimIdType, ToValue(limid_type_cpuport)), "cpuport");
  EXPECT_EQ(Text(Kind::kLimIdType, ToValue(limid_type_l3_vlan)), "l3_vlan");
  EXPECT_EQ(Text(Kind::kLimIdType, ToValue(9)), "unknown");
  EXPECT_EQ(Text(Kind::kTunnelType, ToValue(TunnelObject::kTunnelTypeNone)), "none");
  EXPECT_EQ(Text(Kind::kTunnelType, ToValue(7)), "7");
  EXPECT_EQ(Text(Kind::kSwitchControl, ToValue(7)), "7");
}

TEST(LabelArrays, AreReadOnlyAsFarAsAnInitiatorGoes) {
  const bcm_mpls_egress_label_t records[2] = {{1, 100, 0, 0, 255}, {1, 200, 0, 0, 255}};
  EXPECT_EQ(Text(Kind::kLabels, ToValue(LabelArray{records, 9})), Text(Kind::kLabels, ToValue(LabelArray{records, 2})));
  EXPECT_EQ(Text(Kind::kLabels, ToValue(LabelArray{records, -1})), "[]");
  EXPECT_EQ(Text(Kind::kLabels, ToValue(LabelArray{nullptr, 1})), "null");
}

TEST(EveryKind, IsReadBackAsItIsWritten) {
  const std::pair<Kind, const char*> written[] = {
      {Kind::kNumber, "-12"},
      {Kind::kHex, "0xffffffff"},
      {Kind::kBool, "false"},
      {Kind::kStatus, "-4 (Invalid parameter)"},
      {Kind::kStatus, "7"},
      {Kind::kMac, "00:0a:ff:10:01:ab"},
      {Kind::kMac, "null"},
      {Kind::kLabel, "none"},
      {Kind::kLabel, "16"},
      {Kind::kLabels, "[]"},
      {Kind::kLabels, "null"},
      {Kind::kLabels,
       "[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}, {flags=0x1, label=none, qos_map=-1, exp=7, ttl=64}]"},
      {Kind::kLimId, "0x5000001"},
      {Kind::kLimIdType, "l3_vlan"},
      {Kind::kSwitchControl, "bcmSwitchL3IngressMode"},
      {Kind::kSwitchControl, "9"},
      {Kind::kTunnelType, "mpls"},
  };
  for (const auto& [kind, text] : written) {
    EXPECT_EQ(ReadAndWritten(kind, std::string(text) + ", next"), std::string(text) + "|, next");
  }
  EXPECT_EQ(ReadAndWritten(Kind::kText, "all, of it)"), "all, of it)|");
}

TEST(EveryKind, IsNotReadFromWhatItIsNot) {
  const std::pair<Kind, const char*> wrong[] = {
      {Kind::kNumber, ""},
      {Kind::kNumber, "x"},
      {Kind::kNumber, "99999999999999999999"},
      {Kind::kHex, "12"},
      {Kind::kBool, "maybe"},
      {Kind::kMac, "00:0a:ff:10:01"},
      {Kind::kMac, "0g:0a:ff"},
      {Kind::kMac, "0:0a:ff:1:1:1"},
      {Kind::kLabels, "[{flags=0x1, label=1}]"},
      {Kind::kLabels, "[{flags"},
      {Kind::kLabels, "["},
      {Kind::kLimId, "eth1"},
      {Kind::kLimId, "0x1ffffffff"},
      {Kind::kTunnelType, "ip"},
  };
  for (const auto& [kind, text] : wrong) EXPECT_EQ(ReadAndWritten(kind, text), "nothing") << text;
}
