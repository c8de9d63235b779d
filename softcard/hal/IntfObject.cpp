#include "hal/IntfObject.h"

#include "softcard/Funnel.h"

using namespace softcard;

namespace {

/// As its table shows it; the tunnel only when `deep`.
std::string IntfText(const IntfObject& intf, bool deep) {
  Row row = MakeRow(intf);
  if (!deep) row.values.pop_back();
  return Text(row);
}

}  // namespace

IntfValues softcard::ValuesOf(const IntfObject& intf) {
  const Unseen unseen(Card::Get());
  // The object hands its tunnel out for changing only.
  const TunnelObject& tunnel = const_cast<IntfObject&>(intf).tunnel();
  return {intf.id(), intf.vrf(), intf.vlan_id(), intf.macsa(), intf.mtu(), intf.l3_flags(), tunnel.type()};
}

IntfObject::IntfObject() : id_(0), vrf_(0), macsa_{}, mtu_(0), l3_flags_(0) {}

std::string IntfObject::ToString(bool deep) const {
  return Call<Named("IntfObject::ToString")>(Args(deep), [&] { return IntfText(*this, deep); });
}

int IntfObject::id() const {
  return Call<Named("IntfObject::id")>(Args(), [&] { return id_; });
}

unsigned int IntfObject::vrf() const {
  return Call<Named("IntfObject::vrf")>(Args(), [&] { return vrf_; });
}

MacAddress IntfObject::macsa() const {
  return Call<Named("IntfObject::macsa")>(Args(), [&] { return macsa_; });
}

unsigned int IntfObject::mtu() const {
  return Call<Named("IntfObject::mtu")>(Args(), [&] { return mtu_; });
}

unsigned int IntfObject::l3_flags() const {
  return Call<Named("IntfObject::l3_flags")>(Args(), [&] { return l3_flags_; });
}

TunnelObject& IntfObject::tunnel() {
  return *Call<Named("IntfObject::tunnel")>(Args(), [&] { return &tunnel_; });
}
