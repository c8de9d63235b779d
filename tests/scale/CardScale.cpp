// What the software card makes of a large card: a destination's life at a thousand and at a million others, memory, and
// packets a second of processor time. Prints a number a line: "card host install 1000 812.0" is nanoseconds a request.

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <numeric>
#include <random>
#include <vector>

#include "HalL3MplsEncapsulationInterface.h"
#include "softcard/Card.h"
#include "softcard/packets/StoryText.h"
#include "softcard/packets/Way.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned int kVlanDestination = 1;
unsigned char mac[6] = {2, 0, 0, 0, 0, 1};

HalL3MplsEncapsulationInterface& Module() { return *HalL3MplsEncapsulationInterface::GetInstance(); }

softcard::CardDescription CardFor(unsigned int destinations) {
  softcard::CardDescription description;
  description.intfs = description.egresses = description.initiators = destinations + 1;
  return description;
}

void Expect(bool held, const char* what) {
  if (!held) {
    std::cerr << "card_scale: " << what << " failed\n";
    std::exit(1);
  }
}

void Reset(unsigned int destinations) {
  softcard::Card& card = softcard::Card::Get();
  card.Reset(CardFor(destinations));
  const softcard::Record record(card.log(), softcard::CallLog::Recording::kNothing);
  Expect(Module().InstallVrf(1) == 0, "the VRF");
  Expect(Module().InstallVlanOutgoingEncapsulation(kVlanDestination, softcard::LimId("vlan100"), 1, 1500, mac, {}) == 0,
         "the VLAN");
}

template <typename Request>
double Nanoseconds(const std::vector<unsigned int>& ids, const char* what, const Request& request) {
  const auto start = Clock::now();
  for (const unsigned int id : ids) Expect(request(id) == 0, what);
  return std::chrono::duration<double, std::nano>(Clock::now() - start).count();
}

template <typename Installer, typename Replacer, typename Destroyer>
void MeasureLife(const char* kind, unsigned int destinations, const Installer& install, const Replacer& replace,
                 const Destroyer& destroy) {
  Reset(destinations);
  std::vector<unsigned int> ids(destinations);
  std::iota(ids.begin(), ids.end(), kVlanDestination + 1);
  std::seed_seq seed{1};
  std::shuffle(ids.begin(), ids.end(), std::mt19937(seed));

  const unsigned int rounds = 1 + 100000 / destinations;
  double installs = 0, replaces = 0, destroys = 0;
  std::size_t bytes = 0;
  for (unsigned int round = 0; round < rounds; ++round) {
    const auto before = mallinfo2().uordblks;
    installs += Nanoseconds(ids, "an install", install);
    bytes = mallinfo2().uordblks - before;
    replaces += Nanoseconds(ids, "a replace", replace);
    destroys += Nanoseconds(ids, "a destroy", destroy);
    Expect(softcard::Card::Get().RowCount("egresses") == 0, "leaving no egress object behind");
  }
  const double requests = static_cast<double>(rounds) * destinations;
  std::printf("card %s install %u %.1f\n", kind, destinations, installs / requests);
  std::printf("card %s replace %u %.1f\n", kind, destinations, replaces / requests);
  std::printf("card %s destroy %u %.1f\n", kind, destinations, destroys / requests);
  std::printf("card %s memory %u %zu\n", kind, destinations, bytes / destinations);
}

void MeasurePackets() {
  constexpr unsigned int kPackets = 100000;
  Reset(1);
  Expect(Module().InstallMplsUnprotectedOutgoingEncapsulation(2, kVlanDestination, softcard::LimId("eth1"), mac,
                                                              {100, 200}, {HAL_MPLS_CAPABILITY_PUSH},
                                                              HAL_ACTION_NONE) == 0,
         "the tunnel");
  const softcard::Card& card = softcard::Card::Get();
  const softcard::Bytes ip = {0x45, 0, 0, 20, 0, 0, 0, 0, 63, 17, 0x8f, 0xa3, 192, 0, 2, 1, 198, 51, 100, 1};
  softcard::Bytes frame;
  const std::clock_t start = std::clock();
  for (unsigned int i = 0; i < kPackets; ++i) {
    softcard::StoryLines story(card.tables().ports);
    const auto way = softcard::Send(card.tables(), card.common().destination_id_correlators, 2, softcard::Carried::kIp,
                                    ip, &frame, &story);
    Expect(way.fate == softcard::Way::Fate::kSent, "sending a packet");
  }
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  std::printf("card packets-per-second %.0f\n", kPackets / seconds);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<unsigned int> sizes;
  for (int i = 1; i < argc; ++i) sizes.push_back(static_cast<unsigned int>(std::strtoul(argv[i], nullptr, 10)));
  if (sizes.empty() || std::count(sizes.begin(), sizes.end(), 0U) != 0) {
    std::cerr << "usage: " << argv[0] << " DESTINATIONS...   (for example 1000 1000000)\n";
    return 2;
  }
  const limid_t port = softcard::LimId("eth1");
  for (const unsigned int destinations : sizes) {
    MeasureLife(
        "host", destinations,
        [&](unsigned int id) { return Module().InstallHostOutgoingEncapsulation(id, kVlanDestination, port, {}, mac); },
        [&](unsigned int id) { return Module().ReplaceHostOutgoingEncapsulation(id, kVlanDestination, port, {}, mac); },
        [](unsigned int id) { return Module().DestroyHostOutgoingEncapsulation(id); });
    MeasureLife(
        "push-2", destinations,
        [&](unsigned int id) {
          return Module().InstallMplsUnprotectedOutgoingEncapsulation(id, kVlanDestination, port, mac, {100, 200},
                                                                      {HAL_MPLS_CAPABILITY_PUSH}, HAL_ACTION_NONE);
        },
        [&](unsigned int id) {
          return Module().ReplaceMplsUnprotectedOutgoingEncapsulation(id, kVlanDestination, port, mac, {300, 400},
                                                                      {HAL_MPLS_CAPABILITY_PUSH}, HAL_ACTION_NONE);
        },
        [](unsigned int id) { return Module().DestroyMplsUnprotectedOutgoingEncapsulation(id); });
  }
  MeasurePackets();
}
