#ifndef BENCH_BARE_SEQUENCES_H
#define BENCH_BARE_SEQUENCES_H

#include <map>
#include <vector>

#include "DestinationIdCorrelator.h"
#include "HalL3MplsEncapsulationInterface.h"

using Correlators = std::map<int, DestinationIdCorrelator&>;

/// The least that a successful request costs on any implementation of the interface: the platform calls and log calls
/// of the request in a straight line, with ready-made texts and nothing looked up or checked. What is left beside them
/// is what the signatures and the record force: the record and its map node, the copies of by-value vectors, the
/// string of the lim id's text.
class BareSequence : public HalL3MplsEncapsulationInterface {
 public:
  /// Where the coming requests find their records, or put them, in their order: the neighbour in the map that an
  /// install inserts before, the record's own place for a replace or destroy.
  void SetPlaces(const Correlators::iterator* places) { place_ = places; }

  int InitEncapsulationModule() const override { return 0; }
  int InstallVrf(unsigned int) const override { return 0; }
  int DestroyVrf(unsigned int) const override { return 0; }
  int InstallVlanOutgoingEncapsulation(unsigned int, limid_t, unsigned int, unsigned int, unsigned char*,
                                       std::vector<en_HalVlanCapabilities>) const override {
    return 0;
  }
  int DestroyVlanOutgoingEncapsulation(unsigned int) const override { return 0; }
  int ReplaceVlanOutgoingEncapsulation(unsigned int, limid_t, unsigned int, unsigned int, unsigned char*,
                                       std::vector<en_HalVlanCapabilities>) const override {
    return 0;
  }
  int InstallHostOutgoingEncapsulation(unsigned int, unsigned int, limid_t, std::vector<ActionFlags>,
                                       unsigned char*) const override {
    return 0;
  }
  int DestroyHostOutgoingEncapsulation(unsigned int) const override { return 0; }
  int ReplaceHostOutgoingEncapsulation(unsigned int, unsigned int, limid_t, std::vector<ActionFlags>,
                                       unsigned char*) const override {
    return 0;
  }
  int InstallMplsUnprotectedOutgoingEncapsulation(unsigned int, unsigned int, limid_t, unsigned char*,
                                                  std::vector<unsigned int>, std::vector<en_HalMplsCapabilities>,
                                                  ActionFlags) const override {
    return 0;
  }
  int DestroyMplsUnprotectedOutgoingEncapsulation(unsigned int) const override { return 0; }
  int ReplaceMplsUnprotectedOutgoingEncapsulation(unsigned int, unsigned int, limid_t, unsigned char*,
                                                  std::vector<unsigned int>, std::vector<en_HalMplsCapabilities>,
                                                  ActionFlags) const override {
    return 0;
  }

 protected:
  void MakeRecord(unsigned int destination_id, int intf_id, int egress_id) const;
  DestinationIdCorrelator& NextRecord() const { return (*place_++)->second; }
  void EraseRecord() const;

 private:
  mutable const Correlators::iterator* place_ = nullptr;
};

BareSequence* BareVlan();
BareSequence* BareHost();
BareSequence* BarePush1();
BareSequence* BarePush2();
BareSequence* BareSwap();
BareSequence* BareSwapIntoTunnel();
BareSequence* BareForward();
BareSequence* BareVcLabel();

#endif
