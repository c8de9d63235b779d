// How fast packets go through the software card, from memory to memory: frames of 64 bytes that are routed and get two
// labels, with 10^3 to 10^6 IPv4 routes to 64 tunnels, beside copying the same frames: "push-2/100000", "copy".
// Prints also what the routes take in memory. "adds" tells how much of the processor's core the run had: it takes up to
// twice its time while the core's other thread is at work for somebody else, and packets suffer from that as well.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdlib>
#include <cstring>
#include <deque>
#include <iostream>
#include <memory>
#include <random>
#include <string>

#include "bcm/mpls.h"
#include "hal/EgressManager.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/MyStationManager.h"
#include "softcard/Card.h"
#include "softcard/packets/Way.h"

namespace {

using softcard::Bytes;
using softcard::Card;
using softcard::IpAddress;
using softcard::Prefix;

constexpr unsigned int kTunnels = 64;
constexpr unsigned int kVlan = 100;
constexpr unsigned int kVrf = 1;
constexpr std::size_t kFrameSize = 64;
constexpr std::size_t kFrames = 16384;
constexpr std::size_t kAhead = 8;  ///< frames that are known before it is their turn
unsigned char router_mac[6] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x01};
unsigned char next_hop_mac[6] = {0x00, 0x00, 0x5e, 0x00, 0x02, 0x01};

void Expect(bool held, const char* what) {
  if (!held) {
    std::cerr << "packet_rate: " << what << " failed\n";
    std::exit(1);
  }
}

/// A card with tunnels of two labels, whose destinations are 0 to kTunnels - 1.
struct TunnelCard {
  TunnelCard() {
    card.Reset();
    HwEncapsulationResourceManager& manager = *HwEncapsulationResourceManager::GetInstance();
    Expect(manager.ingress_mng()->CreateIngress(0, kVrf, 0) == 0, "the VRF");
    Expect(manager.ingress_mng()->AssociateVlanToVrf(kVlan, kVrf) == 0, "the VLAN's VRF");
    Expect(manager.my_station_mng()->InsertMyStationVlanEntry(kVlan, 4095, router_mac, 0) == 0, "my station");
    for (unsigned int tunnel = 0; tunnel < kTunnels; ++tunnel) {
      const int intf = manager.intf_mng()->CreateIntf(0, kVrf, kVlan, router_mac, 1500, 0);
      bcm_mpls_egress_label_t labels[2] = {{0x11, 1000 + tunnel, 1, 0, 255}, {0x11, 5000 + tunnel, 1, 0, 255}};
      Expect(bcm_mpls_tunnel_initiator_set(0, intf, 2, labels) == 0, "the labels");
      const int egress =
          manager.egress_mng()->CreateEgress(intf, next_hop_mac, kVlan, 0, 1 + static_cast<int>(tunnel % 48),
                                             0xFFFFFFFF, false, false, EXP_LABEL_CONTROL_NONE);
      Expect(egress > 0, "the egress object");
      const int id = static_cast<int>(tunnel);
      correlators.push_back({id, intf, egress});
      records.emplace(id, correlators.back());
    }
  }

  Card& card = Card::Get();
  std::deque<DestinationIdCorrelator> correlators;
  softcard::Records records;
};

/// Prefixes as they are spread in the Internet's table: most of 24 bits, the rest from 8 to 32.
std::vector<Prefix> MakePrefixes(std::size_t count) {
  std::seed_seq seed{3};
  std::mt19937 random(seed);
  std::vector<Prefix> prefixes;
  softcard::RouteTable distinct(static_cast<unsigned int>(count));
  while (distinct.count() < count) {
    const uint32_t word = static_cast<uint32_t>(random());
    const unsigned int length = random() % 10 < 6 ? 24 : 12 + static_cast<unsigned int>(random() % 21);
    unsigned char bytes[4];
    softcard::Put32(bytes, word);
    const Prefix prefix = Prefix::Around(IpAddress::From(IpAddress::Version::k4, bytes), length);
    const unsigned int before = distinct.count();
    distinct.Set(kVrf, prefix, 0);
    if (distinct.count() > before) prefixes.push_back(prefix);
  }
  return prefixes;
}

/// A tagged frame for the first address of a prefix.
void MakeFrame(const Prefix& prefix, unsigned char* frame) {
  std::memset(frame, 0, kFrameSize);
  std::memcpy(frame, router_mac, 6);
  std::memcpy(frame + 6, next_hop_mac, 6);
  softcard::Put16(frame + 12, softcard::kEtherTypeVlan);
  softcard::Put16(frame + 14, kVlan);
  softcard::Put16(frame + 16, softcard::kEtherTypeIpv4);
  unsigned char* const ip = frame + 18;
  ip[0] = 0x45;
  softcard::Put16(ip + 2, kFrameSize - 18);
  ip[8] = 64;
  ip[9] = 17;
  std::memcpy(ip + 16, prefix.address.bytes.data(), 4);
  softcard::Put16(ip + 10, softcard::InternetChecksum(ip, 20));
}

struct Traffic {
  TunnelCard tunnels;
  std::size_t routes = 0;
  std::size_t route_bytes = 0;
  Bytes frames = Bytes(kFrames * kFrameSize);

  void SetRoutes(std::size_t count) {
    if (routes == count) return;
    routes = count;
    const std::vector<Prefix> prefixes = MakePrefixes(count);
    softcard::RouteTable& table = tunnels.card.tables().routes;
    table = softcard::RouteTable(static_cast<unsigned int>(count));
    malloc_trim(0);
    const auto before = mallinfo2();
    unsigned int tunnel = 0;
    for (const Prefix& prefix : prefixes) Expect(table.Set(kVrf, prefix, tunnel++ % kTunnels) == 0, "a route");
    const auto after = mallinfo2();
    route_bytes = (after.uordblks + after.hblkhd) - (before.uordblks + before.hblkhd);
    std::seed_seq seed{4};
    std::mt19937 random(seed);
    for (std::size_t i = 0; i < kFrames; ++i) MakeFrame(prefixes[random() % prefixes.size()], &frames[i * kFrameSize]);
  }
};

Traffic& TheTraffic() {
  static Traffic traffic;
  return traffic;
}

void Push(benchmark::State& state) {
  Traffic& traffic = TheTraffic();
  traffic.SetRoutes(static_cast<std::size_t>(state.range(0)));
  const softcard::Tables& tables = traffic.tunnels.card.tables();
  Bytes out;
  std::size_t i = 0;
  int64_t sent = 0;
  for ([[maybe_unused]] const auto round : state) {
    const softcard::View frame(&traffic.frames[i * kFrameSize], kFrameSize);
    softcard::Prefetch(tables, {&traffic.frames[(i + kAhead) % kFrames * kFrameSize], kFrameSize});
    const softcard::Way way = softcard::Inject(tables, traffic.tunnels.records, 1, frame, &out);
    sent += way.fate == softcard::Way::Fate::kSent ? 1 : 0;
    i = (i + 1) % kFrames;
  }
  if (sent != state.iterations()) state.SkipWithError("a packet was not sent");
  state.SetItemsProcessed(state.iterations());
  state.counters["route_megabytes"] = static_cast<double>(traffic.route_bytes) / 1e6;
}

void Copy(benchmark::State& state) {
  const Traffic& traffic = TheTraffic();
  Bytes out(kFrameSize);
  std::size_t i = 0;
  for ([[maybe_unused]] const auto round : state) {
    std::memcpy(out.data(), &traffic.frames[i * kFrameSize], kFrameSize);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
    i = (i + 1) % kFrames;
  }
  state.SetItemsProcessed(state.iterations());
}

/// Additions that do not wait for each other.
void Adds(benchmark::State& state) {
  uint64_t a = 0, b = 0, c = 0, d = 0;
  for ([[maybe_unused]] const auto round : state) {
    for (int i = 0; i < 64; ++i) {
      ++a, ++b, ++c, ++d;
      asm volatile("" : "+r"(a), "+r"(b), "+r"(c), "+r"(d));  // each of them is done, in a register
    }
  }
}

}  // namespace

BENCHMARK(Push)->Name("push-2")->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(Copy)->Name("copy");
BENCHMARK(Adds)->Name("adds");
BENCHMARK_MAIN();
