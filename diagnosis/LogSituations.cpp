#include "diagnosis/LogSituations.h"

#include <algorithm>
#include <cstring>
#include <set>

#include "diagnosis/Operations.h"

namespace diagnosis {
namespace {

using Lines = std::vector<std::string>;

struct Way {
  const char* name;
  const char* fields;
};

const Way kTunnels[] = {
    {"push of two labels", "labels=100,200 caps=push"},
    {"push", "labels=100 caps=push"},
    {"push of the second label", "labels=3,200 caps=push"},
    {"push of no label", "labels=3 caps=push"},
    {"forward", "caps=forward"},
    {"swap into a tunnel", "labels=16,300 caps=swap"},
    {"swap into a tunnel without a label", "labels=16,3 caps=swap"},
    {"swap", "labels=16 caps=swap"},
    {"swap to label 0", "labels=0 caps=swap"},
    {"VC label", "labels=500 caps=vc"},
};

/// What a replace can start from: a tunnel with an interface of its own, with the VLAN's, with none.
const Way kOldTunnels[] = {
    {"push", "labels=100,200 caps=push"},
    {"swap", "labels=16 caps=swap"},
    {"VC label", "labels=500 caps=vc"},
};

const Way kTurnedDown[] = {
    {"without a capability", "labels=100"},
    {"of capability None", "labels=100 caps=none"},
    {"of an unknown capability", "labels=100 caps=6"},
    {"of two capabilities", "labels=100 caps=push,forward"},
    {"of Protection alone", "labels=100 caps=protection"},
    {"push without labels", "caps=push"},
    {"VC label without labels", "caps=vc"},
    {"to the CPU", "labels=100 caps=push action=cpu"},
};

const Way kLag = {"on a LAG", "lim=lag1"};
const Way kNoPort = {"on what is no port", "lim=vlan300"};
const Way kPorts[] = {
    kLag,
    kNoPort,
    {"on a port that the card lacks", "lim=absent:eth99"},
};

const char kMpls[] = " 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 ";
const char kClient[] = "client a-client-of-updates notify";

const Lines kVlan = {"install-vrf 1", "install-vrf 2",
                     "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"};

bool Begins(const std::string& text, const char* with) { return text.rfind(with, 0) == 0; }

/// The text with the word that begins so replaced; empty when there is none.
std::string With(const std::string& text, const char* beginning, const std::string& word) {
  const std::size_t begin = text.find(std::string(" ") + beginning);
  if (begin == std::string::npos) return "";
  const std::size_t end = std::min(text.find(' ', begin + 1), text.size());
  return text.substr(0, begin + 1) + word + text.substr(end);
}

class Situations {
 public:
  std::vector<LogSituation> All() {
    for (const Operation& operation : Operations()) AddWithPorts(operation.title, operation.situation);
    for (const Way& way : kTunnels) AddTunnel(way);
    for (const char* name : {"install-mpls", "replace-mpls"}) {
      Lines before = kVlan;
      if (name[0] == 'r') before.push_back(std::string("install-mpls") + kMpls + kTunnels[0].fields);
      for (const Way& way : kTurnedDown) Add(Title(name, way), {before, name + std::string(kMpls) + way.fields});
    }
    for (const Operation& operation : Operations()) AddTurnedDown(operation.situation);
    AddHosts();
    Add("RegisterMplsUpdateClient, of a client that is registered", {{kClient}, kClient});
    return std::move(situations_);
  }

 private:
  void Add(const std::string& title, const Situation& situation, bool is_variant = false) {
    if (situation.request.empty()) return;
    std::string key;
    for (const std::string& line : situation.before) key += line + '\n';
    if (!known_.insert(key + situation.request).second) return;
    // Interfaces have no id that a line says anyway, as a number of labels or their place.
    Situation later = situation;
    const Lines others = {"install-vlan 91 lim=vlan91 vrf=0 mtu=1500 mac=00:00:5e:00:01:01",
                          "install-vlan 92 lim=vlan92 vrf=0 mtu=1500 mac=00:00:5e:00:01:01"};
    later.before.insert(later.before.begin(), others.begin(), others.end());
    situations_.push_back({title, later, is_variant});
  }

  void AddWithPorts(const std::string& title, const Situation& situation) {
    Add(title, situation);
    for (const Way& port : kPorts) AddOn(port, title, situation);
  }

  void AddOn(const Way& port, const std::string& title, const Situation& situation) {
    if (situation.request.find("lim=eth") == std::string::npos) return;
    Add(title + ", " + port.name, {situation.before, With(situation.request, "lim=", port.fields)}, true);
  }

  static std::string Title(const char* request, const Way& way) {
    return std::string(request[0] == 'i' ? "Install" : "Replace") + "MplsUnprotectedOutgoingEncapsulation, " + way.name;
  }

  /// Its install, its replace of every kind of tunnel, its destroy.
  void AddTunnel(const Way& way) {
    const std::string install = std::string("install-mpls") + kMpls + way.fields;
    const std::string replace = std::string("replace-mpls") + kMpls + way.fields;
    Lines installed = kVlan;
    installed.push_back(install);
    AddWithProtection(Title("install", way), {kVlan, install});
    AddWithProtection(Title("replace", way), {installed, replace});
    Add(std::string("DestroyMplsUnprotectedOutgoingEncapsulation, ") + way.name, {installed, "destroy-mpls 30"});
    for (const Way& old : kOldTunnels) {
      Lines before = kVlan;
      before.push_back(std::string("install-mpls") + kMpls + old.fields);
      const std::string title = Title("replace", way) + " in place of " + old.name;
      Add(title, {before, replace}, true);
      AddOn(kLag, title, {before, replace});
      before.emplace_back(kClient);
      Add(title, {before, replace}, true);
    }
  }

  void AddWithProtection(const std::string& title, const Situation& situation) {
    Add(title, situation);
    AddOn(kNoPort, title, situation);
    const std::size_t caps = situation.request.find("caps=") + std::strlen("caps=");
    const Situation protection_last = {situation.before, situation.request + ",protection"};
    Add(title, protection_last, true);
    AddOn(kLag, title, protection_last);
    Add(title, {situation.before, std::string(situation.request).insert(caps, "protection,")}, true);
  }

  /// What does not come to a platform call: no such destination, one too many, no such base.
  void AddTurnedDown(const Situation& situation) {
    const std::string& request = situation.request;
    const std::string what = request.substr(0, request.find(' '));
    Lines twice = situation.before;
    twice.push_back(request);
    if (Begins(request, "install-")) Add(what + " of what is installed", {twice, request});
    if (Begins(request, "replace-") || Begins(request, "destroy-")) {
      Add(what + " of what is not installed", {kVlan, request});
    }
    Add(what + " on a base that is not installed", {situation.before, With(request, "vlan=", "vlan=77")});
  }

  void AddHosts() {
    const std::string host = " 20 vlan=10 lim=eth1 mac=02:00:00:00:00:09";
    Lines before = kVlan;
    before.push_back("install-host" + host);
    AddWithPorts("ReplaceHostOutgoingEncapsulation", {before, "replace-host" + host});
    AddWithPorts("ReplaceHostOutgoingEncapsulation, of what is not installed", {kVlan, "replace-host" + host});
    AddWithPorts("InstallHostOutgoingEncapsulation, beneath no VLAN",
                 {kVlan, With("install-host" + host, "vlan=", "vlan=0")});
    AddWithPorts("ReplaceHostOutgoingEncapsulation, of what is not installed, beneath no VLAN",
                 {kVlan, With("replace-host" + host, "vlan=", "vlan=0")});
  }

  std::vector<LogSituation> situations_;
  std::set<std::string> known_;
};

}  // namespace

std::vector<LogSituation> LogSituations() { return Situations().All(); }

}  // namespace diagnosis
