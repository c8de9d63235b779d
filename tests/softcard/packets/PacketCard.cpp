#include "tests/softcard/packets/PacketCard.h"

#include <arpa/inet.h>

#include <stdexcept>

#include "bcm/mpls.h"
#include "hal/EgressManager.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/MyStationManager.h"

using namespace softcard;

namespace {

constexpr unsigned int kVrf = 1;
constexpr unsigned int kVlan = 100;
unsigned char router_mac[6] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x01};
unsigned char next_hop_mac[6] = {0x00, 0x00, 0x5e, 0x00, 0x02, 0x01};

void Expect(bool held) {
  if (!held) throw std::runtime_error("the card refused to be set up");
}

HwEncapsulationResourceManager& Managers() { return *HwEncapsulationResourceManager::GetInstance(); }

}  // namespace

std::string Text(const Bytes& bytes) {
  std::string text;
  for (const unsigned char byte : bytes) {
    text += "0123456789abcdef"[byte >> 4];
    text += "0123456789abcdef"[byte & 0xF];
  }
  return text;
}

PacketCard::PacketCard(const CardDescription& description) {
  card.Reset(description);
  Expect(Managers().ingress_mng()->CreateIngress(0, kVrf, 0) == 0);
  Expect(Managers().ingress_mng()->AssociateVlanToVrf(kVlan, kVrf) == 0);
  Expect(Managers().my_station_mng()->InsertMyStationVlanEntry(kVlan, 4095, router_mac, 0) == 0);
  intf = Managers().intf_mng()->CreateIntf(0, kVrf, kVlan, router_mac, 1500, 0);
}

unsigned int PacketCard::Host(int on_intf, unsigned int label, int control, int port) {
  const int egress = Managers().egress_mng()->CreateEgress(on_intf, next_hop_mac, kVlan, 0, port, label, false, false,
                                                           static_cast<ExpLabelControl>(control));
  Expect(egress > 0);
  return Record(on_intf, egress);
}

unsigned int PacketCard::Push(const std::vector<unsigned int>& labels, unsigned int own_label, int control) {
  std::vector<bcm_mpls_egress_label_t> stack;
  stack.reserve(labels.size());
  for (const unsigned int label : labels) stack.push_back({kSetTtl | kRemarkExp, label, 1, 0, 255});
  return Host(Tunnel(stack), own_label, control);
}

int PacketCard::Tunnel(const std::vector<bcm_mpls_egress_label_t>& stack) {
  std::vector<bcm_mpls_egress_label_t> labels = stack;
  const int tunnel = Managers().intf_mng()->CreateIntf(0, kVrf, kVlan, router_mac, 1500, 0);
  Expect(bcm_mpls_tunnel_initiator_set(0, tunnel, static_cast<int>(labels.size()), labels.data()) == 0);
  return tunnel;
}

unsigned int PacketCard::Record(int record_intf, int egress) {
  const int id = static_cast<int>(correlators_.size()) + 1;
  correlators_.push_back({id, record_intf, egress});
  records.emplace(id, correlators_.back());
  return static_cast<unsigned int>(id);
}

void PacketCard::Route(const std::string& prefix, unsigned int length, unsigned int destination, unsigned int vrf) {
  IpAddress address;
  address.version = prefix.find(':') == std::string::npos ? IpAddress::Version::k4 : IpAddress::Version::k6;
  Expect(inet_pton(address.version == IpAddress::Version::k4 ? AF_INET : AF_INET6, prefix.c_str(),
                   address.bytes.data()) == 1);
  Expect(card.tables().routes.Set(vrf, {address, length}, destination) == 0);
}

void PacketCard::Label(unsigned int label, LabelAction::Kind kind, unsigned int value) {
  Expect(card.tables().labels.Set(label, {kind, value}, card.tables().ports) == 0);
}

Way PacketCard::Inject(const Bytes& frame, Story* story, int port) {
  return softcard::Inject(card.tables(), records, port, frame, &out, story);
}

Way PacketCard::Send(unsigned int destination, const Bytes& packet, Carried carried, Story* story) {
  return softcard::Send(card.tables(), records, destination, carried, packet, &out, story);
}

std::string PacketCard::Text(const Way& way) const {
  if (way.fate == Way::Fate::kDropped) return DropName(way.drop);
  return (way.fate == Way::Fate::kToCpu ? "to cpu" : card.tables().ports.Name(way.port)) + ": " + ::Text(out);
}

std::string PacketCard::Injected(const std::string& frame, int port) { return Text(Inject(Hex(frame), nullptr, port)); }

std::string PacketCard::Sent(unsigned int destination, const std::string& packet, Carried carried) {
  return Text(Send(destination, Hex(packet), carried));
}

std::string PacketCard::StoryOf(const std::string& frame, int port) {
  StoryLines story(card.tables().ports);
  Inject(Hex(frame), &story, port);
  std::string text = "\n";
  for (const std::string& line : story.lines()) text += line + '\n';
  return text;
}
