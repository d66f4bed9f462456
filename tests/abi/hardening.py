#!/usr/bin/env python3
"""hardening.py OBJDUMP READELF FILE...: whether built programs and libraries are protected as
cmake/compiler.cmake means them to be. The first file is the plug-in."""

import re
import subprocess
import sys


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def windows(objdump, _, file):
    headers = run(objdump, "-p", file)
    for name in ["HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"]:
        yield name, re.search(rf"^\s+{name}$", headers, re.M)
    yield "relocations", re.search(r"\.reloc\b", run(objdump, "-h", file))
    yield "a stack protector", "__stack_chk_fail" in run(objdump, "-t", file)


def linux(objdump, readelf, file):
    headers = run(readelf, "-hlW", file)
    yield "no fixed address", re.search(r"Type:\s+DYN", headers)
    yield "a stack that is not executable", re.search(r"GNU_STACK(\s+0x\w+){5}\s+RW ", headers)
    yield "nothing writable and executable", not re.search(r"LOAD(\s+0x\w+){5}\s+RWE", headers)
    yield "read-only relocations", "GNU_RELRO" in headers
    yield "all bound while loading", "BIND_NOW" in run(readelf, "-d", file)
    symbols = run(objdump, "-T", file)
    yield "a stack protector", "__stack_chk_fail" in symbols
    yield "checked calls of the C library", re.search(r"__\w+_chk\b", symbols)
    if "X86-64" not in headers:
        return
    yield "a shadow stack", "SHSTK" in run(readelf, "-n", file)
    code = run(objdump, "-d", "--no-show-raw-insn", file)
    # Whatever is called by its address begins so; the linker's note of that is lost to a start-up
    # file of the C library.
    yield "marked entries", len(re.findall(r"\bendbr64\b", code)) > 10


def main(objdump, readelf, *files):
    faults = []
    for file in files:
        checks = windows if file.endswith((".dll", ".exe")) else linux
        # A small library may have no buffer to protect and few entries.
        rare = () if file in (files[0], files[-1]) else (
            "a stack protector", "checked calls of the C library", "marked entries")
        faults += [f"{file}: not seen: {what}" for what, seen in checks(objdump, readelf, file)
                   if not seen and what not in rare]
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(files)} files, all protected")


main(*sys.argv[1:])
