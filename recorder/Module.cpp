// The module's two entry points, and what stands in front of the objects that they hand out.

#include <string>
#include <utility>

#include "HalL3MplsEncapsulationInterface.h"
#include "HalL3MplsEncapsulationUpdItf.h"
#include "calls/Value.h"
#include "recorder/Note.h"

// Weak, as all that the module defines: a process without it loads this library, too.
__asm__(".weak _ZTV31HalL3MplsEncapsulationInterface");
__asm__(".weak _ZTI31HalL3MplsEncapsulationInterface");
__asm__(".weak _ZN31HalL3MplsEncapsulationInterfaceD2Ev");
__asm__(".weak _ZTVN9hal_encap28HalL3MplsEncapsulationUpdItfE");
__asm__(".weak _ZTIN9hal_encap28HalL3MplsEncapsulationUpdItfE");
__asm__(".weak _ZN9hal_encap28HalL3MplsEncapsulationUpdItfD2Ev");

using hal_encap::HalL3MplsEncapsulationUpdItf;

namespace recorder {
namespace {

/// Does `work` as a request that is noted, when it is one: made from outside, or by a client's callback that is.
/// `note_before` and `note_after` write its lines; the latter gets the result, when there is one, and what was thrown.
template <typename Before, typename Work, typename After>
auto AsRequest(const Before& note_before, const Work& work, const After& note_after) -> decltype(work()) {
  Recorder& recorder = Recorder::Get();
  const Place outer = Within::Here();
  const bool outermost = outer == Place::kOutside && recorder.Begin();
  if (!outermost && outer != Place::kClient) return work();
  struct End {
    Recorder& recorder;
    bool outermost;
    ~End() {
      if (outermost) recorder.Done();
    }
  } const end{recorder, outermost};
  constexpr const decltype(work())* kNoResult = nullptr;
  note_before();
  try {
    const Within request(Place::kRequest);
    if constexpr (std::is_void_v<decltype(work())>) {
      work();
      note_after(kNoResult, false);
    } else {
      const auto result = work();
      note_after(&result, false);
      return result;
    }
  } catch (...) {
    note_after(kNoResult, true);
    throw;
  }
}

template <typename Items>
std::vector<int> Numbers(const Items& items) {
  return {items.begin(), items.end()};
}

std::optional<MacAddress> Mac(const unsigned char* mac) {
  const calls::Value value = calls::ToValue(mac);
  const auto* bytes = std::get_if<MacAddress>(&value);
  return bytes ? std::optional(*bytes) : std::nullopt;
}

/// The module with a recorder in front.
class Module : public HalL3MplsEncapsulationInterface {
 public:
  static HalL3MplsEncapsulationInterface* Get() {
    static Module* const module = new Module(Start());
    return module;
  }

  int InitEncapsulationModule() const override {
    return Made([] { return Request{Operation::kInit}; }, [&] { return behind_->InitEncapsulationModule(); });
  }
  int InstallVrf(unsigned int vrf) const override {
    return Made([&] { return Request{Operation::kInstallVrf, vrf}; }, [&] { return behind_->InstallVrf(vrf); });
  }
  int DestroyVrf(unsigned int vrf) const override {
    return Made([&] { return Request{Operation::kDestroyVrf, vrf}; }, [&] { return behind_->DestroyVrf(vrf); });
  }

  int InstallVlanOutgoingEncapsulation(unsigned int id, limid_t limid, unsigned int vrf, unsigned int mtu,
                                       unsigned char* mac,
                                       std::vector<en_HalVlanCapabilities> capabilities) const override {
    return Made(
        [&] { return Vlan(Operation::kInstallVlan, id, limid, vrf, mtu, mac, capabilities); },
        [&] { return behind_->InstallVlanOutgoingEncapsulation(id, limid, vrf, mtu, mac, std::move(capabilities)); });
  }
  int DestroyVlanOutgoingEncapsulation(unsigned int id) const override {
    return Made(
        [&] {
          return Request{Operation::kDestroyVlan, id};
        },
        [&] { return behind_->DestroyVlanOutgoingEncapsulation(id); });
  }
  int ReplaceVlanOutgoingEncapsulation(unsigned int id, limid_t limid, unsigned int vrf, unsigned int mtu,
                                       unsigned char* mac,
                                       std::vector<en_HalVlanCapabilities> capabilities) const override {
    return Made(
        [&] { return Vlan(Operation::kReplaceVlan, id, limid, vrf, mtu, mac, capabilities); },
        [&] { return behind_->ReplaceVlanOutgoingEncapsulation(id, limid, vrf, mtu, mac, std::move(capabilities)); });
  }

  int InstallHostOutgoingEncapsulation(unsigned int id, unsigned int vlan_id, limid_t limid,
                                       std::vector<ActionFlags> actions, unsigned char* mac) const override {
    return Made([&] { return Host(Operation::kInstallHost, id, vlan_id, limid, actions, mac); },
                [&] { return behind_->InstallHostOutgoingEncapsulation(id, vlan_id, limid, std::move(actions), mac); });
  }
  int DestroyHostOutgoingEncapsulation(unsigned int id) const override {
    return Made(
        [&] {
          return Request{Operation::kDestroyHost, id};
        },
        [&] { return behind_->DestroyHostOutgoingEncapsulation(id); });
  }
  int ReplaceHostOutgoingEncapsulation(unsigned int id, unsigned int vlan_id, limid_t limid,
                                       std::vector<ActionFlags> actions, unsigned char* mac) const override {
    return Made([&] { return Host(Operation::kReplaceHost, id, vlan_id, limid, actions, mac); },
                [&] { return behind_->ReplaceHostOutgoingEncapsulation(id, vlan_id, limid, std::move(actions), mac); });
  }

  int InstallMplsUnprotectedOutgoingEncapsulation(unsigned int id, unsigned int vlan_id, limid_t limid,
                                                  unsigned char* mac, std::vector<unsigned int> labels,
                                                  std::vector<en_HalMplsCapabilities> capabilities,
                                                  ActionFlags action) const override {
    return Made([&] { return Mpls(Operation::kInstallMpls, id, vlan_id, limid, mac, labels, capabilities, action); },
                [&] {
                  return behind_->InstallMplsUnprotectedOutgoingEncapsulation(
                      id, vlan_id, limid, mac, std::move(labels), std::move(capabilities), action);
                });
  }
  int DestroyMplsUnprotectedOutgoingEncapsulation(unsigned int id) const override {
    return Made(
        [&] {
          return Request{Operation::kDestroyMpls, id};
        },
        [&] { return behind_->DestroyMplsUnprotectedOutgoingEncapsulation(id); });
  }
  int ReplaceMplsUnprotectedOutgoingEncapsulation(unsigned int id, unsigned int vlan_id, limid_t limid,
                                                  unsigned char* mac, std::vector<unsigned int> labels,
                                                  std::vector<en_HalMplsCapabilities> capabilities,
                                                  ActionFlags action) const override {
    return Made([&] { return Mpls(Operation::kReplaceMpls, id, vlan_id, limid, mac, labels, capabilities, action); },
                [&] {
                  return behind_->ReplaceMplsUnprotectedOutgoingEncapsulation(
                      id, vlan_id, limid, mac, std::move(labels), std::move(capabilities), action);
                });
  }

 private:
  explicit Module(const HalL3MplsEncapsulationInterface* behind) : behind_(behind) {}

  /// The module's first GetInstance(), which sets the chip up.
  static const HalL3MplsEncapsulationInterface* Start() {
    Recorder& recorder = Recorder::Get();
    return AsRequest([&] { recorder.NoteStart(); }, NextInstance,
                     [&](const auto*, bool threw) { recorder.NoteEnd(threw); });
  }

  template <typename MakeRequest, typename Work>
  static int Made(const MakeRequest& make_request, const Work& work) {
    Recorder& recorder = Recorder::Get();
    return AsRequest([&] { recorder.NoteRequest(make_request); }, work,
                     [&](const int* result, bool) { recorder.NoteResult(result); });
  }

  static Request Vlan(Operation operation, unsigned id, limid_t limid, unsigned vrf, unsigned mtu, unsigned char* mac,
                      const std::vector<en_HalVlanCapabilities>& capabilities) {
    return {operation, id, 0, limid, vrf, mtu, Mac(mac), {}, Numbers(capabilities), 0};
  }
  static Request Host(Operation operation, unsigned id, unsigned vlan_id, limid_t limid,
                      const std::vector<ActionFlags>& actions, unsigned char* mac) {
    return {operation, id, vlan_id, limid, 0, 0, Mac(mac), {}, Numbers(actions), 0};
  }
  static Request Mpls(Operation operation, unsigned id, unsigned vlan_id, limid_t limid, unsigned char* mac,
                      const std::vector<unsigned>& labels, const std::vector<en_HalMplsCapabilities>& capabilities,
                      ActionFlags action) {
    return {operation, id, vlan_id, limid, 0, 0, Mac(mac), labels, Numbers(capabilities), action};
  }

 public:
  static HalL3MplsEncapsulationInterface* NextInstance() {
    static void* const next = NextEntry("_ZN31HalL3MplsEncapsulationInterface11GetInstanceEv");
    return reinterpret_cast<HalL3MplsEncapsulationInterface* (*)()>(next)();
  }

 private:
  const HalL3MplsEncapsulationInterface* const behind_;
};

/// The registry of update clients with a recorder in front.
class Registry : public HalL3MplsEncapsulationUpdItf {
 public:
  static HalL3MplsEncapsulationUpdItf* Get() {
    static Registry* const registry = new Registry;
    return registry;
  }

  static HalL3MplsEncapsulationUpdItf* NextInstance() {
    static void* const next = NextEntry("_ZN9hal_encap28HalL3MplsEncapsulationUpdItf11GetInstanceEv");
    return reinterpret_cast<HalL3MplsEncapsulationUpdItf* (*)()>(next)();
  }

  void RegisterMplsUpdateClient(const std::string& name, std::function<void(int, unsigned int)>&& callback) override {
    Recorder& recorder = Recorder::Get();
    const bool empty = !callback;
    AsRequest([&] { recorder.NoteRegistration(name, empty); },
              [&] { behind_->RegisterMplsUpdateClient(name, empty ? nullptr : Noted(name, std::move(callback))); },
              [&](const void*, bool threw) { recorder.NoteEnd(threw); });
    recorder.Remember(name, empty);
  }

 private:
  static std::function<void(int, unsigned int)> Noted(const std::string& name,
                                                      std::function<void(int, unsigned int)>&& callback) {
    return [name, callback = std::move(callback)](int destination_id, unsigned int port) {
      if (Within::Here() != Place::kRequest) return callback(destination_id, port);
      Recorder& recorder = Recorder::Get();
      recorder.NoteNotification(name, destination_id, port);
      const Within client(Place::kClient);
      struct Entered {
        Recorder& recorder;
        const std::string* outer;
        ~Entered() { recorder.Enter(outer); }
      } const entered{recorder, recorder.Enter(&name)};
      try {
        callback(destination_id, port);
      } catch (...) {
        recorder.NoteThrow(name);
        throw;
      }
    };
  }

  HalL3MplsEncapsulationUpdItf* const behind_ = NextInstance();
};

/// Whether there is a recording, of a platform that this library was built for: told once.
bool IsInFront() {
  static const bool in_front = [] {
    Recorder& recorder = Recorder::Get();
    if (recorder.is_wanted() && !FindPlatform()) recorder.GiveUp();
    if (!recorder.is_wanted()) nothing_is_recorded = true;
    return recorder.is_wanted();
  }();
  return in_front;
}

}  // namespace
}  // namespace recorder

HalL3MplsEncapsulationInterface* HalL3MplsEncapsulationInterface::GetInstance() {
  using recorder::Module;
  return recorder::IsInFront() ? Module::Get() : Module::NextInstance();
}

HalL3MplsEncapsulationUpdItf* HalL3MplsEncapsulationUpdItf::GetInstance() {
  using recorder::Registry;
  return recorder::IsInFront() ? Registry::Get() : Registry::NextInstance();
}
