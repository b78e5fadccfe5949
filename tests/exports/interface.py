#!/usr/bin/env python3
"""What the built dynamic libraries export, import and need: tests that read an ELF library or a Windows DLL.

usage: interface.py exports LIBRARY REFERENCE   the exported names are those of the reference list, to which `renew` after
                                                it sets the list
       interface.py imports OBJECT...           the library's own code calls nothing beyond ALLOWED_IMPORTS, so it
                                                neither allocates nor prints, throws, locks or starts a thread
       interface.py needs LIBRARY [OTHER...]    the library needs the C and C++ run-times and the OTHER libraries only
       interface.py load OBJECT...              no code of the library runs when it is loaded
       interface.py writable NAME OBJECT...     no object outlives a call but NAME (or - for none), so threads share
                                                nothing else
       interface.py inline OBJECT...            there is no inline function whose copy other code could be given
       interface.py operations HEADER CALLS     the file CALLS calls every public member of the class in HEADER
       interface.py sources ROOT SOURCE...      every .cpp file in the folders of the sources is one of them

NM and OBJDUMP in the environment name the tools for the platform of the library.
"""
import difflib
import os
import pathlib
import re
import subprocess
import sys

MATHEMATICS = {"acos", "asin", "atan", "atan2", "copysign", "cos", "exp", "fabs", "modf", "sin", "sincos", "sqrt"}
MEMORY = {"memcpy", "memmove", "memset"}
COMPILER = {"_GLOBAL_OFFSET_TABLE_", "__stack_chk_fail"}
ALLOWED_IMPORTS = MATHEMATICS | MEMORY | COMPILER

# std::size_t is another type on each platform, and a std::span without a fixed extent shows its largest value.
PLATFORM_NAMES = [(r", \d{20}ull?(?=>)", ""), (r"unsigned long( long)?", "std::size_t")]

NEEDS = re.compile(r"(libc|libm|libstdc\+\+|libc\+\+|libc\+\+abi|libgcc_s|ld-linux.*)\.so\.\d+"
                   r"|KERNEL32\.dll|msvcrt\.dll|api-ms-win-crt-[a-z0-9-]+\.dll")

# What the compiler and the standard library keep for themselves
FOREIGN = re.compile(r"\.|DW\.ref\.|(guard variable for )?std::")


def run(tool, *arguments):
    command = [os.environ.get(tool.upper(), tool), *arguments]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def elf_exports(library):
    for line in run("nm", "-D", "-C", "--defined-only", library).splitlines():
        _, letter, name = line.split(" ", 2)
        yield {"T": "function", "D": "object"}.get(letter, f"({letter})"), name


def dll_exports(library):
    dump = run("objdump", "-h", "-p", library)
    base = int(re.search(r"^ImageBase\s+(\w+)", dump, re.M).group(1), 16)
    sections = [(int(vma, 16) - base, int(size, 16), flags)
                for size, vma, flags in re.findall(r"^ *\d+ \.\S+ +(\w+) +(\w+) .*\n(.*)$", dump, re.M)]
    addresses, _, names = dump[dump.index("Export Address Table --"):].partition("[Ordinal/Name Pointer] Table")
    addresses = dict(re.findall(r"^\t\[ *(\d+)\] .* (\w+) Export RVA$", addresses, re.M))
    for index, name in re.findall(r"^\t\[ *(\d+)\].* (\S+)$", names, re.M):
        address = int(addresses[index], 16)
        flags = next(flags for start, size, flags in sections if start <= address < start + size)
        kind = "function" if "CODE" in flags else "(read-only)" if "READONLY" in flags else "object"
        yield kind, run("c++filt", name).strip()


def portable(name):
    for platforms, everywhere in PLATFORM_NAMES:
        name = re.sub(platforms, everywhere, name)
    return name


def check_exports(library, reference, renew=None):
    exports = dll_exports if library.endswith(".dll") else elf_exports
    built = sorted(f"{kind} {portable(name)}" for kind, name in exports(library))
    lines = pathlib.Path(reference).read_text(encoding="utf-8").splitlines()
    comments = [line for line in lines if line.startswith("#")]
    if renew:
        pathlib.Path(reference).write_text("\n".join([*comments, *built]) + "\n", encoding="utf-8")
        return True
    difference = list(difflib.unified_diff(lines[len(comments):], built, os.path.basename(reference),
                                           os.path.basename(library), lineterm="", n=0))
    print(*difference, f"{len(built)} exported names", sep="\n")
    return not difference


def names(objects, option):
    return set(re.findall(r"^[0-9a-f ]+ \S (\S+)$", run("nm", option, *objects), re.M))


def check_imports(*objects):
    foreign = names(objects, "-u") - names(objects, "--defined-only") - ALLOWED_IMPORTS
    print(*(f"not allowed: {name}" for name in sorted(foreign)), f"{len(objects)} object files", sep="\n")
    return not foreign


def check_needs(library, *others):
    needed = re.findall(r"^\s*(?:NEEDED|DLL Name:)\s+(\S+)", run("objdump", "-p", library), re.M)
    own = re.compile("|".join(rf"lib{other}\.so\.[\d.]+|{other}\.dll" for other in others) or "$")
    foreign = [name for name in needed if not NEEDS.fullmatch(name) and not own.fullmatch(name)]
    print("needs", *needed)
    print(*(f"not allowed: {name}" for name in foreign), sep="\n")
    return bool(needed) and not foreign


def check_load(*objects):
    found = re.findall(r"^ *\d+ (\.(?:init_array|ctors|CRT\$X)\S*)", run("objdump", "-h", *objects), re.M)
    print(*(f"run at load: {section}" for section in found), f"{len(objects)} object files", sep="\n")
    return not found


def check_writable(allowed, *objects):
    symbols = [[cell.strip() for cell in line.split("|")] for line in run("nm", "-C", "-f", "sysv", *objects).splitlines()]
    found = {cells[0] for cells in symbols if len(cells) == 7 and not FOREIGN.match(cells[0])
             and re.match(r"\.(data|[td]?bss|tdata|tls)(?!\.rel\.ro)|\*COM\*", cells[6])}
    print("writable:", *sorted(found))
    return found == {allowed} - {"-"}


def check_inline(*objects):
    found = re.findall(r"^[0-9a-f]+ [WVui] (.+)$", run("nm", "-C", "--defined-only", *objects), re.M)
    print(*(f"shared with other code: {name}" for name in found), f"{len(objects)} object files", sep="\n")
    return not found


def check_operations(header, calls):
    public = re.sub(r"//.*", "", pathlib.Path(header).read_text(encoding="utf-8")).partition("private:")[0]
    members = set(re.findall(r"(\w+)\(", public)) - {"CVorbel", "sizeof", "static_assert"}
    through_table = {name for name in members if name.startswith("s_LagrangeOpt_")}
    called = set(re.findall(r"(?:\.|::)(\w+)\(", pathlib.Path(calls).read_text(encoding="utf-8")))
    print(*(f"{name}() is not called in {calls}" for name in sorted(members - through_table - called)), sep="\n")
    print(f"{len(members)} members")
    return bool(members) and members - through_table <= called


def check_sources(root, *sources):
    listed = {pathlib.Path(root, source) for source in sources}
    there = {path for folder in {source.parent for source in listed} for path in folder.glob("*.cpp")}
    print(*(f"not built: {path}" for path in sorted(there - listed)), f"{len(there)} sources", sep="\n")
    return there <= listed


CHECKS = {"exports": check_exports, "imports": check_imports, "needs": check_needs, "load": check_load,
          "writable": check_writable, "inline": check_inline, "operations": check_operations,
          "sources": check_sources}

if len(sys.argv) < 3 or sys.argv[1] not in CHECKS:
    sys.exit(__doc__)
sys.exit(0 if CHECKS[sys.argv[1]](*sys.argv[2:]) else 1)
