"""What is installed serves those who build on it: a host in C through CMake and pkg-config, and velm from any folder."""

import os
import pathlib
import platform
import re
import subprocess
import tempfile
import unittest

BUILD = pathlib.Path(os.environ["VELM_BUILD"])
SOURCES = pathlib.Path(os.environ["VELM_SOURCES"])


def run(*command, **options):
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False, **options)
    assert done.returncode == 0, f"{command}\n{done.stdout}{done.stderr}"
    return done.stdout.strip()


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.here = pathlib.Path(cls.folder.name)
        run("cmake", "--install", BUILD, "--prefix", cls.here / "first")
        cls.prefix = (cls.here / "first").rename(cls.here / "moved")  # nothing may remember where it was put first

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def expect_export(self, host, plug_in, name):
        output = self.here / name
        run(host, plug_in, output)
        self.assertIn("    3               Number of Segments", output.read_text("latin-1"))
        self.assertIn("18000.00000", output.read_text("latin-1"))

    def test_cmake_finds_the_host_library_and_its_headers(self):
        plug_in = next(self.prefix.rglob("libvelm_export.so"))
        run("cmake", "-S", SOURCES / "examples/host", "-B", self.here / "build", f"-DCMAKE_PREFIX_PATH={self.prefix}")
        run("cmake", "--build", self.here / "build")
        self.expect_export(self.here / "build/host", plug_in, "cmake.inp")

    def test_pkg_config_finds_them_too(self):
        package = next(self.prefix.rglob("velm.pc"))
        search = dict(os.environ, PKG_CONFIG_PATH=str(package.parent))
        flags = run("pkg-config", "--cflags", "--libs", "velm", env=search).split()
        run("cc", SOURCES / "examples/host/host.c", "-o", self.here / "host", *flags)
        self.expect_export(self.here / "host", run("pkg-config", "--variable=plugin", "velm", env=search), "pc.inp")

    def test_what_is_loaded_is_hardened(self):
        programs = [path for path in self.prefix.rglob("*")
                    if path.is_file() and not path.is_symlink() and path.read_bytes()[:4] == b"\x7fELF"]
        self.assertGreaterEqual(len(programs), 3)
        for program in programs:
            with self.subTest(program.name):
                properties = run("readelf", "--file-header", "--segments", "--dynamic", "--syms", "--wide", program)
                wanted = {"DYN (", "GNU_RELRO", "BIND_NOW", "__stack_chk_fail"}
                self.assertEqual({one for one in wanted if one not in properties}, set())
                self.assertNotIn("RWE", properties)
                if platform.machine() == "x86_64":  # the machine's own start files lack the mark of the whole
                    self.assertIn("endbr64", run("objdump", "--disassemble", "--section=.text", program))
        checked = run("readelf", "--syms", "--wide", self.prefix / "bin/velm")
        self.assertTrue(re.search("__[a-z]+_chk@GLIBC", checked), "calls of the C library are not checked")

    def test_velm_runs_from_any_folder(self):
        velm = self.prefix / "bin/velm"
        run(velm, "example", self.here / "estuary.db")
        run(velm, "export", self.here / "estuary.db", self.here / "estuary.inp", "--quiet", cwd="/")
        run(velm, "check", self.here / "estuary.inp", cwd="/")


if __name__ == "__main__":
    unittest.main()
