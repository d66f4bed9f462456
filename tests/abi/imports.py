#!/usr/bin/env python3
"""imports.py OBJDUMP PLUGIN LIST HOST-LIBRARY...: whether the plug-in asks of the host's libraries
what the list says, no more and no less, and holds no virtual table of the host's values itself.
With --write the list is written anew."""

import re
import subprocess
import sys
from pathlib import Path

HEADER = """\
# What a host's libraries supply to the plug-in, each line a library and what it exports: the
# operations declared in host/, and the virtual tables of the values that the plug-in constructs.
# Nothing else is imported but the system's libraries.
"""
SHORT = [
    (r"TNuvPoint<double, \(NUV_OBJ_TYPE\)6>", "CNuvPoint"),
    (r"TNuvRect<double, \(NUV_OBJ_TYPE\)9>", "CNuvRect"),
    (r"TNuvVector<bool, \(NUV_OBJ_TYPE\)4096>", "CNuvBoolVector"),
    (r"TNuvVector<double, \(NUV_OBJ_TYPE\)4098>", "CNuvDoubleVector"),
    (r"TNuvVector<CNuvString, \(NUV_OBJ_TYPE\)4099>", "CNuvStringVector"),
    (r"TNuvVector<CNuvPoint, \(NUV_OBJ_TYPE\)4100>", "CNuvPointVector"),
    (r"TNuvVector<CNuvLine, \(NUV_OBJ_TYPE\)4102>", "CNuvLineVector"),
    (r"::(~?)TNuvVector\(", r"::\1vector("),
    (r"unsigned long long", "unsigned long"),  # std::size_t, by the platform
]


def run(*command, text=None):
    return subprocess.run(command, check=True, capture_output=True, text=True, input=text).stdout


def readable(symbols):
    """The declarations of mangled symbols, the same on every platform."""
    names = run("c++filt", text="\n".join(symbols)).splitlines()
    for pattern, replacement in SHORT:
        names = [re.sub(pattern, replacement, name) for name in names]
    return names


def imports_of_dll(objdump, plugin):
    found = []
    library = ""
    for line in run(objdump, "-p", plugin).splitlines():
        if line.startswith("\tDLL Name: "):
            library = Path(line.split(": ")[1]).stem
        elif match := re.match(r"\t[0-9a-f]+\t +\d+  (\S+)", line):
            found.append((library, match[1]))
    return [(library, symbol) for library, symbol in found if library.startswith("Nuv")]


def symbols_of_elf(objdump, library, undefined):
    lines = [line.split() for line in run(objdump, "-T", library).splitlines()]
    return [words[-1] for words in lines if len(words) > 4 and ("*UND*" in words) == undefined]


def imports_of_elf(objdump, plugin, host_libraries):
    suppliers = {}
    for library in host_libraries:
        name = Path(library).stem.removeprefix("lib")
        suppliers.update(dict.fromkeys(symbols_of_elf(objdump, library, False), name))
    wanted = symbols_of_elf(objdump, plugin, True)
    return [(suppliers[symbol], symbol) for symbol in wanted if symbol in suppliers]


def own_tables(objdump, plugin):
    """The virtual tables of values that are defined in the plug-in."""
    lines = run(objdump, "-t", plugin).splitlines()
    tables = {line.split()[-1] for line in lines if " _ZTV" in line and "*UND*" not in line}
    return [name for name in readable(sorted(tables)) if re.match("vtable for [CT]Nuv", name)]


def main(arguments):
    write = "--write" in arguments
    objdump, plugin, listed, *host_libraries = [a for a in arguments if a != "--write"]
    found = (imports_of_dll(objdump, plugin) if plugin.endswith(".dll")
             else imports_of_elf(objdump, plugin, host_libraries))
    if not found:
        sys.exit("nothing is imported from the host: the plug-in was not read rightly")
    names = readable([symbol for _, symbol in found])
    lines = sorted({f"{library}: {name}" for (library, _), name in zip(found, names)})
    if write:
        Path(listed).write_text(HEADER + "\n".join(lines) + "\n")
        return
    known = {line for line in Path(listed).read_text().splitlines() if not line.startswith("#")}
    faults = [f"imported and not listed: {line}" for line in lines if line not in known]
    faults += [f"listed and not imported: {line}" for line in sorted(known - set(lines))]
    faults += [f"defined in the plug-in: {name}" for name in own_tables(objdump, plugin)]
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(lines)} imports from the host, all listed")


main(sys.argv[1:])
