"""installed.py CMAKE BUILD_FOLDER SOURCE_FOLDER VERSION: installs into an empty folder and looks at
what is there.
"""

import configparser
import gzip
import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

ID = "dk.tulo.TimeTracker"
SIDES = [16, 22, 24, 32, 48, 64, 128, 256]
FILES = [
    "bin/tulo-time-tracker",
    f"share/applications/{ID}.desktop",
    f"share/dbus-1/services/{ID}.service",
    "share/doc/tulo-time-tracker/changelog.gz",
    "share/doc/tulo-time-tracker/copyright",
    f"share/icons/hicolor/scalable/apps/{ID}.svg",
    f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg",
    *(f"share/icons/hicolor/{side}x{side}/apps/{ID}.png" for side in SIDES),
    "share/man/man1/tulo-time-tracker.1.gz",
    f"share/metainfo/{ID}.metainfo.xml",
]
# A prefix that is neither the build's nor the package's.
PREFIX = "/opt/elsewhere"


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.root = pathlib.Path(folder.name) / PREFIX.lstrip("/")
        subprocess.run([CMAKE, "--install", BUILD, "--prefix", PREFIX], check=True,
                       stdout=subprocess.DEVNULL, env={**os.environ, "DESTDIR": folder.name})

    def ini(self, file):
        content = configparser.ConfigParser(interpolation=None)
        content.optionxform = str
        content.read_string((self.root / file).read_text(encoding="utf-8"))
        return content

    def metainfo(self):
        return xml.etree.ElementTree.parse(self.root / f"share/metainfo/{ID}.metainfo.xml")

    def check(self, *command):
        run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.assertEqual(run.returncode, 0, run.stdout)
        return run.stdout

    def shouldLookForLibrariesInTheSystemsFoldersAlone(self):
        for program in (self.root / "bin/tulo-time-tracker",
                        pathlib.Path(BUILD, "app/tulo-time-tracker")):
            dynamic = subprocess.run(["readelf", "--dynamic", program], check=True,
                                     stdout=subprocess.PIPE, text=True).stdout
            self.assertIn("(NEEDED)", dynamic)
            self.assertNotRegex(dynamic, r"\((RPATH|RUNPATH)\)")

    def shouldInstallTheseFilesAndNoOthers(self):
        found = [str(file.relative_to(self.root)) for file in self.root.rglob("*")
                 if not file.is_dir()]
        self.assertEqual(sorted(found), sorted(FILES))

    def shouldHaveAValidDesktopFile(self):
        file = self.root / f"share/applications/{ID}.desktop"
        self.assertEqual(self.check("desktop-file-validate", file), "")

    def shouldHaveValidMetainfo(self):
        # There is no homepage. Versions before 1 neither miss it nor know that this could be waived.
        version = self.check("appstreamcli", "--version").split()[-1]
        waived = [] if version.startswith("0.") else ["--override=url-homepage-missing=info"]
        self.check("appstreamcli", "validate", "--no-net", *waived,
                   self.root / f"share/metainfo/{ID}.metainfo.xml")

    def shouldHaveAManualPageWithoutWarnings(self):
        page = self.root / "share/man/man1/tulo-time-tracker.1.gz"
        run = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", page],
                             stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE, text=True, env={
                                 **os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "80"})
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertIn("opgaver, der faktureres i kvarte timer", run.stdout)

    def shouldStartTheProgramThatIsInstalled(self):
        entry = self.ini(f"share/applications/{ID}.desktop")["Desktop Entry"]
        service = self.ini(f"share/dbus-1/services/{ID}.service")["D-BUS Service"]
        self.assertEqual(entry["Exec"], "tulo-time-tracker")
        self.assertEqual(service["Exec"], f"{PREFIX}/bin/tulo-time-tracker")
        self.assertTrue(os.access(self.root / "bin/tulo-time-tracker", os.X_OK))

    def shouldBeActivatedUnderItsOwnName(self):
        entry = self.ini(f"share/applications/{ID}.desktop")["Desktop Entry"]
        service = self.ini(f"share/dbus-1/services/{ID}.service")["D-BUS Service"]
        self.assertEqual(entry["DBusActivatable"], "true")
        self.assertEqual(service["Name"], ID)

    def shouldOfferToQuit(self):
        desktop = self.ini(f"share/applications/{ID}.desktop")
        self.assertEqual(desktop["Desktop Entry"]["Actions"], "quit;")
        self.assertEqual(desktop["Desktop Action quit"]["Name"], "Afslut")

    def shouldDrawTheIconInTheSizeThatItsFolderSays(self):
        for side in SIDES:
            png = (self.root / f"share/icons/hicolor/{side}x{side}/apps/{ID}.png").read_bytes()
            self.assertEqual(png[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(struct.unpack(">II", png[16:24]), (side, side))

    def shouldHaveOnlyFilledPathsInTheSymbolicIcon(self):
        icon = self.root / f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg"
        elements = [element.tag.rpartition("}")[2]
                    for element in xml.etree.ElementTree.parse(icon).iter()]
        self.assertEqual(set(elements), {"svg", "style", "g", "path"})
        self.assertNotIn("stroke", icon.read_text(encoding="utf-8"))

    def shouldBeOfOneVersion(self):
        release = self.metainfo().find("releases/release")
        self.assertEqual(release.get("version"), VERSION)
        path = self.root / "share/doc/tulo-time-tracker/changelog.gz"
        with gzip.open(path, "rt", encoding="utf-8") as changelog:
            self.assertEqual(changelog.readline().split(" ")[1], f"({VERSION})")

    def shouldSpeakWithOneVoice(self):
        entry = self.ini(f"share/applications/{ID}.desktop")["Desktop Entry"]
        root = self.metainfo().getroot()
        self.assertEqual(root.findtext("id"), ID)
        self.assertEqual(root.findtext("name"), entry["Name"])
        self.assertEqual(root.findtext("summary"), entry["Comment"])
        self.assertEqual(root.findtext("launchable"), f"{ID}.desktop")
        self.assertEqual(entry["Icon"], ID)

    def shouldHaveNoAddressOfTheBuild(self):
        for name in FILES[1:]:
            content = (self.root / name).read_bytes()
            if name.endswith(".gz"):
                content = gzip.decompress(content)
            self.assertNotIn(SOURCE.encode(), content, name)


if __name__ == "__main__":
    CMAKE, BUILD, SOURCE, VERSION = sys.argv[1:]
    loader = unittest.TestLoader()
    loader.testMethodPrefix = "should"
    unittest.main(argv=sys.argv[:1], testLoader=loader)
