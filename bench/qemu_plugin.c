/* A plugin for qemu's user emulation: counts the guest's instructions between a program's system calls to
 * InstructionMeter's number, and writes a line for each report to the file named by the argument out=FILE.
 * qemu's plugin header is not packaged, so what is used of it is declared here. */

#include <inttypes.h>
#include <stdio.h>
#include <string.h>

#define EXPORT __attribute__((visibility("default")))

struct qemu_plugin_tb;
struct qemu_plugin_insn;
enum { QEMU_PLUGIN_INLINE_ADD_U64 = 0 };
typedef void (*tb_callback)(uint64_t id, struct qemu_plugin_tb* tb);
typedef void (*syscall_callback)(uint64_t id, unsigned int vcpu, int64_t number, uint64_t a1, uint64_t a2, uint64_t a3,
                                 uint64_t a4, uint64_t a5, uint64_t a6, uint64_t a7, uint64_t a8);
size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb* tb);
struct qemu_plugin_insn* qemu_plugin_tb_get_insn(const struct qemu_plugin_tb* tb, size_t index);
void qemu_plugin_register_vcpu_insn_exec_inline(struct qemu_plugin_insn* insn, int operation, void* counter,
                                                uint64_t addend);
void qemu_plugin_register_vcpu_tb_trans_cb(uint64_t id, tb_callback callback);
void qemu_plugin_register_vcpu_syscall_cb(uint64_t id, syscall_callback callback);

EXPORT int qemu_plugin_version = 1;

static uint64_t executed, started_at, total, overhead;
static int calibrated;
static FILE* out;

static void count_instructions(uint64_t id, struct qemu_plugin_tb* tb) {
  (void)id;
  for (size_t i = 0; i < qemu_plugin_tb_n_insns(tb); ++i) {
    qemu_plugin_register_vcpu_insn_exec_inline(qemu_plugin_tb_get_insn(tb, i), QEMU_PLUGIN_INLINE_ADD_U64, &executed,
                                               1);
  }
}

static void obey(uint64_t id, unsigned int vcpu, int64_t number, uint64_t what, uint64_t a2, uint64_t a3, uint64_t a4,
                 uint64_t a5, uint64_t a6, uint64_t a7, uint64_t a8) {
  (void)id, (void)vcpu, (void)a2, (void)a3, (void)a4, (void)a5, (void)a6, (void)a7, (void)a8;
  if (number != 65000) {
    return;
  }
  switch (what) {
    case 0: /* reset */
      total = 0;
      calibrated = 0;
      break;
    case 1: /* start */
      started_at = executed;
      break;
    case 2: /* stop; the first pair after a reset has nothing between and measures the calls themselves */
      if (!calibrated) {
        overhead = executed - started_at;
        calibrated = 1;
      } else {
        total += executed - started_at - overhead;
      }
      break;
    default: /* report */
      fprintf(out, "%" PRIu64 "\n", total);
      fflush(out);
  }
}

EXPORT int qemu_plugin_install(uint64_t id, const void* info, int argc, char** argv) {
  (void)info;
  out = argc == 1 && strncmp(argv[0], "out=", 4) == 0 ? fopen(argv[0] + 4, "w") : NULL;
  if (out == NULL) {
    fprintf(stderr, "qemu_plugin: give it out=FILE, a file that can be written\n");
    return 1;
  }
  qemu_plugin_register_vcpu_tb_trans_cb(id, count_instructions);
  qemu_plugin_register_vcpu_syscall_cb(id, obey);
  return 0;
}
