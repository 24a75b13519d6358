"""What the libraries import and export, and what their properties show."""

import os
import pathlib
import re
import subprocess
import unittest

from wine_case import BUILD

OBJDUMP = "x86_64-w64-mingw32-objdump"
PROCEDURES = """IMPORT_EXPORT boundaries constants dispexch flowpath flows importexport initial_conditions intro loads
    parameters segment sys_info time_functions""".split()
CALL_FORMS = [3, 4, 5, 6, 7]
ATTACH = 100
SYSTEM_LIBRARIES = {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "shell32.dll"}


def imports_of(binary):
    """{library: [name or ordinal]}, the library in lower case."""
    listing = subprocess.run([OBJDUMP, "-p", BUILD / binary], check=True, capture_output=True, text=True).stdout
    imports = {}
    for part in listing.split("\tDLL Name: ")[1:]:
        library, _, *lines = part.split("\n\n")[0].splitlines()
        rows = [line.split() for line in lines]
        # by ordinal: the slot's highest bit and the ordinal, "8000000000000003  000000003  <none>"
        imports[library.lower()] = [int(row[0], 16) & 0xFFFF if row[2] == "<none>" else row[2] for row in rows]
    return imports


def exports_of(binary):
    """The names, and the ordinals of procedures that have none."""
    listing = subprocess.run([OBJDUMP, "-p", BUILD / binary], check=True, capture_output=True, text=True).stdout
    table = listing[listing.index("Export Address Table -- Ordinal Base") :]
    addresses, names = table.split("[Ordinal/Name Pointer] Table")
    names = re.findall(r"^\t\[ *(\d+)\] (\w+)$", names.split("The Function Table")[0], re.M)
    base = int(re.match(r".*Base (\d+)", addresses)[1])
    named = {base + int(index) for index, _ in names}
    ordinals = [int(ordinal) for ordinal in re.findall(r"\+base\[ *(\d+)\] [0-9a-f]+ Export RVA", addresses)]
    return [name for _, name in names], [ordinal for ordinal in ordinals if ordinal not in named]


class Tables(unittest.TestCase):
    def test_plug_in_exports_its_fourteen_procedures_and_nothing_else(self):
        self.assertEqual(exports_of("velm_export.dll"), (PROCEDURES, []))

    def test_plug_in_imports_the_host_by_ordinal(self):
        self.assertEqual(imports_of("velm_export.dll")["prevelmwdll.dll"], CALL_FORMS)

    def test_host_library_and_recorder_have_ordinals_and_no_names(self):
        self.assertEqual(exports_of("prevelmwdll.dll"), ([], [*CALL_FORMS, ATTACH]))
        self.assertEqual(exports_of("recorder/prevelmwdll.dll"), ([], [*CALL_FORMS, ATTACH]))

    def test_tool_finds_the_host_library_by_ordinal(self):
        self.assertEqual(imports_of("velm.exe")["prevelmwdll.dll"], [ATTACH])

    def test_nothing_is_needed_but_the_system_and_the_host(self):
        for binary, more in [("velm_export.dll", {"prevelmwdll.dll"}), ("prevelmwdll.dll", set()),
                             ("recorder/prevelmwdll.dll", set()), ("velm.exe", {"prevelmwdll.dll"})]:
            with self.subTest(binary):
                needed = set(imports_of(binary))
                self.assertLessEqual(needed, SYSTEM_LIBRARIES | more)
                self.assertLessEqual(more, needed)

    def test_what_is_loaded_is_hardened(self):
        for binary in ["velm_export.dll", "prevelmwdll.dll", "recorder/prevelmwdll.dll", "velm.exe"]:
            listing = subprocess.run([OBJDUMP, "-p", BUILD / binary], check=True, capture_output=True, text=True).stdout
            for property in ["HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"]:
                self.assertIn(property, listing, binary)

    def test_properties(self):
        for binary, description in [("velm_export.dll", "Export plug-in"), ("prevelmwdll.dll", "Headless host"),
                                    ("recorder/prevelmwdll.dll", "Recorder"), ("velm.exe", "Models")]:
            with self.subTest(binary):
                content = (BUILD / binary).read_bytes()
                for name, value in [("ProductName", "velm-export"), ("ProductVersion", os.environ["PROJECT_VERSION"]),
                                    ("FileDescription", description), ("OriginalFilename", pathlib.PurePath(binary).name)]:
                    at = content.find(name.encode("utf-16-le"))
                    self.assertNotEqual(at, -1, name)
                    self.assertIn(value.encode("utf-16-le"), content[at : at + 200], name)


if __name__ == "__main__":
    unittest.main()
