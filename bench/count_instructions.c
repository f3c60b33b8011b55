// A plugin for qemu's user emulation: counts the instructions that the emulated program executes, and
// writes the number into the emulator's log ("-d plugin").
//
// Debian ships no header for plugins, so the few declarations needed are here. They are version 1
// of the plugin interface, which qemu 4.2 to 8.2 load.

#include <inttypes.h>
#include <stdio.h>

typedef uint64_t PluginId;
struct Block;
struct Info;

enum { kInlineAdd = 0 };

void qemu_plugin_register_vcpu_tb_trans_cb(PluginId id, void (*callback)(PluginId, struct Block*));
void qemu_plugin_register_vcpu_tb_exec_inline(struct Block* block, int operation, void* counter,
                                              uint64_t operand);
void qemu_plugin_register_atexit_cb(PluginId id, void (*callback)(PluginId, void*), void* data);
size_t qemu_plugin_tb_n_insns(const struct Block* block);
void qemu_plugin_outs(const char* text);

int qemu_plugin_version = 1;

static uint64_t instructions;

static void countBlock(PluginId id, struct Block* block)
{
    (void)id;
    qemu_plugin_register_vcpu_tb_exec_inline(block, kInlineAdd, &instructions,
                                             qemu_plugin_tb_n_insns(block));
}

static void writeCount(PluginId id, void* data)
{
    (void)id;
    (void)data;
    char text[32];
    snprintf(text, sizeof text, "%" PRIu64 "\n", instructions);
    qemu_plugin_outs(text);
}

int qemu_plugin_install(PluginId id, const struct Info* info, int argc, char** argv)
{
    (void)info;
    (void)argc;
    (void)argv;
    qemu_plugin_register_vcpu_tb_trans_cb(id, countBlock);
    qemu_plugin_register_atexit_cb(id, writeCount, NULL);
    return 0;
}
