#!/bin/sh
# The first program of the guest: loads what its kernel needs for MPLS, then does what its console says. Whatever it
# writes to outside /run and /tmp is the machine's.
export PATH=/usr/sbin:/usr/bin:/sbin:/bin
mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t tmpfs tmpfs /run
mount -t tmpfs tmpfs /tmp
mkdir /run/lab
mount -t hostfs -o /run/lab none /run/lab
stty -echo -onlcr 2>/dev/null
modules=/usr/lib/uml/modules/$(uname -r)/kernel
for module in lib/crc-ccitt net/ipv6/ipv6 net/ipv4/ip_tunnel net/mpls/mpls_router net/mpls/mpls_iptunnel drivers/net/vrf; do
  insmod "$modules/$module.ko" || echo "no module $module"
done
echo 1048575 >/proc/sys/net/mpls/platform_labels
# A pushed label has a TTL of its own, 255, and a popped one leaves the packet's alone.
echo 0 >/proc/sys/net/mpls/ip_ttl_propagate
echo 1 >/proc/sys/net/mpls/conf/lo/input
echo 1 >/proc/sys/net/ipv4/ip_forward
echo 1 >/proc/sys/net/ipv6/conf/all/forwarding
ip link set lo up
echo "guest: up"
while read -r line; do
  eval "$line" </dev/null
  echo "guest: status $?"
done
echo o >/proc/sysrq-trigger
