#include <gtest/gtest.h>

#include <stdexcept>

#include "calls/Event.h"

using namespace calls;

namespace {

Event CallOf(const char* function, std::vector<Value> arguments, Value result = {}) {
  return Call{FindFunction(function), std::move(arguments), std::move(result)};
}

Event Injected(Event event) {
  std::get<Call>(event).injected = true;
  return event;
}

}  // namespace

TEST(ACall, ReadsAsOneLine) {
  EXPECT_EQ(Text(CallOf("fm_init", {}, ToValue(0))), "fm_init() = 0");
  EXPECT_EQ(Text(CallOf("bcm_mpls_egress_label_t_init", {})), "bcm_mpls_egress_label_t_init()");
  EXPECT_EQ(Text(CallOf("IntfManager::DeleteIntf", {ToValue(0), ToValue(7)}, ToValue(-7))),
            "IntfManager::DeleteIntf(unit=0, intf=7) = -7 (No such entry)");
}

TEST(ACall, ThatWasGivenItsResultIsMarked) {
  const Event event = Injected(CallOf("EgressManager::DeleteEgress", {ToValue(100001)}, ToValue(-11)));
  EXPECT_EQ(Text(event), "EgressManager::DeleteEgress(egress=100001) = -11 (Operation failed) [injected]");
  EXPECT_EQ(UnmarkedText(event), "EgressManager::DeleteEgress(egress=100001) = -11 (Operation failed)");
}

TEST(ACall, ThatThrowsSaysWhat) {
  Call call{FindFunction("fm_init"), {}};
  call.thrown = Describe(std::runtime_error("no room"));
  EXPECT_EQ(Text(call), "fm_init() threw std::runtime_error: no room");
}

TEST(ACall, ShowsWhatCameBackThroughAPointer) {
  Call call{FindFunction("limid_to_intfname"), {ToValue(limid_t{0x5000001}), ToValue(64u)}, ToValue(0)};
  call.output = ToValue("port 1 -> front");
  EXPECT_EQ(Text(call), "limid_to_intfname(limid=0x5000001, size=64) = 0 -> name=port 1 -> front");
  EXPECT_NE(Json(call).find("\"result\": 0, \"output\": {\"name\": \"port 1 -> front\"}}"), std::string::npos)
      << Json(call);
}

TEST(ALogLine, ShowsItsLevel) { EXPECT_EQ(Text(LogLine{7, "Installing"}), "log 7: Installing"); }

TEST(Events, AreReadBackFromTheirLines) {
  for (const char* line :
       {"fm_init() = 0", "fm_init() threw std::runtime_error: no room", "bcm_mpls_egress_label_t_init()", "log 7: a: b",
        "log -3: ", "fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(slot=1)",
        "IntfManager::CreateIntf(unit=0, vrf=-1, vlan=100, mac=null, mtu=1500, flags=0x20) = -4 (Invalid parameter)",
        "bcm_mpls_tunnel_initiator_set(unit=0, intf=2, num_labels=1, labels=null) = 0",
        "bcm_mpls_tunnel_initiator_set(unit=0, intf=2, num_labels=0, labels=[]) = 0",
        "EgressManager::DeleteEgress(egress=100001) = -11 (Operation failed) [injected]",
        "IntfManager::GetIntfObject(intf=1) = false", "IntfObject::macsa() = 00:00:5e:00:01:01",
        "IntfObject::ToString(deep=true) = intf 1: vrf=1, (all) of it", "limid_to_type(limid=0x1000001) = 0",
        "limid_to_type(limid=0x1000001) = 0 -> type=1", "limid_to_intfname(limid=0x1, size=64) = 0 -> name=",
        "limid_to_intfname(limid=0x1, size=64) = 0 -> name=a -> b [injected]",
        "bcm_mpls_egress_label_t_init() -> label=[{flags=0x0, label=0, qos_map=0, exp=0, ttl=0}]"}) {
    const auto event = ReadEvent(line);
    ASSERT_TRUE(event) << line;
    EXPECT_EQ(Text(*event), line);
  }
}

TEST(Events, AreNotReadFromOtherLines) {
  for (const char* line : {"", "install-vrf 1", "log x: y", "log 7 y", "no_function()", "fm_init", "fm_init(",
                           "fm_init() = x", "fm_init(unit=0) = 0", "fm_init() = 0 and more",
                           "IntfManager::DeleteIntf(unit=0) = 0", "IntfManager::DeleteIntf(intf=0, unit=0) = 0"}) {
    EXPECT_FALSE(ReadEvent(line)) << line;
  }
}

TEST(Events, AreJsonObjects) {
  EXPECT_EQ(Json(LogLine{3, "a \"b\""}), R"({"log": 3, "text": "a \"b\""})");
  EXPECT_EQ(Json(Injected(CallOf("EgressManager::DeleteEgress", {ToValue(7)}, ToValue(-11)))),
            R"({"call": "EgressManager::DeleteEgress", "arguments": {"egress": 7}, "result": -11, )"
            R"("status": "Operation failed", "injected": true})");
  EXPECT_EQ(Json(*ReadEvent(
                "IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x20) = 1")),
            R"({"call": "IntfManager::CreateIntf", "arguments": {"unit": 0, "vrf": 1, "vlan": 100, )"
            R"("mac": "00:00:5e:00:01:01", "mtu": 1500, "flags": 32}, "result": 1})");
  EXPECT_EQ(Json(*ReadEvent("bcm_mpls_tunnel_initiator_set(unit=0, intf=2, num_labels=1, labels=[{flags=0x11, "
                            "label=none, qos_map=1, exp=0, ttl=255}]) = 0")),
            R"({"call": "bcm_mpls_tunnel_initiator_set", "arguments": {"unit": 0, "intf": 2, "num_labels": 1, )"
            R"("labels": [{"flags": 17, "label": null, "qos_map": 1, "exp": 0, "ttl": 255}]}, "result": 0})");
  EXPECT_EQ(Json(*ReadEvent("IntfManager::GetIntfObject(intf=1) = true")),
            R"({"call": "IntfManager::GetIntfObject", "arguments": {"intf": 1}, "result": true})");
  EXPECT_EQ(Json(*ReadEvent("fm_init() threw x: y")), R"({"call": "fm_init", "arguments": {}, "threw": "x: y"})");
}

TEST(ARefusal, IsANegativeStatusOrALookupThatFindsNothing) {
  EXPECT_TRUE(IsRefused(*ReadEvent("fm_init() = -1 (Internal error)")));
  EXPECT_TRUE(IsRefused(*ReadEvent("IntfManager::GetIntfObject(intf=1) = false")));
  EXPECT_FALSE(IsRefused(*ReadEvent("fm_init() = 0")));
  EXPECT_FALSE(IsRefused(*ReadEvent("IntfManager::GetIntfObject(intf=1) = true")));
  EXPECT_FALSE(IsRefused(*ReadEvent("limid_is_from_type_ethernet(limid=0x1) = 0")));
  EXPECT_FALSE(IsRefused(*ReadEvent("IntfObject::macsa() = 00:00:5e:00:01:01")));
  EXPECT_FALSE(IsRefused(LogLine{3, "Error"}));
}

TEST(Functions, HaveNamesOfTheirOwnAndArgumentsUpToTheFirstWithoutAName) {
  for (const Function& function : kFunctions) {
    ASSERT_NE(FindFunction(function.name), nullptr) << function.name;
    EXPECT_EQ(&kFunctions[Named(function.name)], &function) << function.name;
    EXPECT_LE(function.argument_count(), Function::kMaxArguments);
  }
  EXPECT_EQ(FindFunction("IntfManager::CreatIntf"), nullptr);
  EXPECT_EQ(kFunctions[Named("EgressManager::UpdateEgress")].argument_count(), 10);
  EXPECT_TRUE(FindFunction("IntfManager::GetIntfObject")->can_be_refused());
  EXPECT_FALSE(FindFunction("TunnelObject::set_ttl")->can_be_refused());
}
