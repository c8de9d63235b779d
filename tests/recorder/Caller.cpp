// A process on a card, for the tests of what stands in front of its platform. Prints what the card saw.

#include <sys/resource.h>

#include <csignal>
#include <future>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>

#include "HalL3MplsEncapsulationInterface.h"
#include "HalL3MplsEncapsulationUpdItf.h"
#include "softcard/Card.h"

namespace {

unsigned char mac[] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x01};

HalL3MplsEncapsulationInterface& Module() { return *HalL3MplsEncapsulationInterface::GetInstance(); }

void Register(const std::string& name, std::function<void(int, unsigned)> callback) {
  hal_encap::HalL3MplsEncapsulationUpdItf::GetInstance()->RegisterMplsUpdateClient(name, std::move(callback));
}

void InstallBase() {
  Module().InstallVrf(1);
  Module().InstallVlanOutgoingEncapsulation(10, softcard::LimId("vlan100"), 1, 1500, mac, {});
}

int InstallTunnel(unsigned id) {
  return Module().InstallMplsUnprotectedOutgoingEncapsulation(id, 10, softcard::LimId("eth1"), mac, {100, 200},
                                                              {HAL_MPLS_CAPABILITY_PUSH}, HAL_ACTION_NONE);
}

int ReplaceTunnel(unsigned id) {
  return Module().ReplaceMplsUnprotectedOutgoingEncapsulation(id, 10, softcard::LimId("eth2"), mac, {300, 400},
                                                              {HAL_MPLS_CAPABILITY_PUSH}, HAL_ACTION_NONE);
}

/// Everything that a recording can hold: refusals, exceptions, clients that call back, register and throw.
void All() {
  InstallBase();
  InstallTunnel(20);
  Register("asks \"twice\"\n", [](int id, unsigned) {
    Module().InstallVrf(static_cast<unsigned>(id));
    try {
      Module().InstallHostOutgoingEncapsulation(30, 10, softcard::LimId("eth99"), {HAL_ACTION_DROP}, mac);
    } catch (const std::out_of_range&) {
    }
    Register("late", {});
    // Another module's own business with the platform.
    limid_is_from_type_ethernet(softcard::LimId("eth47"));
  });
  ReplaceTunnel(20);
  Register("late", [](int, unsigned) { throw std::runtime_error("no\nroom"); });
  try {
    ReplaceTunnel(20);
  } catch (const std::runtime_error&) {
  }
  softcard::Card::Get().faults().FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
  InstallTunnel(21);
  Module().InstallVlanOutgoingEncapsulation(11, {0xab00002a}, 1, 0, nullptr, {HAL_VLAN_CAPABILITY_STATION_FLAG});
  try {
    Module().ReplaceHostOutgoingEncapsulation(30, 0, softcard::LimId("eth99"), {HAL_ACTION_TO_CPU, ActionFlags{7}},
                                              mac);
  } catch (const std::out_of_range&) {
  }
  Module().DestroyMplsUnprotectedOutgoingEncapsulation(20);
}

void Count(int requests) {
  softcard::Card::Get().log().Take();
  const softcard::Record quiet(softcard::Card::Get().log(), softcard::CallLog::Recording::kNothing);
  InstallBase();
  for (int i = 0; i < requests / 2; ++i) {
    Module().InstallHostOutgoingEncapsulation(50, 10, softcard::LimId("eth1"), {}, mac);
    Module().DestroyHostOutgoingEncapsulation(50);
  }
}

/// As Count, with files that may hold 64 KiB only.
void CountOnAFullDisk(int requests) {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{64 << 10, limit.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  Count(requests);
  setrlimit(RLIMIT_FSIZE, &limit);
}

void DieInACallback() {
  InstallBase();
  InstallTunnel(20);
  Register("killer", [](int, unsigned) { raise(SIGKILL); });
  ReplaceTunnel(20);
}

/// A second thread makes a request while the first one's is under way.
void TwoThreads() {
  InstallBase();
  InstallTunnel(20);
  Register("waits", [](int, unsigned) { std::thread([] { Module().InstallVrf(2); }).join(); });
  ReplaceTunnel(20);
  Module().InstallVrf(3);
}

void Pause() {
  InstallBase();
  raise(SIGUSR1);
  InstallTunnel(20);
  Register("waits", [](int, unsigned) {});
  raise(SIGUSR1);
  ReplaceTunnel(20);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc > 1 ? argv[1] : "";
  const std::map<std::string, void (*)()> ways = {
      {"all", All}, {"die", DieInACallback}, {"threads", TwoThreads}, {"pause", Pause}};
  if (what == "count" && argc > 2) {
    Count(std::stoi(argv[2]));
  } else if (what == "full" && argc > 2) {
    CountOnAFullDisk(std::stoi(argv[2]));
  } else if (const auto way = ways.find(what); way != ways.end()) {
    way->second();
  } else {
    std::cerr << "usage: card_caller all|die|threads|pause|count NUMBER|full NUMBER\n";
    return 2;
  }
  for (const std::string& line : softcard::Card::Get().log().Lines()) std::cout << line << '\n';
  return 0;
}
