#include "bench/Requests.h"

#include <algorithm>
#include <numeric>
#include <random>

#include "hal/HalBcmCommon.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IntfManager.h"
#include "hal/IntfObject.h"

const char* StepName(Step step) {
  switch (step) {
    case Step::kInstall: return "install";
    case Step::kReplace: return "replace";
    default: return "destroy";
  }
}

const std::vector<Kind>& Kinds() {
  constexpr auto kNone = TunnelObject::kTunnelTypeNone;
  constexpr auto kTunnel = TunnelObject::kTunnelTypeMpls;
  static const std::vector<Kind> kinds = {
      {"vlan", Kind::kVlan, {}, {}, kNone, BareVlan()},
      {"host", Kind::kHost, {}, {}, kNone, BareHost()},
      {"push-1", Kind::kMpls, {kFirstLabel}, {HAL_MPLS_CAPABILITY_PUSH}, kTunnel, BarePush1()},
      {"push-2", Kind::kMpls, {kFirstLabel, kSecondLabel}, {HAL_MPLS_CAPABILITY_PUSH}, kTunnel, BarePush2()},
      {"swap", Kind::kMpls, {kFirstLabel}, {HAL_MPLS_CAPABILITY_SWAP}, kNone, BareSwap()},
      {"swap-tunnel",
       Kind::kMpls,
       {kFirstLabel, kSecondLabel},
       {HAL_MPLS_CAPABILITY_SWAP},
       kTunnel,
       BareSwapIntoTunnel()},
      {"forward", Kind::kMpls, {}, {HAL_MPLS_CAPABILITY_FORWARD}, kTunnel, BareForward()},
      {"vc", Kind::kMpls, {kFirstLabel}, {HAL_MPLS_CAPABILITY_VC_LABEL}, kNone, BareVcLabel()},
  };
  return kinds;
}

void Populate(unsigned int count, Order order) {
  HalBcmCommon& common = *HalBcmCommon::GetInstance();
  constexpr unsigned int kPorts = 48;
  for (unsigned int port = 1; port <= kPorts; ++port) {
    common.port_table[limid_t{port}] = port == kPortLimId.word ? kPort : 0;
  }

  Correlators& correlators = common.destination_id_correlators;
  for (const auto& [id, record] : correlators) delete &record;
  correlators.clear();
  const auto insert = [&correlators](unsigned int destination_id) {
    const auto id = static_cast<int>(destination_id);
    correlators.emplace(id, *new DestinationIdCorrelator{id, 1, 2});
  };
  insert(kVlanDestination);
  std::vector<unsigned int> ids(count);
  std::iota(ids.begin(), ids.end(), 1);
  if (order == Order::kRandom) {
    std::seed_seq seed{1};
    std::shuffle(ids.begin(), ids.end(), std::mt19937(seed));
  }
  for (const unsigned int id : ids) insert(id * kIdStride);
}

std::vector<unsigned int> FreshIds(unsigned int count, unsigned int populated) {
  std::vector<unsigned int> ids(count);
  for (unsigned int i = 0; i < count; ++i) {
    const auto neighbour = static_cast<unsigned int>((i + 1ULL) * populated / (count + 1ULL));
    ids[i] = neighbour * kIdStride + kIdStride / 2;
  }
  return ids;
}

void Prepare(const Kind& kind, Step step, const std::vector<unsigned int>& ids) {
  static std::vector<Correlators::iterator> places;
  Correlators& correlators = HalBcmCommon::GetInstance()->destination_id_correlators;
  places.clear();
  for (const unsigned int destination_id : ids) {
    const auto id = static_cast<int>(destination_id);
    places.push_back(step == Step::kInstall ? correlators.upper_bound(id) : correlators.find(id));
  }
  kind.bare->SetPlaces(places.data());

  IntfObject* intf;
  HwEncapsulationResourceManager::GetInstance()->intf_mng()->GetIntfObject(1, &intf);
  intf->tunnel().set_type(kind.tunnel_type);
}
