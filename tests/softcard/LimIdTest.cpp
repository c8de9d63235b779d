#include <cstring>

#include "hal/limid.h"
#include "tests/softcard/OnCard.h"

namespace {

using softcard::Card;

class LimIdTest : public OnCard {
 protected:
  static std::string NameOf(limid_t limid) {
    char name[64] = {};
    limid_to_intfname(limid, name, sizeof name);
    return name;
  }
  static int TypeOf(limid_t limid) {
    unsigned char type = 0;
    limid_to_type(limid, &type);
    return type;
  }
  static unsigned int IndexOf(limid_t limid) {
    unsigned int index = 0;
    limid_to_ifindex(limid, &index);
    return index;
  }
};

TEST_F(LimIdTest, NamesAndLimIdsTellTheSame) {
  for (const char* const name : {"eth1", "eth48", "eth99", "lag2", "vlan100", "vlan70000", "vlan16777215", "cpu"}) {
    EXPECT_EQ(NameOf(softcard::LimId(name)), name);
  }
  EXPECT_EQ(softcard::LimId("eth3").word, 0x01000003u);
  EXPECT_EQ(softcard::LimId("lag2").word, 0x02000002u);
  EXPECT_EQ(softcard::LimId("cpu").word, 0x03000000u);
  EXPECT_EQ(softcard::LimId("vlan100").word, 0x04000064u);
}

TEST_F(LimIdTest, OtherNamesAreRefused) {
  for (const char* const name : {"", "eth", "eth-1", "eth+1", "eth 1", "eth1x", "eth0x1", "eth16777216",
                                 "eth99999999999", "Eth1", "cpu0", "port1"}) {
    EXPECT_THROW(softcard::LimId(name), std::invalid_argument) << name;
    EXPECT_FALSE(softcard::ReadLimId(name)) << name;
  }
}

TEST_F(LimIdTest, TypeAndIndexAreDecoded) {
  EXPECT_EQ(TypeOf(softcard::LimId("lag2")), limid_type_lag);
  EXPECT_EQ(IndexOf(softcard::LimId("lag2")), 2u);
  EXPECT_EQ(TypeOf(softcard::LimId("cpu")), limid_type_cpuport);
  EXPECT_EQ(IndexOf(softcard::LimId("cpu")), 0u);
  EXPECT_EQ(IndexOf(softcard::LimId("vlan16777215")), 0xFFFFFFu);
}

TEST_F(LimIdTest, ALimIdOfNoKindIsRefusedAndNothingIsWritten) {
  unsigned char type = 77;
  unsigned int index = 77;
  char name[4] = "abc";
  EXPECT_EQ(limid_to_type({5}, &type), BCM_E_PARAM);
  EXPECT_EQ(limid_to_ifindex({5}, &index), BCM_E_PARAM);
  EXPECT_EQ(limid_to_intfname({5}, name, sizeof name), BCM_E_PARAM);
  EXPECT_EQ(type, 77);
  EXPECT_EQ(index, 77u);
  EXPECT_STREQ(name, "abc");
}

TEST_F(LimIdTest, ALimIdOfAnUnknownTypeHasATypeAndAnIndexButNoName) {
  const limid_t limid = {0xAB00002A};
  EXPECT_EQ(TypeOf(limid), 0xAB);
  EXPECT_EQ(IndexOf(limid), 42u);
  EXPECT_EQ(NameOf(limid), "");
  EXPECT_EQ(limid_to_intfname({0x05000001}, nullptr, 64), BCM_E_PARAM);
}

TEST_F(LimIdTest, ANameIsCutToItsBufferAndAlwaysClosed) {
  char name[8];
  std::memset(name, 'x', sizeof name);
  EXPECT_EQ(limid_to_intfname(softcard::LimId("vlan100"), name, 5), BCM_E_NONE);
  EXPECT_STREQ(name, "vlan");
  EXPECT_EQ(name[5], 'x');
  EXPECT_EQ(limid_to_intfname(softcard::LimId("cpu"), name, 7), BCM_E_NONE);
  EXPECT_EQ(std::string(name, 8), std::string("cpu\0###x", 8)) << "what is left of the buffer is rubbish";
  EXPECT_EQ(limid_to_intfname(softcard::LimId("vlan100"), name, 8), BCM_E_NONE);
  EXPECT_STREQ(name, "vlan100");
  EXPECT_EQ(limid_to_intfname(softcard::LimId("vlan100"), name, 1), BCM_E_NONE);
  EXPECT_STREQ(name, "");
  EXPECT_EQ(limid_to_intfname(softcard::LimId("vlan100"), name, 0), BCM_E_PARAM);
}

TEST_F(LimIdTest, PredicatesTellTheTypes) {
  EXPECT_EQ(limid_is_from_type(softcard::LimId("cpu"), limid_type_cpuport), 1);
  EXPECT_EQ(limid_is_from_type(softcard::LimId("lag2"), limid_type_lag), 1);
  EXPECT_EQ(limid_is_from_type(softcard::LimId("eth2"), limid_type_lag), 0);
  EXPECT_EQ(limid_is_from_type_ethernet(softcard::LimId("eth2")), 1);
  EXPECT_EQ(limid_is_from_type_ethernet(softcard::LimId("vlan2")), 0);
}

TEST_F(LimIdTest, VlanIdsMayHaveMoreThan16Bits) {
  EXPECT_EQ(limid_to_l3_vlan_vlanid(softcard::LimId("vlan100")), 100u);
  EXPECT_EQ(limid_to_l3_vlan_vlanid(softcard::LimId("vlan70000")), 70000u);
}

TEST_F(LimIdTest, AreOrderedByTheirBytesMostSignificantFirst) {
  const LimIdLess less;
  EXPECT_TRUE(less({0x00000002}, {0x01000000}));
  EXPECT_TRUE(less({0x7F000000}, {0x80000000}));
  EXPECT_TRUE(less({0x01000001}, {0x01000100}));
  EXPECT_FALSE(less({0x01000001}, {0x01000001}));
  EXPECT_FALSE(less({0xFF000000}, {0x01000000}));
}

TEST_F(LimIdTest, PortTablesHoldEveryPortOnce) {
  HalBcmCommon& common = *HalBcmCommon::GetInstance();
  EXPECT_EQ(common.port_table.size(), 49u);
  EXPECT_EQ(common.port_table.at(softcard::LimId("cpu")), 0);
  EXPECT_EQ(common.port_table.at(softcard::LimId("eth1")), 1);
  EXPECT_EQ(common.port_table.at(softcard::LimId("eth48")), 48);
  EXPECT_EQ(common.lag_table.size(), 8u);
  EXPECT_EQ(common.lag_table.at(softcard::LimId("lag1")), 1001);
  EXPECT_EQ(common.lag_table.at(softcard::LimId("lag8")), 1008);
}

TEST_F(LimIdTest, LagsLieBehindTheEthernetPortsOfAnyCard) {
  softcard::CardDescription description;
  description.front_ports = 2000;
  description.lags = 3;
  card_.Reset(description);
  EXPECT_EQ(HalBcmCommon::GetInstance()->port_table.at(softcard::LimId("eth2000")), 2000);
  EXPECT_EQ(HalBcmCommon::GetInstance()->lag_table.at(softcard::LimId("lag1")), 2001);
  EXPECT_EQ(Rows("lags"), (Lines{"lag 2001: name=lag1", "lag 2002: name=lag2", "lag 2003: name=lag3"}));
}

}  // namespace
