#ifndef BENCH_REQUESTS_H
#define BENCH_REQUESTS_H

#include <utility>
#include <vector>

#include "bench/BareSequences.h"
#include "bench/Values.h"
#include "hal/TunnelObject.h"

enum class Step { kInstall, kReplace, kDestroy };
constexpr Step kSteps[] = {Step::kInstall, Step::kReplace, Step::kDestroy};
const char* StepName(Step step);

/// One kind of encapsulation: what its requests carry and the least that they cost.
struct Kind {
  enum Family { kVlan, kHost, kMpls };

  const char* name;
  Family family;
  std::vector<unsigned int> labels;
  std::vector<en_HalMplsCapabilities> capabilities;
  /// Of the interface that an installed destination holds.
  TunnelObject::EnumTunnelType tunnel_type;
  BareSequence* bare;
};

const std::vector<Kind>& Kinds();

enum class Order { kSequential, kRandom };

/// Readies the platform and gives it the records of `count` destinations; the ids are multiples of kIdStride.
void Populate(unsigned int count, Order order);
constexpr unsigned int kIdStride = 4;

/// `count` ids that have no record, spread over those that have.
std::vector<unsigned int> FreshIds(unsigned int count, unsigned int populated);

/// Readies the platform and the bare sequence for one step of the destinations `ids`, in their order.
void Prepare(const Kind& kind, Step step, const std::vector<unsigned int>& ids);

/// Makes one request between `meter.Start()` and `meter.Stop()`; vectors are handed over, so that the copies which the
/// meter sees are the callee's. Returns the request's result.
template <typename Meter>
int Send(const HalL3MplsEncapsulationInterface& target, const Kind& kind, Step step, unsigned int id, Meter& meter) {
  static unsigned char mac[6] = {2, 0, 0, 0, 0, 1};
  const auto metered = [&meter](const auto& request) {
    meter.Start();
    const int result = request();
    meter.Stop();
    return result;
  };
  if (step == Step::kDestroy) {
    switch (kind.family) {
      case Kind::kVlan: return metered([&] { return target.DestroyVlanOutgoingEncapsulation(id); });
      case Kind::kHost: return metered([&] { return target.DestroyHostOutgoingEncapsulation(id); });
      default: return metered([&] { return target.DestroyMplsUnprotectedOutgoingEncapsulation(id); });
    }
  }
  const bool install = step == Step::kInstall;
  switch (kind.family) {
    case Kind::kVlan:
      return install
                 ? metered([&] { return target.InstallVlanOutgoingEncapsulation(id, kVlanLimId, kVrf, kMtu, mac, {}); })
                 : metered(
                       [&] { return target.ReplaceVlanOutgoingEncapsulation(id, kVlanLimId, kVrf, kMtu, mac, {}); });
    case Kind::kHost:
      return install ? metered([&] {
        return target.InstallHostOutgoingEncapsulation(id, kVlanDestination, kPortLimId, {}, mac);
      })
                     : metered([&] {
                         return target.ReplaceHostOutgoingEncapsulation(id, kVlanDestination, kPortLimId, {}, mac);
                       });
    default: {
      auto labels = kind.labels;
      auto capabilities = kind.capabilities;
      return install ? metered([&] {
        return target.InstallMplsUnprotectedOutgoingEncapsulation(
            id, kVlanDestination, kPortLimId, mac, std::move(labels), std::move(capabilities), HAL_ACTION_NONE);
      })
                     : metered([&] {
                         return target.ReplaceMplsUnprotectedOutgoingEncapsulation(
                             id, kVlanDestination, kPortLimId, mac, std::move(labels), std::move(capabilities),
                             HAL_ACTION_NONE);
                       });
    }
  }
}

#endif
