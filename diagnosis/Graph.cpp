#include "diagnosis/Graph.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <tuple>

#include "diagnosis/Holders.h"

namespace diagnosis {
namespace {

/// More boxes than this nobody reads.
constexpr std::size_t kMostBoxes = 60;
constexpr std::size_t kMostLoose = 20;

constexpr char kRed[] = "color=\"#b00020\" fontcolor=\"#b00020\" penwidth=2";

/// How alike destinations are that share a box.
enum class Folding { kNothing, kKindVlanAndPort, kKindAndVlan, kKind };

/// A destination that leaves through a port.
struct Leaf {
  unsigned id;
  const Holder* holder;
  std::string kind;    ///< "host", "push of 2 labels"
  std::string labels;  ///< "200 / 100", the outermost first
  unsigned vlan_id;
  std::string port;
  bool red;
};

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c == '\n' ? "\\n" : std::string(1, c);
  }
  return quoted + '"';
}

std::string VlanNode(unsigned vlan_id) { return Quoted("vlan " + std::to_string(vlan_id)); }

/// "1 ... 9 (5)", "7".
std::string Range(const std::vector<const Leaf*>& leaves) {
  std::string first = std::to_string(leaves.front()->id);
  if (leaves.size() == 1) return first;
  return first + " ... " + std::to_string(leaves.back()->id) + " (" + std::to_string(leaves.size()) + ")";
}

/// "eth1", "eth1, lag1", "eth1 ... lag1 (25 ports)".
std::string Ports(const std::vector<const Leaf*>& leaves) {
  std::vector<std::string> ports;
  for (const Leaf* leaf : leaves) {
    if (std::find(ports.begin(), ports.end(), leaf->port) == ports.end()) ports.push_back(leaf->port);
  }
  if (ports.size() > 3) return ports.front() + " ... " + ports.back() + " (" + std::to_string(ports.size()) + " ports)";
  std::string text;
  for (const std::string& port : ports) text += (text.empty() ? "" : ", ") + port;
  return text;
}

class Drawing {
 public:
  Drawing(const softcard::Card& card, const Ledger& ledger, const std::vector<Finding>& findings)
      : tables_(card.tables()), findings_(findings) {
    for (const Finding& finding : findings) problems_[finding.object].insert(finding.problem);
    ForEachHolder(card, ledger, [this](const Holder& holder) { holders_.push_back(holder); });
    for (const Holder& holder : holders_) {
      if (holder.maker != Maker::kVlan) leaves_.push_back(LeafOf(holder));
    }
  }

  std::string All() {
    Begin();
    for (const Holder& holder : holders_) {
      if (holder.maker == Maker::kVlan) DrawVlan(holder);
    }
    const Folding folding = FoldingFor(leaves_);
    for (const auto& box : Boxes(folding)) DrawBox(box.second, folding);
    DrawLoose();
    return dot_ + "}\n";
  }

  std::string One(unsigned destination) {
    const auto found = std::find_if(holders_.begin(), holders_.end(), [destination](const Holder& holder) {
      return static_cast<unsigned>(holder.destination) == destination;
    });
    if (found == holders_.end()) {
      throw std::invalid_argument("there is no destination " + std::to_string(destination) + " on the card; it has " +
                                  std::to_string(holders_.size()));
    }
    Begin();
    const unsigned vlan_id = found->maker == Maker::kVlan ? 0 : LeafOf(*found).vlan_id;
    for (const Holder& holder : holders_) {
      const bool base = holder.maker == Maker::kVlan && holder.intf_values && holder.intf_values->vlan_id == vlan_id;
      if (base || &holder == &*found) DrawVlan(holder);
    }
    if (found->maker != Maker::kVlan) DrawChain(LeafOf(*found));
    return dot_ + "}\n";
  }

 private:
  using Boxed = std::map<std::tuple<std::string, unsigned, std::string, bool, unsigned>, std::vector<const Leaf*>>;

  void Begin() {
    dot_ =
        "digraph card {\n  rankdir=LR;\n  graph [fontname=\"DejaVu Sans\", ranksep=1];\n"
        "  node [fontname=\"DejaVu Sans\", fontsize=11, shape=box, style=rounded];\n"
        "  edge [fontname=\"DejaVu Sans\", fontsize=10];\n";
  }

  void Node(const std::string& id, const std::string& label, const std::string& attributes) {
    dot_ += "  " + id + " [label=" + Quoted(label) + (attributes.empty() ? "" : ", ") + attributes + "];\n";
  }
  void Edge(const std::string& from, const std::string& to, const std::string& label = "") {
    dot_ += "  " + from + " -> " + to + (label.empty() ? "" : " [label=" + Quoted(label) + ']') + ";\n";
  }

  /// What the findings say of an object, a line each.
  std::string ProblemsOf(const std::string& object) const {
    const auto found = problems_.find(object);
    std::string text;
    if (found == problems_.end()) return text;
    for (const std::string& problem : found->second) text += '\n' + problem;
    return text;
  }

  Leaf LeafOf(const Holder& holder) const {
    Leaf leaf{static_cast<unsigned>(holder.destination), &holder, "", "", 0, "nowhere",
              !ProblemsOf(holder.Name()).empty()};
    const softcard::Egress* const egress = holder.egress_object;
    std::vector<unsigned> labels;
    if (const softcard::LabelStack* stack = holder.OwnsIntf() ? tables_.initiators.Find(holder.intf) : nullptr) {
      for (const auto* label = stack->end(); label != stack->begin();) labels.push_back((--label)->label);
    }
    const bool own = egress != nullptr && egress->HasLabel();
    if (own) labels.push_back(egress->label);
    for (const unsigned label : labels) leaf.labels += (leaf.labels.empty() ? "" : " / ") + std::to_string(label);
    if (egress != nullptr) {
      const IntfObject* const intf = tables_.intfs.Find(egress->intf);
      leaf.vlan_id = intf == nullptr ? egress->vlan_id : softcard::ValuesOf(*intf).vlan_id;
      leaf.port = egress->to_cpu ? "cpu" : egress->drop ? "dropped" : tables_.ports.Name(egress->port);
    } else if (holder.intf_values) {
      leaf.vlan_id = holder.intf_values->vlan_id;
    }
    if (holder.maker == Maker::kHost) {
      leaf.kind = "host";
    } else if (own) {
      leaf.kind = egress->control == EXP_LABEL_CONTROL_VC ? "VC label"
                  : labels.size() > 1                     ? "swap, in a tunnel"
                                                          : "swap";
    } else {
      leaf.kind = labels.empty()
                      ? "forward"
                      : "push of " + std::to_string(labels.size()) + (labels.size() == 1 ? " label" : " labels");
    }
    return leaf;
  }

  static Folding FoldingFor(const std::vector<Leaf>& leaves) {
    for (const Folding folding : {Folding::kNothing, Folding::kKindVlanAndPort, Folding::kKindAndVlan}) {
      if (CountOf(leaves, folding) <= kMostBoxes) return folding;
    }
    return Folding::kKind;
  }

  static Boxed::key_type KeyOf(const Leaf& leaf, Folding folding) {
    return {leaf.kind, folding <= Folding::kKindAndVlan ? leaf.vlan_id : 0,
            folding <= Folding::kKindVlanAndPort ? leaf.port : "", leaf.red,
            folding == Folding::kNothing ? leaf.id : 0};
  }
  static std::size_t CountOf(const std::vector<Leaf>& leaves, Folding folding) {
    std::set<Boxed::key_type> keys;
    for (const Leaf& leaf : leaves) keys.insert(KeyOf(leaf, folding));
    return keys.size();
  }
  Boxed Boxes(Folding folding) const {
    Boxed boxes;
    for (const Leaf& leaf : leaves_) boxes[KeyOf(leaf, folding)].push_back(&leaf);
    return boxes;
  }

  void DrawVlan(const Holder& holder) {
    const std::string problems = ProblemsOf(holder.Name());
    const std::string red = problems.empty() ? "" : kRed;
    if (holder.maker != Maker::kVlan) return;
    if (!holder.intf_values) return Node(Quoted(holder.Name()), holder.Name() + problems, red);
    const softcard::IntfValues& intf = *holder.intf_values;
    vlans_.insert(intf.vlan_id);
    Node(VlanNode(intf.vlan_id),
         "VLAN " + std::to_string(intf.vlan_id) + "\n" + holder.Name() + "\nintf " + std::to_string(holder.intf) +
             ", MTU " + std::to_string(intf.mtu) + problems,
         red);
    const std::string vrf = Quoted("vrf " + std::to_string(intf.vrf));
    if (vrfs_.insert(intf.vrf).second) {
      const bool gone = !tables_.vrfs.Exists(intf.vrf);
      Node(vrf, "VRF " + std::to_string(intf.vrf) + (gone ? "\nis gone" : ""),
           std::string("style=\"rounded,bold\"") + (gone ? std::string(", ") + kRed : ""));
    }
    Edge(vrf, VlanNode(intf.vlan_id));
  }

  /// A VLAN that no destination holds is drawn all the same.
  void EdgeFromVlan(unsigned vlan_id, const std::string& to) {
    if (vlan_id == softcard::kNoVlan) return;
    if (vlans_.insert(vlan_id).second) {
      Node(VlanNode(vlan_id), "VLAN " + std::to_string(vlan_id) + "\nof no destination", "style=\"rounded,dashed\"");
    }
    Edge(VlanNode(vlan_id), to);
  }

  void DrawPort(const std::string& port) {
    if (ports_.insert(port).second) Node(Quoted("port " + port), port, "shape=cds, style=solid");
  }

  void DrawBox(const std::vector<const Leaf*>& leaves, Folding folding) {
    const Leaf& first = *leaves.front();
    const std::string node = Quoted("box " + std::to_string(first.id));
    std::string label = first.kind + ' ' + Range(leaves);
    if (folding >= Folding::kKindAndVlan) label += "\n" + Ports(leaves);
    std::set<std::string> problems;
    for (const Leaf* leaf : leaves) {
      const std::string problem = ProblemsOf(leaf->holder->Name());
      if (!problem.empty()) problems.insert(problem);
    }
    if (!problems.empty()) label += *problems.begin();
    if (problems.size() > 1) label += "\nand " + std::to_string(problems.size() - 1) + " other findings";
    Node(node, label, first.red ? kRed : "");
    if (folding <= Folding::kKindAndVlan) EdgeFromVlan(first.vlan_id, node);
    if (folding >= Folding::kKindAndVlan) return;
    DrawPort(first.port);
    Edge(node, Quoted("port " + first.port), leaves.size() == 1 ? first.labels : "");
  }

  /// A destination with its interface and its egress object.
  void DrawChain(const Leaf& leaf) {
    const Holder& holder = *leaf.holder;
    const std::string egress = Quoted("egress"), intf = Quoted("intf");
    Node(Quoted(holder.Name()), leaf.kind + "\n" + holder.Name() + ProblemsOf(holder.Name()), leaf.red ? kRed : "");
    if (holder.OwnsIntf()) {
      const std::string name = "intf " + std::to_string(holder.intf);
      Node(intf,
           name + "\nMAC " + calls::Text(calls::Kind::kMac, calls::ToValue(holder.intf_values->mac)) + ProblemsOf(name),
           ProblemsOf(name).empty() ? "" : kRed);
      EdgeFromVlan(leaf.vlan_id, intf);
      Edge(intf, Quoted(holder.Name()));
    } else {
      EdgeFromVlan(leaf.vlan_id, Quoted(holder.Name()));
    }
    if (holder.egress_object == nullptr) return;
    const std::string name = "egress " + std::to_string(holder.egress);
    Node(egress,
         name + "\nto " + calls::Text(calls::Kind::kMac, calls::ToValue(holder.egress_object->mac)) + ProblemsOf(name),
         ProblemsOf(name).empty() ? "" : kRed);
    Edge(Quoted(holder.Name()), egress);
    DrawPort(leaf.port);
    Edge(egress, Quoted("port " + leaf.port), leaf.labels);
  }

  /// Findings about what belongs to no destination.
  void DrawLoose() {
    std::size_t count = 0;
    for (const Finding& finding : findings_) {
      if (finding.object.rfind("destination ", 0) == 0) continue;
      if (++count <= kMostLoose) Node(Quoted("loose " + finding.object), finding.object + "\n" + finding.problem, kRed);
    }
    if (count > kMostLoose) Node("more", "and " + std::to_string(count - kMostLoose) + " more findings", kRed);
  }

  const softcard::Tables& tables_;
  const std::vector<Finding>& findings_;
  std::map<std::string, std::set<std::string>> problems_;  ///< by object
  std::vector<Holder> holders_;
  std::vector<Leaf> leaves_;
  std::set<unsigned> vrfs_;
  std::set<unsigned> vlans_;
  std::set<std::string> ports_;
  std::string dot_;
};

}  // namespace

std::string Dot(const softcard::Card& card, const Ledger& ledger, const std::vector<Finding>& findings,
                std::optional<unsigned> destination) {
  Drawing drawing(card, ledger, findings);
  return destination ? drawing.One(*destination) : drawing.All();
}

}  // namespace diagnosis
