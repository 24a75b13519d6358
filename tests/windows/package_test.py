"""What the package holds, and that it works from the folder into which it was unpacked."""

import os
import subprocess
import unittest
import zipfile

from wine_case import BUILD, WINE, WineCase

NAME = f"velm-export-{os.environ['PROJECT_VERSION']}-windows-x64"


class Package(WineCase):
    def test_unpacked(self):
        subprocess.run(["cpack", "--config", BUILD / "CPackConfig.cmake", "-B", self.directory], check=True, capture_output=True)
        with zipfile.ZipFile(self.directory / f"{NAME}.zip") as package:
            package.extractall(self.directory / "unpacked")
        folder = self.directory / "unpacked" / NAME
        self.assertLessEqual(
            {"velm.exe", "velm_export.dll", "prevelmwdll.dll", "INSTALL.txt", "README.md", "CHANGELOG.md", "docs", "examples", "include", "recorder"},
            set(os.listdir(folder)))
        self.assertEqual(["prevelmwdll.dll"], os.listdir(folder / "recorder"))
        self.assertIn(f"velm-export {os.environ['PROJECT_VERSION']} for Windows x64\r\n".encode(), (folder / "INSTALL.txt").read_bytes())
        self.assertFalse(list(folder.rglob("*.a")), "static libraries have no place in it")
        for arguments in (["example", "m.db"], ["export", "m.db", "m.inp"]):
            subprocess.run([WINE, self.prefix, folder / "velm.exe", *arguments], cwd=self.directory, check=True, capture_output=True)
        self.assertIn("m.inp", self.files())


if __name__ == "__main__":
    unittest.main()
