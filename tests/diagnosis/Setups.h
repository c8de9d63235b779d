#ifndef TESTS_DIAGNOSIS_SETUPS_H
#define TESTS_DIAGNOSIS_SETUPS_H

// What cards of tests begin with: lines of a scenario, separated by commas.
#define VLAN "install-vrf 1", "install-vrf 2", "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"
#define HOST "install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:09"
#define PUSH "install-mpls 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 labels=100,200 caps=push"

#endif
