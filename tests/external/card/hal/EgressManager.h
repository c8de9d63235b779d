#pragma once

enum ExpLabelControl : int { EXP_LABEL_CONTROL_NONE, EXP_LABEL_CONTROL_SWAP, EXP_LABEL_CONTROL_VC };

struct EgressManager {
  int DeleteEgress(int egress);
  int UpdateEgress(int egress, int intf, unsigned char* mac, unsigned short vlan, int unit, int port, unsigned label,
                   bool to_cpu, bool drop, ExpLabelControl control);
  int CreateEgress(int intf, unsigned char* mac, unsigned short vlan, int unit, int port, unsigned label, bool to_cpu,
                   bool drop, ExpLabelControl control, int flags = 0);
};
