"""The product's package, made from small hand-made files: tools/package --vendor needs neither MSVC nor Windows."""

import importlib.machinery
import importlib.util
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path
from xml.etree import ElementTree

ROOT = Path(__file__).resolve().parent.parent.parent
TOOL = ROOT / "tools/package"
HOST_AND_WINDOWS = ["KERNEL32.dll", "api-ms-win-crt-heap-l1-1-0.dll", "acdb23.dll", "accore.dll", "acad.exe",
                    "adui23.dll", "mfc140u.dll", "MSVCP140.dll", "VCRUNTIME140.dll"]
QT = ("Qt5Core", "Qt5Gui", "Qt5Network", "Qt5Widgets")
PLUGINS = ("platforms/qwindows.dll", "styles/qwindowsvistastyle.dll", "imageformats/qgif.dll", "imageformats/qico.dll",
           "imageformats/qjpeg.dll")


def load_tool():
    loader = importlib.machinery.SourceFileLoader("package_tool", str(TOOL))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    sys.dont_write_bytecode = True
    loader.exec_module(module)
    return module


def pe_file(imports=(), delayed=(), version=None, machine=0x8664, magic=0x20B) -> bytes:
    """A DLL of one section, which holds the import tables and the version resource's fixed part."""
    section_address, section_place = 0x1000, 0x200
    content = bytearray(b"\x90" * 16)  # nothing stands at the section's start

    def put(data: bytes) -> int:
        address = section_address + len(content)
        content.extend(data)
        return address

    names = [put(name.encode("ascii") + b"\0") for name in imports]
    delayed_names = [put(name.encode("ascii") + b"\0") for name in delayed]
    import_table = put(b"".join(struct.pack("<IIIII", 0, 0, 0, name, 0) for name in names) + bytes(20)) if names else 0
    delayed_table = put(b"".join(struct.pack("<II24x", 1, name) for name in delayed_names) + bytes(32)) if delayed else 0
    if version:
        major, minor, patch = version
        put(struct.pack("<IIII", 0xFEEF04BD, 0x00010000, major << 16 | minor, patch << 16))
    directories = [0] * 16
    directories[1], directories[13] = import_table, delayed_table
    dos = b"MZ" + bytes(0x3A) + struct.pack("<I", 0x40)
    optional = struct.pack("<H106xI", magic, 16) + b"".join(struct.pack("<II", at, 1 if at else 0) for at in directories)
    file_header = b"PE\0\0" + struct.pack("<HHIIIHH", machine, 1, 0, 0, 0, len(optional), 0x2022)
    section = struct.pack("<8sIIII16x", b".rdata", len(content), section_address, len(content), section_place)
    headers = dos + file_header + optional + section
    return headers + bytes(section_place - len(headers)) + content


class PackageTool(unittest.TestCase):
    def setUp(self):
        self._folder = tempfile.TemporaryDirectory()
        self.addCleanup(self._folder.cleanup)
        self.folder = Path(self._folder.name)
        self.qt = self.folder / "qt"
        self.module = self.folder / "ZR_Zentri.arx"
        self.make_qt("Zentri")
        self.make_module()

    def write(self, path: Path, content: bytes) -> None:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)

    def make_qt(self, infix: str) -> None:
        self.qt_libraries = [f"{name}{infix}.dll" for name in QT]
        for library in [*self.qt_libraries, f"Qt5Svg{infix}.dll", "libEGL.dll"]:
            own = [] if library.startswith("Qt5Core") else [f"Qt5Core{infix}.dll"]
            self.write(self.qt / "bin" / library, pe_file([*own, "MSVCP140.dll", "WS2_32.dll"]))
        for plugin in PLUGINS:
            self.write(self.qt / "plugins" / plugin, pe_file([f"Qt5Core{infix}.dll", f"Qt5Gui{infix}.dll", "OLE32.dll"]))
        # As an installed Qt has them: a debug build, and a plugin of a library that the module does not use.
        self.write(self.qt / "plugins/imageformats/qgifd.dll", pe_file(["Qt5Cored.dll"]))
        self.write(self.qt / "plugins/imageformats/qsvg.dll", pe_file([f"Qt5Svg{infix}.dll"]))
        self.write(self.qt / "mkspecs/qconfig.pri", b"QT_ARCH = x86_64\nQT_VERSION = 5.14.2\nQT_MAJOR_VERSION = 5\n")

    def make_module(self, more=(), delayed=("WININET.dll",), version=(1, 2, 3), **properties) -> None:
        imports = [*HOST_AND_WINDOWS, *self.qt_libraries, *more]
        self.write(self.module, pe_file(imports, delayed, version, **properties))

    def package(self, *options: object) -> subprocess.CompletedProcess:
        # Without any program within reach: Windows has none of those that the other package uses.
        command = [sys.executable, TOOL, "--vendor", self.module, "--qt", self.qt, "--out", self.folder / "out", *options]
        return subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                              env={"PATH": str(self.folder / "nothing"), "LANG": "C.UTF-8"}, check=False)

    def files(self) -> set:
        bundle = self.folder / "out/ZR_Zentri.bundle"
        return {file.relative_to(bundle).as_posix() for file in bundle.rglob("*") if file.is_file()}

    def text(self, name: str) -> str:
        return (self.folder / "out/ZR_Zentri.bundle" / name).read_text(encoding="utf-8")

    def assert_packaged(self, *options: object) -> None:
        result = self.package(*options)
        self.assertEqual(result.returncode, 0, result.stderr)

    def assert_refused(self, reason: str, *options: object) -> None:
        result = self.package(*options)
        self.assertEqual(result.returncode, 1, result.stdout)
        self.assertRegex(result.stderr, f"^package: .*{reason}")
        self.assertNotIn("Traceback", result.stderr)
        self.assertFalse((self.folder / "out").exists())

    def test_contains_the_module_and_what_it_needs_of_its_qt(self):
        self.assert_packaged()
        programs = {name for name in self.files() if not name.endswith((".txt", ".xml"))}
        self.assertEqual(programs, {f"Contents/{name}" for name in ("ZR_Zentri.arx", *self.qt_libraries, *PLUGINS)})
        content = (self.folder / "out/ZR_Zentri.bundle/Contents/ZR_Zentri.arx").read_bytes()
        self.assertEqual(content, self.module.read_bytes())

    def test_is_a_zip_file_too_and_the_same_each_time(self):
        self.assert_packaged()
        archive = self.folder / "out/ZR_Zentri.bundle.zip"
        before = archive.read_bytes()
        with zipfile.ZipFile(archive) as zipped:
            self.assertEqual({name[len("ZR_Zentri.bundle/") :] for name in zipped.namelist()}, self.files())
            self.assertEqual({entry.date_time for entry in zipped.infolist()}, {(1980, 1, 1, 0, 0, 0)})
        os.utime(self.module)
        self.assert_packaged()
        self.assertEqual(archive.read_bytes(), before)

    def test_contents_name_the_modules_version_and_the_product(self):
        self.assert_packaged()
        contents = ElementTree.fromstring(self.text("PackageContents.xml"))
        self.assertEqual(contents.get("AppVersion"), "1.2.3")
        self.assertEqual(contents.get("Description"), "Answers drafting questions in a docked panel.")
        self.assertNotIn("zentri-host", self.text("PackageContents.xml"))

    def test_notices_are_those_of_what_is_bundled(self):
        self.assert_packaged("--qt-source", "https://qt.example.com/sources")
        notice = self.text("Contents/Licenses/NOTICE.txt")
        named = set(re.findall(r"[A-Za-z0-9-]+\.txt", notice)) | {"NOTICE.txt"}
        self.assertEqual({Path(name).name for name in self.files() if "/Licenses/" in name}, named)
        self.assertIn("5.14.2", notice)
        self.assertIn("https://qt.example.com/sources", notice)
        for wrong in ("Debian", "GCC", "winpthreads", "tools/qt-windows"):
            self.assertNotIn(wrong, notice)

    def test_without_qt_has_the_module_alone(self):
        self.assert_packaged("--without-qt")
        self.assertEqual({name for name in self.files() if "/Licenses/" not in name},
                         {"PackageContents.xml", "Contents/ZR_Zentri.arx"})
        self.assertNotIn("Qt", self.text("Contents/Licenses/NOTICE.txt"))

    def test_another_qt_than_the_modules_is_refused(self):
        self.make_module(more=["Qt5CoreOther.dll"])
        self.assert_refused("ZR_Zentri.arx needs qt5coreother.dll, which neither the package nor the host has")

    def test_a_delayed_import_counts(self):
        self.make_module(delayed=["unknown.dll"])
        self.assert_refused("ZR_Zentri.arx needs unknown.dll")

    def test_a_host_library_can_be_added(self):
        self.make_module(more=["AcSomething.dll"])
        self.assert_refused("acsomething.dll")
        self.assert_packaged("--host-library", "AcSomething.dll")

    def test_the_run_time_library_of_a_newer_toolset_is_refused(self):
        self.write(self.qt / "bin/Qt5GuiZentri.dll", pe_file(["VCRUNTIME140_1.dll"]))
        self.assert_refused("Qt5GuiZentri.dll: vcruntime140_1.dll belongs to a newer toolset than the host's, v141")
        self.assert_packaged("--host-library", "vcruntime140_1.dll")

    def test_a_debug_build_is_refused(self):
        self.make_module(more=["mfc140ud.dll"])
        self.assert_refused("ZR_Zentri.arx: mfc140ud.dll belongs to a debug build")

    def test_the_mingw_module_is_refused(self):
        self.make_module(more=["libzentri_sdk_arx.dll"])
        self.assert_refused("needs libzentri_sdk_arx.dll")

    def test_a_plugin_that_needs_more_than_the_module_loads_is_refused(self):
        self.write(self.qt / "plugins/platforms/qwindows.dll", pe_file(["libEGL.dll"]))
        self.assert_refused("qwindows.dll needs libEGL.dll, which the module does not load")

    def test_a_missing_plugin_is_refused(self):
        (self.qt / "plugins/styles/qwindowsvistastyle.dll").unlink()
        self.assert_refused(".*qwindowsvistastyle.dll")

    def test_a_module_of_another_name_is_refused(self):
        self.module = self.module.rename(self.folder / "Other.arx")
        self.assert_refused("the module's file must be called ZR_Zentri.arx")

    def test_a_module_without_a_version_is_refused(self):
        self.make_module(version=None)
        self.assert_refused(".*ZR_Zentri.arx has no version resource")

    def test_a_file_of_another_kind_is_refused(self):
        self.make_module(machine=0x14C, magic=0x10B)
        self.assert_refused(".*ZR_Zentri.arx is not for Windows x64")
        self.write(self.module, b"\x7fELF" + bytes(200))
        self.assert_refused(".*ZR_Zentri.arx is not a Windows program or DLL")

    def test_a_truncated_file_is_refused(self):
        whole = self.module.read_bytes()
        # In the DOS header, the file header, the directories and the import table.
        for kept in (0, 2, 0x3E, 0x44, 0x60, 0x120, 0x210, 0x2C0):
            with self.subTest(kept=kept):
                self.write(self.module, whole[:kept])
                self.assert_refused(".*ZR_Zentri.arx is (damaged|not a Windows program)")

    def test_options_that_belong_together(self):
        command = [sys.executable, str(TOOL), "--vendor", str(self.module)]
        result = subprocess.run(command, stderr=subprocess.PIPE, text=True, check=False)
        self.assertEqual(result.returncode, 2)
        self.assertIn("--vendor and --qt belong together", result.stderr)


class RealFiles(unittest.TestCase):
    """Needs ZENTRI_PE_FILES: files of the mingw-w64 build, each after a colon."""

    def test_imports_are_those_that_objdump_lists(self):
        tool = load_tool()
        files = os.environ["ZENTRI_PE_FILES"].strip(":").split(":")
        for name in files:
            with self.subTest(file=name):
                listing = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", name], stdout=subprocess.PIPE, check=True,
                                         text=True, errors="replace").stdout
                expected = sorted(found.lower() for found in re.findall(r"DLL Name: (\S+)", listing))
                self.assertTrue(expected)
                self.assertEqual(sorted(tool.PeFile(Path(name)).imports), expected)


if __name__ == "__main__":
    unittest.main()
