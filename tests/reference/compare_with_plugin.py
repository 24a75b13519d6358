#!/usr/bin/env python3
"""Runs the plug-in and the reference exporter in lock-step on hosts that answer at random.

All exports run in one process, so what the library keeps between exports is compared too. Every request is
compared as it comes, the file byte for byte before completion is announced. The first difference ends the
run with status 1.
"""

import argparse
import array
import ctypes
import os
import sys
import tempfile
import time
import traceback
from pathlib import Path

from random_models import RandomHost
from reference_exporter import BuildLine, FileCloses, FileOpens, PlugIn, Request

OLD_CONTENT = b"left from an older file\n" * 200_000  # longer than any export


class HostRequest(ctypes.Structure):
    """struct velm_host_request of headless_host/prevelmwdll.h"""

    _fields_ = [
        ("key", ctypes.c_void_p),
        ("key_length", ctypes.c_int32),
        ("key_position", ctypes.c_int32),
        ("call_form", ctypes.c_int32),
        ("values", ctypes.c_void_p * 5),
        ("text_lengths", ctypes.c_int32 * 2),
    ]


ANSWER = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.POINTER(HostRequest))


class Difference(Exception):
    pass


def check(what, expected, got):
    if expected != got:
        raise Difference(f"{what}\n  expected {expected!r}\n  got      {got!r}")


def is_open(path):
    """Whether this process has the file of this path open."""
    for descriptor in os.listdir("/proc/self/fd"):
        try:
            if os.path.samestat(os.stat(path), os.stat(f"/proc/self/fd/{descriptor}")):
                return True
        except OSError:
            continue
    return False


def check_bytes(expected, got):
    """Compares two input files."""
    if got == expected:
        return
    at = next((i for i, (a, b) in enumerate(zip(got, expected)) if a != b), min(len(got), len(expected)))
    line, start = expected.count(b"\n", 0, at) + 1, expected.rfind(b"\n", 0, at) + 1
    lines = [file[start : file.find(b"\n", at) + 1 or None] for file in (expected, got)]
    check(f"line {line}, column {at - start + 1} ({len(expected)} bytes expected, {len(got)} in the file)", *lines)


class Export:
    """One export of the plug-in, followed step by step."""

    def __init__(self, reference, host):
        self.steps = reference.export()
        self.host = host
        self.records = []
        self.closes = None
        self.requests = 0
        self.go_on()

    def go_on(self):
        """To the next request, through the records before it."""
        self.expected = None
        for step in self.steps:
            if isinstance(step, Request):
                self.expected = step
                return
            if isinstance(step, FileOpens):
                check("the file is open before the version panel is complete", False, is_open(step.path))
                Path(os.fsdecode(step.path)).write_bytes(OLD_CONTENT)
            elif isinstance(step, FileCloses):
                self.closes = step
            else:
                self.records.append(step)

    def answer(self, got):
        self.requests += 1
        key = ctypes.string_at(got.key, got.key_length)
        if self.expected is None:
            raise Difference(f"{key!r} after the last request")
        if self.closes:
            check("the file is open when completion is announced", False, is_open(self.closes.path))
            check_bytes(b"".join(self.records), Path(os.fsdecode(self.closes.path)).read_bytes())
            self.closes = None
        request = self.expected
        check("key", request.key.encode() + b"\0", key)
        check("call form", len(request.cells), got.call_form)
        lengths = request.text_lengths
        check("text lengths", lengths, list(got.text_lengths)[: len(lengths)])
        for position, (cell, given, address) in enumerate(zip(request.cells, request.given, got.values), 1):
            compare_value(f"{request.key}, value {position}", cell, given, address)
        for cell, written, address in zip(request.cells, self.host.answer(request), got.values):
            cell.take(written)
            write_value(cell.kind, written, address)
        self.go_on()


def compare_value(name, cell, given, address):
    """What the plug-in passes, and what stands in a field that the host may leave as it is."""
    if cell.kind == "text" and cell.value is not None:
        content = ctypes.string_at(address, cell.length)
        if not isinstance(cell.value, BuildLine):
            check(name, cell.value, content)
        elif not cell.value.matches(content):
            check(name, cell.value.form, content)
    elif cell.kind == "integer" and given:
        check(name, cell.value, ctypes.c_int32.from_address(address).value)


def write_value(kind, written, address):
    if written is None:
        return
    if kind == "integer":
        ctypes.c_int32.from_address(address).value = written
    elif kind == "real":
        ctypes.c_uint32.from_address(address).value = written
    else:
        content = array.array("I", written).tobytes() if kind == "series" else written
        ctypes.memmove(address, content, len(content))


def load(build):
    """The host library and the plug-in that is bound to it."""
    host_library = ctypes.CDLL(str(build / "libprevelmwdll.so"), mode=ctypes.RTLD_GLOBAL)
    return host_library, ctypes.CDLL(str(build / "libvelm_export.so"))


def follow(name, libraries, export):
    """Lets the plug-in export. It cannot be called off, so the first difference ends the process."""

    def stop():
        print(f"{name}, request {export.requests}: ", end="")
        error = sys.exc_info()[1]
        print(error if isinstance(error, Difference) else traceback.format_exc(), flush=True)
        os._exit(1)

    def answer(_, request):
        try:
            export.answer(request.contents)
        except BaseException:
            stop()

    host_library, plug_in = libraries
    callback = ANSWER(answer)
    host_library.velm_host_attach(callback, None)
    plug_in.importexport()
    try:
        check("requests after the export", None, export.expected and export.expected.key)
    except Difference:
        stop()
    host_library.velm_host_attach(ANSWER(), None)


def run(build, seed, count):
    libraries, reference, requests, size = load(build), PlugIn(), 0, 0
    with tempfile.TemporaryDirectory() as directory:
        for number in range(seed, seed + count):
            export = Export(reference, RandomHost(number, os.fsencode(directory)))
            follow(f"seed {number} of a run from seed {seed}", libraries, export)
            requests += export.requests
            size += sum(map(len, export.records))
    return requests, size


def options_of(description, count):
    arguments = argparse.ArgumentParser(description=description)
    arguments.add_argument("build", type=lambda name: Path(name).resolve(), help="folder of velm and the libraries")
    arguments.add_argument("--seed", type=int, default=1, help="of the first host (default %(default)s)")
    arguments.add_argument("--count", type=int, default=count, help="hosts of each kind (default %(default)s)")
    return arguments.parse_args()


def main():
    options = options_of(__doc__, 60)
    start = time.monotonic()
    requests, size = run(options.build, options.seed, options.count)
    seconds = time.monotonic() - start
    print(f"{options.count} exports, {requests} requests, {size} bytes compared in {seconds:.1f} s")


if __name__ == "__main__":
    main()
