#include <limits>
#include <set>

#include "calls/Text.h"
#include "tests/softcard/OnCard.h"

namespace {

using namespace softcard;

TEST(TextTest, StatusesCarryTheirNames) {
  EXPECT_EQ(StatusText(0), "0");
  EXPECT_EQ(StatusText(100001), "100001");
  EXPECT_EQ(StatusText(BCM_E_PARAM), "-4 (Invalid parameter)");
  EXPECT_EQ(StatusText(BCM_E_PORT), "-18 (No such port)");
  EXPECT_EQ(StatusText(-19), "-19 (Unknown error)");
  EXPECT_EQ(StatusText(std::numeric_limits<int>::min()), "-2147483648 (Unknown error)");
}

TEST(TextTest, EveryStatusHasATextOfItsOwn) {
  std::set<std::string> texts;
  for (int status = 0; status < 20; ++status) {
    texts.insert(_shr_errmsg[status]);
  }
  EXPECT_EQ(texts.size(), 20u);
}

TEST(TextTest, MacAddressesArePrintedByteByByte) {
  const unsigned char mac[6] = {0x00, 0x0a, 0xff, 0x10, 0x01, 0xab};
  EXPECT_EQ(Text(mac), "00:0a:ff:10:01:ab");
  EXPECT_EQ(Text(static_cast<const unsigned char*>(nullptr)), "null");
}

TEST(TextTest, LabelsAndNumbersAreToldApart) {
  EXPECT_EQ(Text(Label{0}), "0");
  EXPECT_EQ(Text(Label{0xFFFFF}), "1048575");
  EXPECT_EQ(Text(Label{0xFFFFFFFF}), "none");
  EXPECT_EQ(Text(0xFFFFFFFFu), "4294967295");
  EXPECT_EQ(Text(Hex{0xFFFFFFFF}), "0xffffffff");
}

TEST(TextTest, ALimIdOfNoKindIsPrintedAsItsWord) {
  EXPECT_EQ(Text(limid_t{0}), "0x0");
  EXPECT_EQ(Text(limid_t{0xAB00002A}), "0xab00002a");
}

TEST(TextTest, EnumeratorsHaveNamesAndOtherNumbersAreNumbers) {
  EXPECT_EQ(Text(limid_type_ethernet), "ethernet");
  EXPECT_EQ(Text(limid_type_cpuport), "cpuport");
  EXPECT_EQ(Text(limid_type_l3_vlan), "l3_vlan");
  EXPECT_EQ(Text(limid_type_unknown), "unknown");
  EXPECT_EQ(Text(static_cast<limid_type_t>(9)), "unknown");
  EXPECT_EQ(Text(TunnelObject::kTunnelTypeNone), "none");
  EXPECT_EQ(Text(static_cast<TunnelObject::EnumTunnelType>(7)), "7");
  EXPECT_EQ(Text(static_cast<bcm_switch_control_t>(7)), "7");
}

TEST(TextTest, NoMoreLabelRecordsAreReadThanAnInitiatorHas) {
  const bcm_mpls_egress_label_t records[2] = {{1, 100, 0, 0, 255}, {1, 200, 0, 0, 255}};
  EXPECT_EQ(Text(LabelRecords{records, 9}), Text(LabelRecords{records, 2}));
  EXPECT_EQ(Text(LabelRecords{records, -1}), "[]");
}

}  // namespace
