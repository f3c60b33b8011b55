"""What the board's program takes: its size, its instructions on an empty log, its heap, its stack."""
import os
import platform
import re
import subprocess
import tempfile

EMULATOR = ["qemu-ppc", "-L", "/usr/powerpc-linux-gnu"]
PAGE = 4096
LINKS = {"shared": "events-viewer", "with static libstdc++": "bench/with_static_libstdcxx",
         "fully static": "bench/fully_static"}
# As measured with the compiler and the libraries of Debian 12 and of Debian 13.
MEASURED = {
    "Size, shared": (132_696, 198_288),
    "Instructions on an empty log, shared": (2_213_687, None),
    "Size, with static libstdc++": (1_050_628, 1_116_220),
    "Instructions on an empty log, with static libstdc++": (370_122, None),
    "Size, fully static": (1_775_984, 1_840_316),
    "Instructions on an empty log, fully static": (81_504, None),
    "Heap of `--show` on an empty log": (139_264, 139_264),
    "Heap of `--show` on 200,000 lines": (139_264, 139_264),
    "Stack for 1,000 levels of arrays": (421_888, 421_888),
    "Stack for 1,000 levels of objects": (421_888, 421_888),
}
ROOM = 1.05


def emulator_loads_plugins():
    return b"-plugin" in subprocess.run([EMULATOR[0], "-help"], stdout=subprocess.PIPE).stdout


def stripped_size(program):
    with tempfile.NamedTemporaryFile() as copy:
        subprocess.run(["powerpc-linux-gnu-strip", "-o", copy.name, program], check=True)
        return os.path.getsize(copy.name)


def show(program, log, *settings):
    """What the program prints with these settings of the emulator."""
    return subprocess.run([*EMULATOR, *settings, program, "--show", "--input_file", log],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False).stdout


def heap(program, log):
    """The memory that the heap takes from the system, also what it gives back."""
    with tempfile.NamedTemporaryFile("r", errors="replace") as trace:
        show(program, log, "-strace", "-D", trace.name)
        # The loader calls brk too, before its own mappings.
        calls = re.split(r" brk\(NULL\) = ", trace.read())[-1]
    ends = [int(end, 16) for end in re.findall(r"(?:^| brk\(0x\w+\) = )(0x\w+)", calls)]
    mapped = re.findall(r" mmap2?\(NULL,(\d+),.*MAP_ANONYMOUS", calls)
    return max(ends) - ends[0] + sum(map(int, mapped))


def smallest_stack(program, log):
    """The smallest stack, in whole pages, in which the program still prints the log's event."""
    too_small, enough = 0, 8 * 1024 * 1024
    while enough - too_small > PAGE:
        middle = (too_small + enough) // 2 // PAGE * PAGE
        if b"Last 1 events" in show(program, log, "-s", str(middle)):
            enough = middle
        else:
            too_small = middle
    return enough


def figures(build, log, counter):
    """The name, the value, the limit and the unit of each. `log` writes a log of so many lines;
    without a counter no instructions are counted."""
    def figure(name, value, unit="bytes"):
        measured = MEASURED[name][platform.freedesktop_os_release()["VERSION_ID"] == "13"]
        return name, value, measured * ROOM, unit

    for link, path in LINKS.items():
        program = f"{build}/{path}"
        yield figure(f"Size, {link}", stripped_size(program))
        if counter is not None:
            yield figure(f"Instructions on an empty log, {link}",
                         counter.count([program, "--show", "--input_file", log(0)]), "")
    yield "Size of events-query, shared", stripped_size(f"{build}/events-query"), 270_000, "bytes"
    program = f"{build}/events-viewer"
    for lines, words in ((0, "an empty log"), (200_000, "200,000 lines")):
        yield figure(f"Heap of `--show` on {words}", heap(program, log(lines)))
    for name, opening, closing in (("arrays", "[", "]"), ("objects", '{"a":', "}")):
        inner = opening * 997 + opening[0] + closing * 998
        with tempfile.NamedTemporaryFile("w") as nested:
            nested.write(f'{{"id":948,"time":"t","vars":{{"a":{inner}}}}}\n')
            nested.flush()
            yield figure(f"Stack for 1,000 levels of {name}", smallest_stack(program, nested.name))
