#!/usr/bin/env python3
"""The installed tree and the Debian package: both are made, unpacked elsewhere and used from there.

Run by CTest, which names the folders and tools in the environment.
"""
import ctypes
import gzip
import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["QUIBRA_SOURCE_DIR"])
BUILD = pathlib.Path(os.environ["QUIBRA_BUILD_DIR"])
PAGE_MAGIC = b"Velmor Quibra PageData Since 95.10"


def output_of(*command, **options):
    """Standard output of a command that must succeed and have nothing to complain of."""
    result = subprocess.run([str(word) for word in command], capture_output=True, timeout=60, **options)
    # Qt's offscreen platform tells of what it lacks.
    complaints = [line for line in result.stderr.decode().splitlines() if not line.startswith("This plugin does not")]
    if result.returncode != 0 or complaints:
        raise AssertionError(f"{command}: {result.returncode}\n{result.stdout.decode()}\n" + "\n".join(complaints))
    return result.stdout.decode()


def files_below(root):
    return {str(path.relative_to(root)) for path in root.rglob("*") if not path.is_dir()}


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        prefix = cls.folder / "prefix"
        output_of(os.environ["QUIBRA_CMAKE"], "--install", BUILD, "--prefix", prefix)
        cls.installed = prefix.rename(cls.folder / "moved elsewhere")
        # Notes of its progress go to standard error.
        subprocess.run([os.environ["QUIBRA_CPACK"], "-B", cls.folder], cwd=BUILD, check=True, capture_output=True)
        [cls.package] = cls.folder.glob("quibra_*.deb")
        output_of("dpkg-deb", "-x", cls.package, cls.folder / "unpacked")
        cls.unpacked = cls.folder / "unpacked/usr"

    def test_package_holds_the_installed_files_and_knows_what_it_needs(self):
        self.assertEqual(files_below(self.unpacked), files_below(self.installed))
        for what in ("include/quibra/quibra_plugin.h", "bin/quibra", "bin/quibra-cli", "share/quibra/samples/residents.qb", "share/doc/quibra/copyright"):
            self.assertIn(what, files_below(self.installed))
        needed = output_of("dpkg-deb", "-f", self.package, "Depends")
        for library in ("libqt6core6", "libqt6widgets6", "libqt6svg6", "libqt6dbus6", "qt6-translations-l10n"):
            self.assertRegex(needed, rf"\b{library}\b")
        control = self.folder / "control"
        output_of("dpkg-deb", "-e", self.package, control)
        self.assertEqual(files_below(control), {"control", "md5sums"}, "no scripts: triggers do what is to be done")

    def test_no_program_names_the_build_folder(self):
        for path in (self.unpacked / "bin/quibra", self.unpacked / "bin/quibra-cli"):
            self.assertNotIn(os.fsencode(BUILD), path.read_bytes(), path)

    def test_programs_look_for_libraries_in_one_place(self):
        for program in ("quibra", "quibra-cli"):
            for folder in (self.unpacked / "bin", BUILD / "bin"):
                path = re.search(r"Library runpath: \[(.*)\]", output_of("readelf", "-d", folder / program)).group(1)
                self.assertRegex(path, r"^\$ORIGIN/\.\./lib[^:]*/quibra/companion$")

    def test_command_counts_the_sample_as_the_built_one_does(self):
        arguments = ["total", "share/quibra/samples/residents.qb", "--from", "17", "--cross", "1", "--where", "Q2=2..4"]
        for root in (self.installed, self.unpacked):
            expected = output_of(BUILD / "bin/quibra-cli", *arguments, cwd=root)
            self.assertIn("243", expected)
            self.assertEqual(output_of(root / "bin/quibra-cli", *arguments, cwd=root), expected)

    def test_plugin_made_with_the_installed_header_is_called(self):
        [library] = self.unpacked.glob("**/quibra/companion/libquibra.so")
        plugins = self.folder / "data/quibra/plugins"
        plugins.mkdir(parents=True)
        source = re.search(r"```c\n(.*?)```", (self.unpacked / "share/doc/quibra/PLUGINS.md").read_text(), re.DOTALL)
        output_of("cc", "-shared", "-fPIC", "-Wall", "-Wextra", "-Werror", "-I", self.unpacked / "include", "-x", "c", "-",
                  "-o", plugins / "hello.so", input=source[1].encode())
        quibra = ctypes.CDLL(str(library))
        quibra.CallExternDLL.restype = ctypes.c_char_p
        texts = [ctypes.create_string_buffer(text, 256) for text in (b"hello", b"Title", b"Q", b"", b"")]
        name, title, label, *essays = (ctypes.cast(text, ctypes.c_char_p) for text in texts)
        os.environ["XDG_DATA_HOME"] = str(self.folder / "data")
        result = quibra.CallExternDLL(name, ctypes.byref(ctypes.c_int32()), title, 1, 1, 0,
                                      (ctypes.c_char_p * 2)(label, None), 7, (ctypes.c_int16 * 2)(1, 0),
                                      (ctypes.c_int16 * 2)(3, 0), (ctypes.c_char_p * 3)(*essays, None))
        del os.environ["XDG_DATA_HOME"]
        self.assertEqual(result, b"3")

    def test_program_opens_the_sample_and_its_help(self):
        page = self.folder / "page.qbp"
        page.write_bytes(b"\0\0" + bytes([len(PAGE_MAGIC), 0]) + bytes(255 - byte for byte in reversed(PAGE_MAGIC)))
        survey, result = "application/x-quibra", "application/x-quibra-page"
        types = {str(SOURCE / "tests/data" / name): f"{survey} クイブラのアンケート"
                 for name in ("gss.qb", "gss-1001.qb", "gss-1002.qb")} | {str(page): f"{result} クイブラの集計結果"}
        for root in (self.installed, self.unpacked):
            with tempfile.TemporaryDirectory() as home:
                shutil.copytree(root / "share/mime", f"{home}/share/mime")
                os.chmod(home, 0o700)
                environment = {"HOME": home, "XDG_RUNTIME_DIR": home, "LANG": "C.UTF-8", "PATH": os.environ["PATH"],
                               "XDG_DATA_DIRS": f"{home}/share", "QT_QPA_PLATFORM": "offscreen",
                               "QT_PLUGIN_PATH": os.environ["QUIBRA_PROBE_DIR"],
                               "QT_QPA_GENERIC_PLUGINS": "quibra-probe", "QUIBRA_PROBE_FILES": ":".join(types)}
                output_of("update-mime-database", f"{home}/share/mime", env=environment)
                seen = json.loads(output_of(root / "bin/quibra", root / "share/quibra/samples/residents.qb", cwd=home,
                                            env=environment))
                self.assertTrue((pathlib.Path(home) / ".config/quibra/quibra.ini").exists())
            help_text = seen.pop("help")
            self.assertTrue(help_text.startswith("メインウィンドウ\n"), help_text)
            self.assertEqual(seen, {
                "title": "第8回 暮らしと市政についての市民アンケート",
                "figures": "質問 32　・　サンプル 2000　・　鍵なし",
                "icon": "#1f5f8b",
                "cancel": "キャンセル",
                "desktop file": "quibra",
                "pages": len(json.loads((SOURCE / "data/help/index.json").read_text())),
                "types": types,
            })

    def test_desktop_is_told_in_the_forms_it_reads(self):
        share = self.unpacked / "share"
        output_of("desktop-file-validate", share / "applications/quibra.desktop")
        output_of("appstreamcli", "validate", "--no-net", share / "metainfo/jp.quibra.Quibra.metainfo.xml")
        version = output_of(self.unpacked / "bin/quibra-cli", "--version").split()[1]
        self.assertIn(f'<release version="{version}"', (share / "metainfo/jp.quibra.Quibra.metainfo.xml").read_text())
        self.assertTrue(gzip.decompress((share / "doc/quibra/changelog.gz").read_bytes())
                        .startswith(f"quibra ({version})".encode()))
        icons = {path.parent.parent.name: path.read_bytes() for path in share.glob("icons/hicolor/*/apps/quibra.png")}
        for folder, picture in icons.items():
            width, height = (int.from_bytes(picture[at:at + 4], "big") for at in (16, 20))
            self.assertEqual(folder, f"{width}x{height}")
        self.assertEqual(len(icons), 8)

    def test_manual_and_completion_tell_every_verb(self):
        verbs = re.findall(r"^  ([a-z-]+) ", output_of(self.unpacked / "bin/quibra-cli", "--help"), re.MULTILINE)
        for language in ("", "ja/"):
            folder = self.unpacked / "share/man" / language / "man1"
            for page in folder.glob("*.gz"):
                text = gzip.decompress(page.read_bytes())
                output_of("groff", "-k", "-man", "-ww", "-Tutf8", input=text)
            page = gzip.decompress((folder / "quibra-cli.1.gz").read_bytes()).decode().replace("\\-", "-")
            self.assertEqual(re.findall(r"^\.SS (\S+)$", page, re.MULTILINE), verbs)
        completion = (self.unpacked / "share/bash-completion/completions/quibra-cli").read_text()
        self.assertIn(f"words='{' '.join(verbs)} help --help --version'", completion)


if __name__ == "__main__":
    unittest.main()
