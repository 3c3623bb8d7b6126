"""What is linked into the programs, with its licences, and how a program shows that it is."""

import os
import subprocess
from dataclasses import dataclass

OWN_LICENCE = "MIT"
RUNTIME = "GPL-3.0-or-later WITH GCC-exception-3.1"
LLVM = "Apache-2.0 WITH LLVM-exception"
GDTOA = """Permission to use, copy, modify, and distribute this software and its documentation for any
purpose and without fee is hereby granted, provided that the above copyright notice appear in all
copies and that both that the copyright notice and this permission notice and warranty disclaimer
appear in supporting documentation, and that the name of Lucent or any of its entities not be used in
advertising or publicity pertaining to distribution of the software without specific, written prior
permission."""
# Licences that the list of SPDX does not have.
OTHER_LICENCES = {
    "LicenseRef-Lucent": GDTOA,
    "LicenseRef-public-domain": "Placed in the public domain by its authors; there is no copyright.",
}


@dataclass(frozen=True)
class Component:
    """A library. `package` is Debian's package that it is linked from."""

    name: str
    package: str
    licence: str
    copyright: str

    def version(self):
        """As Debian's package has it here."""
        return subprocess.run(
            ["dpkg-query", "-W", "-f", "${Version}", self.package],
            capture_output=True, text=True, check=True,
        ).stdout


CLI11 = Component("CLI11", "libcli11-dev", "BSD-3-Clause", "2017-2020 University of Cincinnati, developed by Henry Schreiner under NSF AWARD 1414736")
RAPIDJSON = Component("RapidJSON", "rapidjson-dev", "MIT", "2015 THL A29 Limited, a Tencent company, and Milo Yip")
SQLITE = Component("SQLite", "libsqlite3-dev", "blessing", "NONE")
GLIBC = Component("GNU C library", "libc6-dev", "LGPL-2.1-or-later", "Free Software Foundation, Inc. and others")
LIBSTDCXX = Component("GNU C++ library and libgcc", "libstdc++-12-dev", RUNTIME, "Free Software Foundation, Inc.")
ARM_GLIBC = Component("GNU C library for arm64", "libc6-dev-arm64-cross", GLIBC.licence, GLIBC.copyright)
ARM_LIBSTDCXX = Component("GNU C++ library and libgcc for arm64", "libstdc++-12-dev-arm64-cross", RUNTIME, LIBSTDCXX.copyright)
WINDOWS_LIBSTDCXX = Component("GNU C++ library and libgcc for Windows", "g++-mingw-w64-x86-64-posix", RUNTIME, LIBSTDCXX.copyright)
MINGW = Component("mingw-w64 runtime", "mingw-w64-x86-64-dev", "ZPL-2.1 AND LicenseRef-public-domain AND LicenseRef-Lucent", "2009-2016 the mingw-w64 project; 1997-2001 Lucent Technologies")
WINPTHREADS = Component("winpthreads", "mingw-w64-x86-64-dev", "MIT AND BSD-3-Clause", "2011 the mingw-w64 project; 2010-2011 Lockless Inc.")
NSIS = Component("NSIS", "nsis", "Zlib AND CPL-1.0 WITH LZMA-exception", "1999-2021 Contributors; 1999-2006 Igor Pavlov")
MUSL = Component("musl and the system of emscripten", "emscripten", "MIT", "2005-2020 Rich Felker, et al.; 2010-2022 Emscripten authors")
DLMALLOC = Component("dlmalloc", "emscripten", "CC0-1.0", "NONE")
LIBCXX = Component("libc++, libc++abi, libunwind and compiler-rt", "emscripten", LLVM, "2003-2022 the LLVM project")

# Packages of Debian that its programs are linked with when they start.
SYSTEM_LIBRARIES = {"libc6": GLIBC.licence, "libgcc-s1": RUNTIME, "libstdc++6": RUNTIME}

COMMAND_LINES = ("orvelin-analyse", "orvelin-book", "orvelin-perft", "orvelin-tables")
READERS_OF_JSON = ("orvelin-analyse", "orvelin-board-core")


def _linked_alone(content):
    """What the form of a program tells of the libraries of its compiler; empty without a program."""
    if content.startswith(b"\x7fELF"):
        # Only what has an interpreter takes its libraries from the system.
        if b"/lib/ld-linux" in content or b"/lib64/ld-linux" in content:
            return ()
        is_arm = content[18:20] == b"\xb7\x00"
        return (ARM_GLIBC, ARM_LIBSTDCXX) if is_arm else (GLIBC, LIBSTDCXX)
    if content.startswith(b"MZ"):
        return (NSIS,) if b"Nullsoft" in content else (MINGW, WINPTHREADS, WINDOWS_LIBSTDCXX)
    if content.startswith(b"\0asm"):
        return (MUSL, DLMALLOC, LIBCXX)
    return ()


def is_program(content):
    return content.startswith((b"\x7fELF", b"MZ", b"\0asm"))


def linked(name, content):
    """The components within a program, by its file."""
    if not is_program(content):
        return ()
    program = os.path.basename(name).removesuffix(".exe").removesuffix(".wasm")
    found = list(_linked_alone(content))
    if program in COMMAND_LINES:
        found.append(CLI11)
    if program in READERS_OF_JSON:
        found.append(RAPIDJSON)
    if b"sqlite_autoindex_" in content:
        found.append(SQLITE)
    return tuple(found)
