#include "diagnosis/Audit.h"

#include <algorithm>
#include <map>
#include <set>

#include "diagnosis/Holders.h"

namespace diagnosis {
namespace {

constexpr char kNone[] = "none can";

std::string Vlan(unsigned vlan_id) { return "vlan" + std::to_string(vlan_id); }

/// Keys of rows, in little memory: a card may have a million.
class Keys {
 public:
  void Add(std::int64_t key) { keys_.push_back(static_cast<std::int32_t>(key)); }
  /// When all have been added.
  void Sort() {
    std::sort(keys_.begin(), keys_.end());
    keys_.erase(std::unique(keys_.begin(), keys_.end()), keys_.end());
  }
  bool Has(std::int64_t key) const {
    return std::binary_search(keys_.begin(), keys_.end(), static_cast<std::int32_t>(key));
  }
  const std::vector<std::int32_t>& all() const { return keys_; }

 private:
  std::vector<std::int32_t> keys_;
};

class Auditor {
 public:
  Auditor(const softcard::Card& card, const Ledger& ledger)
      : tables_(card.tables()), records_(card.common().destination_id_correlators), ledger_(ledger) {
    ForEachHolder(card, ledger, [this](const Holder& holder) { Account(holder); });
    for (Keys* keys : {&intfs_, &egresses_, &vlans_}) keys->Sort();
    ForEachHolder(card, ledger, [this](const Holder& holder) {
      if (holder.maker == Maker::kVlan) {
        CheckVlan(holder);
      } else {
        CheckEgress(holder);
      }
    });
  }

  std::vector<Finding> Findings() {
    CheckUnaccounted();
    CheckAssociations();
    CheckWays();
    CheckHalfWritten();
    CheckSwitch();
    return std::move(findings_);
  }

 private:
  /// The request that came last of those that touched one of these rows.
  std::string Cause(std::initializer_list<Place> places) const {
    std::optional<std::size_t> last;
    for (const Place& place : places) last = std::max(last, ledger_.LastTouching(place.table, place.key));
    if (!last) return "unknown";
    const Ledger::Request request = ledger_.RequestOf(*last);
    const std::string text = request.place + (request.text.empty() ? "" : ": ") + request.text;
    return request.refused.empty() ? text : text + ", where " + request.refused;
  }

  void Add(std::string object, std::string problem, std::initializer_list<Place> causes, std::string packet,
           std::string remedy) {
    findings_.push_back({std::move(object), std::move(problem), Cause(causes), std::move(packet), std::move(remedy)});
  }

  static Place Destination(const Holder& holder) { return {"destinations", holder.destination}; }
  static std::string Request(const char* name, const Holder& holder) {
    return name + std::to_string(static_cast<unsigned>(holder.destination));
  }

  static std::string AgainAsReplace(const Holder& holder) {
    return Request(holder.maker == Maker::kHost ? "replace-host " : "replace-mpls ", holder) +
           " with the values that it has";
  }

  void Account(const Holder& holder) {
    if (holder.OwnsIntf()) intfs_.Add(holder.intf);
    if (holder.maker == Maker::kVlan && holder.intf_values) vlans_.Add(holder.intf_values->vlan_id);
    if (holder.maker != Maker::kVlan && holder.egress_object != nullptr) egresses_.Add(holder.egress);
  }

  void CheckVlan(const Holder& holder) {
    if (!holder.intf_values) {
      Add(holder.Name(), "its interface " + std::to_string(holder.intf) + " is gone",
          {{"intfs", holder.intf}, Destination(holder)}, "what is routed through it is dropped",
          Request("destroy-mpls ", holder));
      return;
    }
    const unsigned vlan_id = holder.intf_values->vlan_id;
    const unsigned vrf = holder.intf_values->vrf;
    const unsigned* const associated = tables_.associations.Find(vlan_id);
    const bool destroyable = associated != nullptr && *associated == vrf;
    if (destroyable) {
      associations_.insert(vlan_id);
    } else {
      Add(holder.Name(),
          "its VLAN " + std::to_string(vlan_id) + " is not associated with VRF " + std::to_string(vrf) +
              ", so it can no longer be destroyed",
          {{"intfs", holder.intf}, {"associations", vlan_id}},
          "packets leave; the VLAN's own are not routed in this VRF", RemedyOfAssociation(holder, vrf));
    }
    if (tables_.stations.Find(vlan_id) == nullptr) {
      Add(holder.Name(), "its VLAN " + std::to_string(vlan_id) + " has no my-station entry",
          {{"stations", vlan_id}, {"intfs", holder.intf}}, "packets to the router's MAC are not routed",
          Request("replace-vlan ", holder) + " with the values that it has");
    }
    if (!tables_.protocol.rows().Find(vlan_id)) {
      Add(holder.Name(), "the protocol packet control of its VLAN " + std::to_string(vlan_id) + " is off",
          {{"protocol", vlan_id}, {"intfs", holder.intf}}, "protocol packets of the VLAN do not reach the CPU",
          destroyable ? Request("destroy-vlan ", holder) + ", then the install again"
                      : RemedyOfAssociation(holder, vrf));
    }
  }

  /// A VLAN that was moved within its VRF can be moved back to where its association stayed.
  std::string RemedyOfAssociation(const Holder& holder, unsigned vrf) const {
    for (const auto& [vlan_id, associated] : tables_.associations.rows()) {
      if (associated == vrf && !vlans_.Has(vlan_id)) {
        return Request("replace-vlan ", holder) + " lim=" + Vlan(vlan_id) + " vrf=" + std::to_string(vrf) + " ...";
      }
    }
    return kNone;
  }

  void CheckEgress(const Holder& holder) {
    const std::string forget = Request("destroy-mpls ", holder);
    if (holder.egress_object == nullptr) {
      Add(holder.Name(),
          holder.egress < 0
              ? "its egress object was refused, the record holds the status " + std::to_string(holder.egress)
              : "its egress object " + std::to_string(holder.egress) + " is gone",
          {{"egresses", holder.egress}, Destination(holder)}, "packets are dropped: there is no egress object",
          forget + ", then the install again");
      return;
    }
    const softcard::Egress& egress = *holder.egress_object;
    if (holder.intf != softcard::kNoIntf && !holder.intf_values) {
      Add(holder.Name(), "its interface " + std::to_string(holder.intf) + " is gone", {{"intfs", holder.intf}},
          "packets are dropped: the interface has been deleted",
          (holder.maker == Maker::kHost ? Request("destroy-host ", holder) : forget) +
              ", then the install on a new base");
    } else if (holder.maker == Maker::kMpls && holder.OwnsIntf() && tables_.initiators.Find(holder.intf) == nullptr) {
      Add(holder.Name(), "its interface " + std::to_string(holder.intf) + " has no tunnel initiator",
          {{"initiators", holder.intf}}, "packets leave without the tunnel's labels",
          forget + ", then the install again");
    }
    CheckExpMap(holder);
    const IntfObject* const bound = tables_.intfs.Find(egress.intf);
    if (bound != nullptr && softcard::ValuesOf(*bound).vlan_id != egress.vlan_id) {
      Add(holder.Name(),
          "its egress object is on VLAN " + std::to_string(egress.vlan_id) + ", its interface on VLAN " +
              std::to_string(softcard::ValuesOf(*bound).vlan_id),
          {{"intfs", egress.intf}}, "packets leave on the interface's VLAN", AgainAsReplace(holder));
    }
    if (holder.maker == Maker::kMpls && egress.drop && tables_.ports.Exists(egress.port)) {
      Add(holder.Name(), "it drops, and is bound to port " + tables_.ports.Name(egress.port),
          {{"egresses", holder.egress}}, "packets are dropped", AgainAsReplace(holder));
    }
  }

  void CheckExpMap(const Holder& holder) {
    const softcard::LabelStack* const labels = holder.OwnsIntf() ? tables_.initiators.Find(holder.intf) : nullptr;
    if (labels == nullptr) return;
    for (const auto& label : *labels) {
      if ((label.flags & BCM_MPLS_EGRESS_LABEL_EXP_REMARK) == 0 || label.qos_map_id >= 0) continue;
      Add(holder.Name(), "its label " + std::to_string(label.label) + " remarks EXP by a map that is none",
          {{"initiators", holder.intf}}, "packets leave with an EXP that nobody chose", AgainAsReplace(holder));
    }
  }

  void CheckUnaccounted() {
    for (const auto& row : tables_.intfs.rows()) {
      if (!intfs_.Has(row.first)) {
        Unaccounted("intf ", {"intfs", row.first}, "none meets it, unless an egress object is bound to it", kNone);
      }
    }
    for (const auto& row : tables_.initiators.rows()) {
      if (!intfs_.Has(row.first)) {
        Unaccounted("initiator ", {"initiators", row.first}, "it gets these labels where an egress object leads to it",
                    kNone);
      }
    }
    for (const auto& row : tables_.egresses.rows()) {
      if (!egresses_.Has(row.first)) {
        Unaccounted("egress ", {"egresses", row.first}, "what is still routed to it is sent as before", kNone);
      }
    }
    for (const auto& row : tables_.stations.rows()) {
      if (!vlans_.Has(row.first)) {
        Unaccounted("station ", {"stations", row.first},
                    "packets to this MAC are routed on the VLAN; an install of the VLAN is refused", kNone);
      }
    }
    for (const auto& row : tables_.protocol.rows()) {
      if (!vlans_.Has(row.first)) {
        const bool installable =
            tables_.stations.Find(row.first) == nullptr && tables_.associations.Find(row.first) == nullptr;
        Unaccounted("protocol ", {"protocol", row.first}, "protocol packets of the VLAN still reach the CPU",
                    installable ? "install-vlan with lim=" + Vlan(row.first) + ", then destroy-vlan" : kNone);
      }
    }
  }

  void Unaccounted(const char* row, const Place& place, const char* packet, std::string remedy) {
    const bool tunnel = place.table == "initiators";
    Add(row + std::to_string(place.key), "no record accounts for it",
        {place, {tunnel ? std::string_view("intfs") : place.table, place.key}}, packet, std::move(remedy));
  }

  void CheckAssociations() {
    for (const auto& [vlan_id, vrf] : tables_.associations.rows()) {
      if (associations_.count(vlan_id) == 0) {
        Unaccounted("association ", {"associations", vlan_id},
                    "the VLAN's packets are routed in the VRF; an install of the VLAN is refused", kNone);
      } else if (!tables_.vrfs.Exists(vrf)) {
        Add("association " + std::to_string(vlan_id), "its VRF " + std::to_string(vrf) + " is gone", {{"vrfs", vrf}},
            "the VLAN's packets find no routes", "install-vrf " + std::to_string(vrf));
      }
    }
  }

  /// What leads packets to a destination that there is none of.
  void CheckWays() {
    using Kind = softcard::LabelAction::Kind;
    std::map<unsigned, unsigned long> ways;  // by destination
    tables_.routes.ForEach([&](unsigned, const softcard::Prefix&, unsigned destination) { ++ways[destination]; });
    tables_.labels.ForEach([&](unsigned, const softcard::LabelAction& action) {
      if (action.kind == Kind::kDestination) ++ways[action.value];
    });
    for (const auto& [port, destination] : tables_.attachments.rows()) ++ways[destination];
    for (const auto& [destination, count] : ways) {
      const int id = static_cast<int>(destination);
      if (records_.count(id) != 0) continue;
      Add("destination " + std::to_string(destination),
          "it is not installed; routes, labels and attached ports that lead there: " + std::to_string(count),
          {{"destinations", id}}, "packets are dropped: there is no record", "its install, or other ways for them");
    }
  }

  /// Rows that are accounted for and yet have values of a request that failed.
  void CheckHalfWritten() {
    const auto check = [&](const char* row, const Place& place, const std::string& packet) {
      if (ledger_.IsHalfWritten(place.table, place.key)) {
        Add(row + std::to_string(place.key), "a request that failed has changed it", {place}, packet,
            "the same request again");
      }
    };
    for (const std::int64_t intf : intfs_.all()) {
      check("intf ", {"intfs", intf}, "packets leave by the new values");
      if (tables_.initiators.Find(static_cast<int>(intf)) != nullptr) {
        check("initiator ", {"initiators", intf}, "packets leave with the new labels, by the old egress object");
      }
    }
    for (const std::int64_t egress : egresses_.all()) {
      check("egress ", {"egresses", egress}, "packets leave by the new values");
    }
    for (const std::int64_t vlan_id : vlans_.all()) {
      if (tables_.stations.Find(static_cast<unsigned>(vlan_id)) != nullptr) {
        check("station ", {"stations", vlan_id}, "packets to the router's MAC are routed by the new values");
      }
    }
  }

  /// The module sets both modes when it starts.
  void CheckSwitch() {
    for (const auto control : {bcmSwitchL3EgressMode, bcmSwitchL3IngressMode}) {
      const Place place{"switch", control};
      const bool missing = !tables_.switch_controls.rows().Find(control);
      const bool tried = ledger_.LastTouching("switch", control).has_value();
      if (missing && (tried || !tables_.switch_controls.rows().empty())) {
        Add("switch " + calls::Text(calls::Kind::kSwitchControl, calls::ToValue(static_cast<int>(control))),
            "it has not been set", {place}, "packets are not sent through egress objects", "init");
      }
    }
  }

  const softcard::Tables& tables_;
  const std::map<int, DestinationIdCorrelator&>& records_;
  const Ledger& ledger_;
  std::vector<Finding> findings_;
  // What the records account for.
  Keys intfs_;
  Keys egresses_;
  Keys vlans_;
  std::set<unsigned> associations_;
};

const softcard::TableDescription kFindings = {"findings",
                                              "finding",
                                              softcard::Origin::kMadeByRequests,
                                              {"object", calls::Kind::kText},
                                              {{"problem", calls::Kind::kText},
                                               {"cause", calls::Kind::kText},
                                               {"packet", calls::Kind::kText},
                                               {"remedy", calls::Kind::kText}}};

}  // namespace

std::vector<Finding> Audit(const softcard::Card& card, const Ledger& ledger) {
  return Auditor(card, ledger).Findings();
}

std::vector<softcard::Row> ToRows(const std::vector<Finding>& findings) {
  using calls::ToValue;
  std::vector<softcard::Row> rows;
  rows.reserve(findings.size());
  for (const Finding& finding : findings) {
    rows.push_back(
        {&kFindings,
         ToValue(finding.object),
         {ToValue(finding.problem), ToValue(finding.cause), ToValue(finding.packet), ToValue(finding.remedy)}});
  }
  return rows;
}

}  // namespace diagnosis
