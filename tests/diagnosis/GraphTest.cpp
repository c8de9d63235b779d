#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "diagnosis/Attempt.h"
#include "diagnosis/Graph.h"
#include "tests/diagnosis/Setups.h"
#include "tests/scenario/Parsed.h"

namespace {

using Lines = std::vector<std::string>;

class APicture : public testing::Test {
 protected:
  /// Of the card after these lines.
  std::string After(Lines lines, std::optional<unsigned> destination = {}) {
    const std::string last = lines.back();
    lines.pop_back();
    softcard::Card& card = softcard::Card::Get();
    diagnosis::Ledger ledger;
    diagnosis::Try(TheLanguage(), card, {lines, last}, &ledger);
    return diagnosis::Dot(card, ledger, diagnosis::Audit(card, ledger), destination);
  }
};

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

}  // namespace

TEST_F(APicture, HasVrfsVlansDestinationsAndPorts) {
  const std::string dot = After({VLAN, "install-host 20 vlan=10 lim=cpu mac=02:00:00:00:00:09", PUSH});
  EXPECT_TRUE(Has(dot, R"("vrf 1" -> "vlan 100")"));
  EXPECT_TRUE(Has(dot, R"([label="VLAN 100\ndestination 10\nintf 1, MTU 1500"])"));
  EXPECT_TRUE(Has(dot, R"("vlan 100" -> "box 20")"));
  EXPECT_TRUE(Has(dot, R"("box 20" -> "port cpu")"));
  EXPECT_TRUE(Has(dot, R"("box 30" [label="push of 2 labels 30"])"));
  EXPECT_TRUE(Has(dot, R"("box 30" -> "port eth2" [label="200 / 100"])"));
  EXPECT_FALSE(Has(dot, "color"));
}

TEST_F(APicture, NamesEveryKindOfTunnel) {
  for (const auto& [rest, kind] :
       std::vector<std::pair<std::string, std::string>>{{"labels=16 caps=swap", "swap 30"},
                                                        {"labels=16,300 caps=swap", "swap, in a tunnel 30"},
                                                        {"caps=forward", "forward 30"},
                                                        {"labels=500 caps=vc", "VC label 30"},
                                                        {"labels=100 caps=push action=drop", "push of 1 label 30"}}) {
    const std::string dot = After({VLAN, "install-mpls 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 " + rest});
    EXPECT_TRUE(Has(dot, "label=\"" + kind + '"')) << dot;
  }
}

TEST_F(APicture, ShowsFindingsInRed) {
  const std::string moved = After({VLAN, HOST, "replace-vlan 10 lim=vlan200 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"});
  EXPECT_TRUE(Has(moved, R"(host 20\nits egress object is on VLAN 100, its interface on VLAN 200", color="#b00020")"));
  EXPECT_TRUE(Has(moved, R"("loose station 100" [label="station 100\nno record accounts for it", color="#b00020")"));
  const std::string gone = After({VLAN, HOST, "destroy-vlan 10"});
  EXPECT_TRUE(Has(gone, R"("vlan 100" [label="VLAN 100\nof no destination")"));
  EXPECT_TRUE(Has(After({VLAN, "destroy-vrf 1"}), R"(label="VRF 1\nis gone")"));
}

TEST_F(APicture, FoldsDestinationsThatAreAlike) {
  const auto hosts = [](unsigned count, const std::string& port) {
    Lines lines = {VLAN};
    for (unsigned id = 1000; id < 1000 + count; ++id) {
      const std::string lim = port + std::to_string(1 + id % 8);
      lines.push_back("install-host " + std::to_string(id) + " vlan=10 lim=" + lim + " mac=02:00:00:00:00:09");
    }
    return lines;
  };
  EXPECT_EQ(Count(After(hosts(60, "eth")), "host 1"), 60U);
  EXPECT_TRUE(Has(After(hosts(400, "eth")), "[label=\"host 1000 ... 1392 (50)\"]"));
  Lines lines = hosts(400, "eth");
  for (unsigned vlan = 2; vlan < 11; ++vlan) {
    const std::string text = std::to_string(vlan);
    lines.push_back(std::string("install-vlan ")
                        .append(text)
                        .append(" lim=vlan")
                        .append(text)
                        .append(" vrf=1 mtu=1500 mac=00:00:5e:00:01:01"));
    for (unsigned port = 1; port < 9; ++port) {
      const std::string digit = std::to_string(port);
      std::string line = "install-host ";
      line.append(text).append("0").append(digit).append(" vlan=").append(text).append(" lim=eth").append(digit);
      lines.push_back(line.append(" mac=02:00:00:00:00:09"));
    }
  }
  lines.erase(std::remove_if(lines.begin(), lines.end(),
                             [](const std::string& line) { return line.rfind("install-vlan 10 lim=vlan10 ", 0) == 0; }),
              lines.end());
  const std::string dot = After(lines);
  EXPECT_TRUE(Has(dot, "host 1000 ... 1399 (400)\\neth1 ... eth8 (8 ports)")) << dot;
  EXPECT_LT(Count(dot, "label="), 30U);
}

TEST_F(APicture, OfOneDestinationHasItsObjects) {
  const Lines lines = {VLAN, HOST, PUSH};
  const std::string dot = After(lines, 30);
  EXPECT_TRUE(Has(dot, R"("vlan 100" -> "intf")"));
  EXPECT_TRUE(Has(dot, R"("intf" -> "destination 30")"));
  EXPECT_TRUE(Has(dot, R"("egress" [label="egress 100002\nto 02:00:00:00:00:09"])"));
  EXPECT_TRUE(Has(dot, R"("egress" -> "port eth2" [label="200 / 100"])"));
  EXPECT_FALSE(Has(dot, "destination 20"));
  EXPECT_TRUE(Has(After(lines, 20), R"("vlan 100" -> "destination 20")"));
  EXPECT_TRUE(Has(After(lines, 10), R"("vrf 1" -> "vlan 100")"));
  EXPECT_THROW(After(lines, 99), std::invalid_argument);
}
