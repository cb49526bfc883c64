"""installed.py CMAKE BUILD_FOLDER SOURCE_FOLDER VERSION: installs into an empty folder and looks at
what is there.
"""

import configparser
import gzip
import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

ID = "dk.tulo.TimeTracker"
SIDES = [16, 22, 24, 32, 48, 64, 128, 256]
FILES = [
    "bin/tulo-hours",
    "bin/tulo-time-tracker",
    f"share/applications/{ID}.desktop",
    "share/bash-completion/completions/tulo-hours",
    f"share/dbus-1/interfaces/{ID}1.xml",
    f"share/dbus-1/services/{ID}.service",
    "share/doc/tulo-time-tracker/changelog.gz",
    "share/doc/tulo-time-tracker/copyright",
    f"share/icons/hicolor/scalable/apps/{ID}.svg",
    f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg",
    *(f"share/icons/hicolor/{side}x{side}/apps/{ID}.png" for side in SIDES),
    "share/man/man1/tulo-hours.1.gz",
    "share/man/man1/tulo-time-tracker.1.gz",
    f"share/metainfo/{ID}.metainfo.xml",
    "share/zsh/site-functions/_tulo-hours",
]
# What the month's hours need of Qt.
QT = {"Qt6Core", "Qt6DBus"}
PROGRAMS = {"tulo-hours": "hours", "tulo-time-tracker": "app"}
# Of each manual page, some words that show that its letters came through.
PAGES = {"tulo-hours": "de faktiske og dem, der faktureres i kvarte timer. Uden valg er det denne"
                       " måneds",
         "tulo-time-tracker": "opgaver, der faktureres i kvarte timer"}
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
        for name, folder in PROGRAMS.items():
            for program in (self.root / "bin" / name, pathlib.Path(BUILD, folder, name)):
                dynamic = self.dynamic(program)
                self.assertIn("(NEEDED)", dynamic)
                self.assertNotRegex(dynamic, r"\((RPATH|RUNPATH)\)", program)

    def dynamic(self, program):
        return subprocess.run(["readelf", "--dynamic", program], check=True,
                              stdout=subprocess.PIPE, text=True).stdout

    def shouldLoadNothingForADisplayIntoTheMonthsHours(self):
        needed = re.findall(r"\(NEEDED\).*\[lib(.*?)\.so", self.dynamic(self.root / "bin/tulo-hours"))
        self.assertEqual({name for name in needed if name.startswith(("Qt", "xcb", "X11"))}, QT)

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
        for name, words in PAGES.items():
            page = self.root / f"share/man/man1/{name}.1.gz"
            run = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", page],
                                 stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                 stderr=subprocess.PIPE, text=True, env={
                                     **os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "80"})
            self.assertEqual((run.returncode, run.stderr), (0, ""))
            self.assertIn(words, " ".join(run.stdout.split()))

    def completed(self, *words):
        """What bash offers for the last of the words."""
        script = """
            source "$1"; shift
            COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
            _tulo_hours "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
            printf '%s\\n' "${COMPREPLY[@]}" """
        return self.check("bash", "-c", script, "bash",
                          self.root / "share/bash-completion/completions/tulo-hours",
                          "tulo-hours", *words).split()

    def shouldOfferEveryOptionOfTheHelpInBothShells(self):
        text = self.check(self.root / "bin/tulo-hours", "--help")
        options = set(re.findall(r"^  (--[a-z]+)", text, re.MULTILINE))
        self.assertGreaterEqual(len(options), 7)
        self.assertEqual(set(self.completed("--")), options)
        zsh = (self.root / "share/zsh/site-functions/_tulo-hours").read_text(encoding="utf-8")
        self.assertEqual(set(re.findall(r"--[a-z]+(?=[=}])", zsh)), options)

    def shouldCompleteTheValuesOfAnOption(self):
        self.assertEqual(self.completed("--format", ""), ["table", "csv", "json"])
        self.assertEqual(self.completed("--format", "=", "c"), ["csv"])
        self.assertEqual(self.completed("--by", "code,"), ["code,day", "code,task"])
        months = self.completed("--month", "")
        self.assertEqual(len(set(months)), 12)
        for month in months:
            self.check(self.root / "bin/tulo-hours", "--month", month, "--help")

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
        for name in FILES[len(PROGRAMS):]:
            content = (self.root / name).read_bytes()
            if name.endswith(".gz"):
                content = gzip.decompress(content)
            self.assertNotIn(SOURCE.encode(), content, name)


if __name__ == "__main__":
    CMAKE, BUILD, SOURCE, VERSION = sys.argv[1:]
    loader = unittest.TestLoader()
    loader.testMethodPrefix = "should"
    unittest.main(argv=sys.argv[:1], testLoader=loader)
