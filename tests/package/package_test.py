#!/usr/bin/env python3
"""Takes the packages apart, and installs, runs, upgrades and removes them in scratch folders.

usage: package_test.py PACKAGES THE_SAME NEXT

The folders hold the packages, the same ones made elsewhere, and those of a later version in which
the name of the completions for fish begins with "renamed-".
"""

import gzip
import io
import os
import platform
import subprocess
import sys
import tarfile
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tests" / "install"))
from broken_links import broken_links  # noqa: E402 (one package leaves out some of the files)

SAMPLE = ROOT / "examples" / "events_report"
EMULATOR = ["qemu-ppc", "-L", "/usr/powerpc-linux-gnu"]

# What the packages need, by the Debian release that they are made on.
DEBIAN = platform.freedesktop_os_release()["VERSION_ID"]
JSONCPP, GLIBC = {"12": ("libjsoncpp25", "2.34"), "13": ("libjsoncpp26", "2.38")}[DEBIAN]

# The arguments of each program, and the file with what it prints then.
PROGRAMS = {"events-viewer": (["--show", "-n", "3", "--input_file", SAMPLE], "last_3_events"),
            "events-query": (["-n", "3", SAMPLE], "last_3_rows")}
DOC = "usr/share/doc"


def files_of(programs, zsh, doc, names):
    """What a package of these programs has: their own files, and the files `names` in `doc`."""
    return sorted([*(name for program in programs for name in (
        f"usr/bin/{program}", f"usr/share/man/man1/{program}.1.gz",
        f"usr/share/bash-completion/completions/{program}", f"usr/share/zsh/{zsh}/_{program}",
        f"usr/share/fish/vendor_completions.d/{program}.fish")),
        *(f"{DOC}/{doc}/{name}" for name in names)])


BOARD_FILES = {program: files_of([program], "site-functions", program, [
    "LICENSE", "LICENSE.jsoncpp", *["LICENSE.zlib"] * (program == "events-query")])
               for program in PROGRAMS}
PC_FILES = files_of(PROGRAMS, "vendor-completions", "events-viewer", [
    "ARCHITECTURE.md", "CONTRIBUTING.md", "README.md",
    "changelog.Debian.gz", "changelog.gz", "copyright", "doc/board.md", "doc/damage.md",
    "doc/investigation.md", "doc/log-format.md", "doc/performance.md", "doc/performance.svg",
    "doc/recipes.md",
    "doc/pictures/architecture.svg", "doc/pictures/log.svg", "doc/pictures/report.svg", "doc/pictures/table.svg",
    "examples/events_report", "examples/events_report.0"])
HARDENING = ["Position Independent Executable: yes", "Stack protected: yes",
             "Fortify Source functions: yes", "Read-only relocations: yes",
             "Immediate binding: yes"]

failures = []


def expect(truth, what):
    if not truth:
        failures.append(what)


def output_of(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, **options).stdout


def files_below(folder):
    return sorted(str(path.relative_to(folder)) for path in folder.rglob("*")
                  if path.is_symlink() or not path.is_dir())


def renamed(files):
    return sorted(name.replace("completions.d/", "completions.d/renamed-") for name in files)


def only(folder, pattern):
    found = list(folder.glob(pattern))
    if len(found) != 1:
        sys.exit(f"{len(found)} files {pattern} in {folder}, not one")
    return found[0]


def check_files(what, root, files):
    found = files_below(root)
    expect(found == sorted(files), f"{what}: has {found}, not {sorted(files)}")


def programs_in(root):
    found = sorted((root / "usr/bin").iterdir())
    expect(found, f"{root}: no program")
    return found


def check_programs(what, root, emulator):
    for program in programs_in(root):
        arguments, expected = PROGRAMS[program.name]
        run = subprocess.run([*emulator, program, *arguments], stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, check=False)
        expect(run.returncode == 0 and run.stdout == (Path(__file__).parent / expected).read_bytes(),
               f"{what}: {program.name} ends with {run.returncode} and prints\n{run.stdout.decode()}")


def check_binaries(what, root):
    for program in programs_in(root):
        # Control flow protection is for x86 alone.
        report = subprocess.run(["hardening-check", "--nocfprotection", program], check=False, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        for line in HARDENING:
            expect(line in report, f"{what}: no \"{line}\" in\n{report}")
        expect(".symtab" not in output_of("readelf", "-SW", program, text=True),
               f"{what}: {program.name} is not stripped")
        expect(bytes(ROOT) not in program.read_bytes(),
               f"{what}: {program.name} names its build folder")
        page = root / f"usr/share/man/man1/{program.name}.1.gz"
        expect(gzip.decompress(page.read_bytes()) == (ROOT / f"doc/{program.name}.1").read_bytes(),
               f"{what}: another manual of {program.name}")


def check_archive(what, data):
    """The members of a tar archive belong to root and have one date; the archive is not empty."""
    with tarfile.open(fileobj=io.BytesIO(data)) as archive:
        members = archive.getmembers()
    expect(members, f"{what}: empty")
    expect({(member.uid, member.gid) for member in members} == {(0, 0)}, f"{what}: not all root's")
    expect(len({member.mtime for member in members}) == 1, f"{what}: of several dates")
    for member in members:
        mode = 0o755 if member.isdir() or "/bin/" in member.name else 0o644
        expect(member.mode == mode, f"{what}: {member.name} has the mode {member.mode:o}")


def check_licences(doc):
    expect((doc / "LICENSE").read_bytes() == (ROOT / "LICENSE").read_bytes(), "the licence differs")
    text = " ".join((doc / "LICENSE.jsoncpp").read_text().split())
    for part in ("Copyright (c) 2007-2010 Baptiste Lepilleur",
                 "Permission is hereby granted, free of charge, to any person",
                 "The above copyright notice and this permission notice shall be included"):
        expect(part in text, f"JsonCpp's licence lacks \"{part}\"")


def newest_version(program, prefix):
    """The newest version of a library's symbols that the program asks for."""
    versions = output_of("readelf", "-VW", program, text=True).split()
    return max(tuple(map(int, version[len(prefix):].split(".")))
               for version in versions if version.startswith(prefix))


def check_board_dependencies(package, root):
    """The program must not ask for more."""
    expect(output_of("dpkg-deb", "-f", package, "Depends", text=True).strip() ==
           f"libc6 (>= {GLIBC}), libstdc++6 (>= 11)", "the board's dependencies are others")
    for program in programs_in(root):
        expect(newest_version(program, "GLIBC_") <= tuple(map(int, GLIBC.split("."))),
               f"libc6 {GLIBC} is not enough for {program.name}")
        # What libstdc++ 11 has: 3.4.29.
        expect(newest_version(program, "GLIBCXX_") <= (3, 4, 29),
               f"libstdc++6 11 is not enough for {program.name}")


def check_pc_dependencies(package):
    depends = output_of("dpkg-deb", "-f", package, "Depends", text=True)
    names = {part.split()[0] for part in depends.split(",")}
    expect(names == {"libc6", "libgcc-s1", JSONCPP, "libstdc++6", "zlib1g"},
           f"the .deb depends on {depends}")


def check_jsoncpp_of_page():
    """The board's packages contain what scripts/build-jsoncpp built; the .deb uses the system's."""
    built = (ROOT / "build/deps/powerpc/include/json/version.h").read_text()
    release = built.split("#define JSONCPP_VERSION_STRING ")[1].split('"')[1]
    system = output_of("dpkg-query", "-W", "-f", "${Version}", "libjsoncpp-dev", text=True)
    expect(system.split("-")[0] == release, f"JsonCpp {release} was built, {system} is installed")
    row = f"| Debian {DEBIAN} | {release} |"
    expect(row in (ROOT / "doc/damage.md").read_text(), f"doc/damage.md lacks the row {row}")


class Installation:
    """A scratch root with a package manager of its own. dpkg reads an .ipk too."""

    def __init__(self, folder):
        self.root, self.database = folder / "root", folder / "database"
        for made in (self.root, self.database / "info", self.database / "updates"):
            made.mkdir(parents=True)
        (self.database / "status").touch()

    def dpkg(self, *arguments):
        path = f"{os.environ['PATH']}:/usr/sbin:/sbin"
        output_of("dpkg", f"--instdir={self.root}", f"--admindir={self.database}",
                  f"--log={self.database}/log", "--force-not-root", "--force-depends",
                  "--force-architecture", "--path-include=*", *arguments,
                  stderr=subprocess.PIPE, env={**os.environ, "PATH": path})

    def version(self, name):
        return output_of("dpkg-query", f"--admindir={self.database}", "-W", "-f", "${Version}",
                         name, text=True)


def check_life(scratch, first, following, files, emulator):
    """Installs a package, upgrades it, removes it."""
    installation = Installation(scratch)
    root = installation.root
    what = first.name
    name = what.partition("_")[0]
    for package, expected in ((first, files), (following, renamed(files))):
        installation.dpkg("--install", package)
        check_files(f"{what}, installed", root, expected)
        check_programs(f"{what}, installed", root, emulator)
        version = output_of("dpkg-deb", "-f", package, "Version", text=True).strip()
        expect(installation.version(name) == version,
               f"{what}: {installation.version(name)} is installed")
    installation.dpkg("--purge", name)
    left = [str(path) for path in root.rglob("*")]
    expect(not left, f"{what}: does not remove {left}")


def unpack(archive, root):
    with tarfile.open(archive) as opened:
        names = opened.getnames()
    output_of("tar", "--extract", "--file", archive, "--directory", root)
    return names


def check_plain_life(scratch, name, first, following):
    """Unpacks the archive, unpacks the next one over it, and removes what the latter lists."""
    root = scratch / "root"
    root.mkdir(parents=True)
    real_share = scratch / "elsewhere"
    (root / "usr").mkdir(mode=0o700)
    real_share.mkdir()
    (root / "usr/share").symlink_to(real_share)

    old_names = unpack(first, root)
    expect(sorted(old_names) == BOARD_FILES[name], f"{name}, .tar.gz: has {old_names}")
    check_programs(f"{name}, .tar.gz, unpacked", root, EMULATOR)
    check_binaries(f"{name}, .tar.gz", root)
    check_licences(root / DOC / name)
    for old in old_names:
        (root / old).unlink()
    new_names = unpack(following, root)
    expect(sorted(new_names) == renamed(BOARD_FILES[name]),
           f"{name}, .tar.gz of the next version: has {new_names}")
    check_programs(f"{name}, .tar.gz, upgraded", root, EMULATOR)
    expect((root / "usr").stat().st_mode & 0o777 == 0o700 and (root / "usr/share").is_symlink(),
           f"{name}, .tar.gz: unpacking changes the folders that were there")
    for new in new_names:
        (root / new).unlink()
    left = files_below(root / "usr/bin") + files_below(real_share)
    expect(not left, f"{name}, .tar.gz: does not remove {left}")


def check_members(package, compression):
    members = output_of("ar", "t", package, text=True).split()
    expect(members == ["debian-binary", f"control.tar.{compression}", f"data.tar.{compression}"],
           f"{package.name}: is made of {members}")
    for member in members[1:]:
        data = output_of("ar", "p", package, member)
        if member.startswith("data"):
            check_archive(f"{package.name}, {member}", data)
        if compression == "gz":
            expect(data[4:8] == b"\0\0\0\0", f"{package.name}, {member}: gzip stores a date")


def unpacked(package, folder):
    output_of("dpkg-deb", "--extract", package, folder)
    return folder


def main():
    packages, same, following = map(Path, sys.argv[1:])
    names = sorted(path.name for path in packages.iterdir())
    deb = only(packages, "*.deb")
    expect(len(names) == 2 * len(PROGRAMS) + 1, f"more or fewer packages: {names}")
    for name in names:
        expect((packages / name).read_bytes() == (same / name).read_bytes(),
               f"{name}: made elsewhere it is another")

    with tempfile.TemporaryDirectory() as scratch:
        scratch = Path(scratch)
        for program, files in BOARD_FILES.items():
            ipk, next_ipk = (only(folder, f"{program}_*.ipk") for folder in (packages, following))
            plain, next_plain = (only(folder, f"{program}-*.tar.gz") for folder in (packages, following))
            root = unpacked(ipk, scratch / ipk.name)
            check_files(ipk.name, root, files)
            check_binaries(ipk.name, root)
            check_licences(root / DOC / program)
            check_board_dependencies(ipk, root)
            check_members(ipk, "gz")
            check_archive(plain.name, plain.read_bytes())
            check_life(scratch / f"{program}-ipk", ipk, next_ipk, files, EMULATOR)
            check_plain_life(scratch / f"{program}-plain", program, plain, next_plain)
        root = unpacked(deb, scratch / deb.name)
        check_files(".deb", root, PC_FILES)
        check_binaries(".deb", root)
        broken, links = broken_links(root / DOC / "events-viewer")
        expect(links and not broken, f".deb: {links} links, broken are {broken}")
        check_pc_dependencies(deb)
        check_jsoncpp_of_page()
        check_members(deb, "xz")
        check_life(scratch / "deb", deb, only(following, "*.deb"), PC_FILES, [])

    lintian = subprocess.run(["lintian", "--fail-on", "error,warning", deb], check=False, text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    expect(lintian.returncode == 0, f"lintian: {lintian.stdout}")

    if failures:
        sys.exit("\n".join(failures))
    print(f"{', '.join(names)}: the same from two folders, installed, run, upgraded and removed")


main()
