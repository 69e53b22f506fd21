/* A plugin of the emulator: counts the instructions that a program runs between its two marks. */
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>

/* What the emulator offers its plugins, as far as it is used here; Debian ships no header of it. */
typedef uint64_t qemu_plugin_id_t;
struct qemu_plugin_tb;
enum qemu_plugin_op
{
  QEMU_PLUGIN_INLINE_ADD_U64
};
typedef void (*tb_translated)(qemu_plugin_id_t, struct qemu_plugin_tb *);
typedef void (*syscall_made)(qemu_plugin_id_t, unsigned int, int64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t,
                             uint64_t, uint64_t, uint64_t);
size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb *);
void qemu_plugin_register_vcpu_tb_exec_inline(struct qemu_plugin_tb *, enum qemu_plugin_op, void *, uint64_t);
void qemu_plugin_register_vcpu_tb_trans_cb(qemu_plugin_id_t, tb_translated);
void qemu_plugin_register_vcpu_syscall_cb(qemu_plugin_id_t, syscall_made);

__attribute__((visibility("default"))) int qemu_plugin_version = 1;

static const uint64_t begin_mark = 0x53444d01;
static const uint64_t end_mark = 0x53444d02;
static uint64_t executed;
static uint64_t at_begin;

static void translated(qemu_plugin_id_t id, struct qemu_plugin_tb *block)
{
  (void)id;
  qemu_plugin_register_vcpu_tb_exec_inline(block, QEMU_PLUGIN_INLINE_ADD_U64, &executed, qemu_plugin_tb_n_insns(block));
}

static void asked(qemu_plugin_id_t id, unsigned int cpu, int64_t number, uint64_t a1, uint64_t a2, uint64_t a3,
                  uint64_t a4, uint64_t a5, uint64_t a6, uint64_t a7, uint64_t a8)
{
  (void)id, (void)cpu, (void)number, (void)a2, (void)a3, (void)a4, (void)a5, (void)a6, (void)a7, (void)a8;
  if (a1 == begin_mark)
    at_begin = executed;
  else if (a1 == end_mark)
    fprintf(stderr, "instructions: %" PRIu64 "\n", executed - at_begin);
}

__attribute__((visibility("default"))) int qemu_plugin_install(qemu_plugin_id_t id, const void *info, int argc,
                                                               char **argv)
{
  (void)info, (void)argc, (void)argv;
  qemu_plugin_register_vcpu_tb_trans_cb(id, translated);
  qemu_plugin_register_vcpu_syscall_cb(id, asked);
  return 0;
}
