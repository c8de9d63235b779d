#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "bcm/error.h"
#include "softcard/tables/RouteTable.h"

namespace {

using softcard::IpAddress;
using softcard::Prefix;
using softcard::RouteTable;
using Version = IpAddress::Version;

IpAddress Address(const std::string& text) {
  IpAddress address;
  address.version = text.find(':') == std::string::npos ? Version::k4 : Version::k6;
  EXPECT_EQ(inet_pton(address.version == Version::k4 ? AF_INET : AF_INET6, text.c_str(), address.bytes.data()), 1);
  return address;
}
Prefix Of(const std::string& text, unsigned int length) { return {Address(text), length}; }

/// "24: 7", the length of the prefix and the destination; "none".
std::string Found(const RouteTable& routes, unsigned int vrf, const std::string& text) {
  const IpAddress address = Address(text);
  const auto route = routes.Find(vrf, address.version, address.bytes.data());
  return route.value ? std::to_string(route.length) + ": " + std::to_string(*route.value) : "none";
}

TEST(RouteTableTest, TheLongestPrefixCounts) {
  RouteTable routes(10);
  EXPECT_EQ(routes.Set(1, Of("0.0.0.0", 0), 1), BCM_E_NONE);
  EXPECT_EQ(routes.Set(1, Of("10.0.0.0", 8), 2), BCM_E_NONE);
  EXPECT_EQ(routes.Set(1, Of("10.1.0.0", 16), 3), BCM_E_NONE);
  EXPECT_EQ(routes.Set(1, Of("10.1.2.128", 25), 4), BCM_E_NONE);
  EXPECT_EQ(routes.Set(1, Of("10.1.2.255", 32), 5), BCM_E_NONE);
  EXPECT_EQ(Found(routes, 1, "9.255.255.255"), "0: 1");
  EXPECT_EQ(Found(routes, 1, "10.255.255.255"), "8: 2");
  EXPECT_EQ(Found(routes, 1, "10.1.2.127"), "16: 3");
  EXPECT_EQ(Found(routes, 1, "10.1.2.254"), "25: 4");
  EXPECT_EQ(Found(routes, 1, "10.1.2.255"), "32: 5");
  EXPECT_EQ(routes.count(), 5U);
}

TEST(RouteTableTest, Ipv6HasRoutesOfItsOwn) {
  RouteTable routes(10);
  routes.Set(1, Of("::", 0), 1);
  routes.Set(1, Of("2001:db8::", 32), 2);
  routes.Set(1, Of("2001:db8:0:1::", 64), 3);
  routes.Set(1, Of("2001:db8::1", 128), 4);
  EXPECT_EQ(Found(routes, 1, "2001:db7::1"), "0: 1");
  EXPECT_EQ(Found(routes, 1, "2001:db8::2"), "32: 2");
  EXPECT_EQ(Found(routes, 1, "2001:db8:0:1:ffff::"), "64: 3");
  EXPECT_EQ(Found(routes, 1, "2001:db8::1"), "128: 4");
  EXPECT_EQ(Found(routes, 1, "32.1.13.184"), "none");
}

TEST(RouteTableTest, AVrfKnowsNothingOfAnother) {
  RouteTable routes(10);
  routes.Set(1, Of("10.0.0.0", 8), 1);
  routes.Set(0xFFFFFFFF, Of("10.0.0.0", 8), 2);
  EXPECT_EQ(Found(routes, 1, "10.0.0.1"), "8: 1");
  EXPECT_EQ(Found(routes, 0xFFFFFFFF, "10.0.0.1"), "8: 2");
  EXPECT_EQ(Found(routes, 0, "10.0.0.1"), "none");
}

TEST(RouteTableTest, ASecondDestinationTakesTheFirstOnesPlace) {
  RouteTable routes(1);
  routes.Set(1, Of("10.0.0.0", 8), 1);
  EXPECT_EQ(routes.Set(1, Of("10.0.0.0", 8), 0xFFFFFFFF), BCM_E_NONE);
  EXPECT_EQ(Found(routes, 1, "10.0.0.1"), "8: 4294967295");
  EXPECT_EQ(routes.count(), 1U);
}

TEST(RouteTableTest, RefusalsLeaveTheTableAsItWas) {
  RouteTable routes(2);
  EXPECT_EQ(routes.Set(1, Of("10.0.0.0", 33), 1), BCM_E_PARAM);
  EXPECT_EQ(routes.Set(1, Of("::", 129), 1), BCM_E_PARAM);
  EXPECT_EQ(routes.Set(1, Of("10.0.0.1", 8), 1), BCM_E_PARAM) << "bits behind the prefix";
  EXPECT_EQ(routes.Set(1, Of("10.0.0.0", 8), 1), BCM_E_NONE);
  EXPECT_EQ(routes.Set(1, Of("::", 0), 2), BCM_E_NONE);
  EXPECT_EQ(routes.Set(1, Of("11.0.0.0", 8), 3), BCM_E_FULL);
  EXPECT_EQ(routes.Set(2, Of("10.0.0.0", 8), 3), BCM_E_FULL);
  EXPECT_EQ(routes.Delete(1, Of("11.0.0.0", 8)), BCM_E_NOT_FOUND);
  EXPECT_EQ(routes.Delete(1, Of("10.0.0.0", 9)), BCM_E_NOT_FOUND);
  EXPECT_EQ(routes.Delete(2, Of("10.0.0.0", 8)), BCM_E_NOT_FOUND);
  EXPECT_EQ(routes.Delete(1, Of("10.0.0.1", 8)), BCM_E_PARAM);
  EXPECT_EQ(softcard::Texts(routes.Rows()),
            (std::vector<std::string>{"route 10.0.0.0/8: vrf=1 destination=1", "route ::/0: vrf=1 destination=2"}));
  EXPECT_EQ(routes.Delete(1, Of("10.0.0.0", 8)), BCM_E_NONE);
  EXPECT_EQ(Found(routes, 1, "10.0.0.1"), "none");
  EXPECT_EQ(Found(routes, 1, "::1"), "0: 2");
}

TEST(RouteTableTest, RowsComeInTheOrderOfVrfVersionAndAddress) {
  RouteTable routes(10);
  routes.Set(2, Of("10.0.0.0", 8), 1);
  routes.Set(1, Of("2001:db8::", 32), 2);
  routes.Set(1, Of("192.0.2.128", 25), 3);
  routes.Set(1, Of("192.0.2.0", 24), 4);
  routes.Set(1, Of("192.0.2.128", 32), 5);
  routes.Set(1, Of("0.0.0.0", 0), 6);
  routes.Set(1, Of("2001:db8::3", 128), 7);
  EXPECT_EQ(softcard::Texts(routes.Rows()), (std::vector<std::string>{
                                                "route 0.0.0.0/0: vrf=1 destination=6",
                                                "route 192.0.2.0/24: vrf=1 destination=4",
                                                "route 192.0.2.128/25: vrf=1 destination=3",
                                                "route 192.0.2.128/32: vrf=1 destination=5",
                                                "route 2001:db8::/32: vrf=1 destination=2",
                                                "route 2001:db8::3/128: vrf=1 destination=7",
                                                "route 10.0.0.0/8: vrf=2 destination=1",
                                            }));
}

/// Routes as a list: what a table has to do, without a thought of speed.
struct List {
  std::map<std::string, std::pair<Prefix, unsigned int>> rows;

  std::string Found(const IpAddress& address) const {
    const Prefix* best = nullptr;
    unsigned int destination = 0;
    for (const auto& row : rows) {
      const Prefix& prefix = row.second.first;
      const bool covers = prefix.address.version == address.version &&
                          Prefix::Around(address, prefix.length).address.bytes == prefix.address.bytes;
      if (covers && (!best || prefix.length > best->length)) best = &prefix, destination = row.second.second;
    }
    return best ? std::to_string(best->length) + ": " + std::to_string(destination) : "none";
  }
};

TEST(RouteTableTest, AnyOrderOfChangesGivesWhatAListWouldAndACopyStaysAsItWas) {
  std::seed_seq seed{11};
  std::mt19937 random(seed);
  for (const Version version : {Version::k4, Version::k6}) {
    RouteTable routes(100000);
    List list;
    const auto random_address = [&] {
      IpAddress address;
      address.version = version;
      // Few values, so that prefixes lie in each other.
      for (unsigned int i = 0; i < IpAddress::Bytes(version); ++i) {
        address.bytes[i] = static_cast<unsigned char>(random() % 3 == 0 ? random() : random() % 2);
      }
      return address;
    };
    for (int i = 0; i < 3000; ++i) {
      const IpAddress address = random_address();
      const Prefix prefix = Prefix::Around(address, static_cast<unsigned int>(random() % (address.bits() + 1)));
      const auto row = list.rows.begin();
      if (random() % 3 == 0 && row != list.rows.end()) {
        auto victim = row;
        std::advance(victim, static_cast<long>(random() % list.rows.size()));
        ASSERT_EQ(routes.Delete(1, victim->second.first), BCM_E_NONE);
        list.rows.erase(victim);
      } else {
        ASSERT_EQ(routes.Set(1, prefix, static_cast<unsigned int>(i)), BCM_E_NONE);
        list.rows[Text(prefix)] = {prefix, static_cast<unsigned int>(i)};
      }
      const IpAddress asked = random_address();
      const auto route = routes.Find(1, version, asked.bytes.data());
      const std::string found =
          route.value ? std::to_string(route.length) + ": " + std::to_string(*route.value) : "none";
      ASSERT_EQ(found, list.Found(asked)) << Text(asked) << " after " << i << " changes";
    }
    ASSERT_EQ(routes.Rows().size(), list.rows.size());
    const RouteTable copy = routes;
    const auto before = softcard::Texts(copy.Rows());
    while (!list.rows.empty()) {
      ASSERT_EQ(routes.Delete(1, list.rows.begin()->second.first), BCM_E_NONE);
      list.rows.erase(list.rows.begin());
    }
    EXPECT_EQ(routes.count(), 0U);
    EXPECT_TRUE(routes.Rows().empty());
    EXPECT_EQ(softcard::Texts(copy.Rows()), before);
  }
}

/// Prefixes of at most 32 bits by length and value, asked length by length: enough for a table of thousands.
struct ByLength {
  std::map<std::pair<unsigned int, uint32_t>, unsigned int> rows;

  static uint32_t Kept(uint32_t word, unsigned int length) {
    return length == 0 ? 0 : word & ~uint32_t{0} << (32 - length);
  }

  std::string Found(uint32_t word) const {
    for (unsigned int length = 33; length-- > 0;) {
      const auto row = rows.find({length, Kept(word, length)});
      if (row != rows.end()) return std::to_string(length) + ": " + std::to_string(row->second);
    }
    return "none";
  }
};

TEST(RouteTableTest, ATableThatGrowsLargeAndShrinksAndGrowsAgainGivesWhatAListWould) {
  std::seed_seq seed{12};
  std::mt19937 random(seed);
  for (const Version version : {Version::k4, Version::k6}) {
    RouteTable routes(100000);
    ByLength list;
    // In the other version, so that the VRF's trees stay when this one is empty.
    ASSERT_EQ(routes.Set(1, version == Version::k4 ? Of("::", 0) : Of("0.0.0.0", 0), 1), BCM_E_NONE);
    const auto address_of = [&](uint32_t word) {
      IpAddress address;
      address.version = version;
      for (unsigned int i = 0; i < 4; ++i) address.bytes[i] = static_cast<unsigned char>(word >> (24 - 8 * i));
      return address;
    };
    for (const int inserts_of_ten : {10, 0, 7}) {
      for (unsigned int change = 0; change < 8000; ++change) {
        uint32_t word = static_cast<uint32_t>(random());
        if (static_cast<int>(random() % 10) < inserts_of_ten) {
          const unsigned int length = 10 + static_cast<unsigned int>(random() % 23);
          ASSERT_EQ(routes.Set(1, Prefix::Around(address_of(word), length), change), BCM_E_NONE);
          list.rows[{length, ByLength::Kept(word, length)}] = change;
        } else if (!list.rows.empty()) {
          auto row = list.rows.lower_bound({10 + random() % 23, word});
          if (row == list.rows.end()) row = list.rows.begin();
          word = row->first.second;
          ASSERT_EQ(routes.Delete(1, {address_of(word), row->first.first}), BCM_E_NONE);
          list.rows.erase(row);
        }
        for (const uint32_t asked : {word, word ^ 0x00100000, word ^ 1, static_cast<uint32_t>(random())}) {
          const auto route = routes.Find(1, version, address_of(asked).bytes.data());
          const std::string found =
              route.value ? std::to_string(route.length) + ": " + std::to_string(*route.value) : "none";
          ASSERT_EQ(found, list.Found(asked)) << std::hex << asked << " after " << change << " changes";
          routes.Prefetch(1, version, address_of(asked).bytes.data());
        }
      }
      if (inserts_of_ten == 0) {
        EXPECT_EQ(routes.count(), 1U);
      }
    }
    for (auto& [prefix, destination] : list.rows) {
      ASSERT_EQ(routes.Set(1, {address_of(prefix.second), prefix.first}, ++destination), BCM_E_NONE);
      const auto route = routes.Find(1, version, address_of(prefix.second).bytes.data());
      ASSERT_EQ(std::to_string(route.length) + ": " + std::to_string(*route.value), list.Found(prefix.second));
    }
  }
}

}  // namespace
