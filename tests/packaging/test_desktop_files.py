"""What desktops and software centres read of TARNE, by their own checkers."""

import pathlib
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree

PACKAGING = pathlib.Path(__file__).resolve().parents[2] / "packaging"
HOMEPAGE = "https://tarne.invalid/page?a=1&b=2"
PICTURES = ["https://tarne.invalid/one.png", "https://tarne.invalid/two.png?a=1&b=2"]


class TheMetainfo(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.file = self.folder / "com.tarne.app.metainfo.xml"

    def write(self, homepage="", pictures=()):
        """Writes the file as the build does with these options, and returns its root."""
        script = self.folder / "write.cmake"
        script.write_text(f"""set(TARNE_HOMEPAGE_URL "{homepage}")
            set(TARNE_SCREENSHOT_URLS "{';'.join(pictures)}")
            include("{PACKAGING}/Metainfo.cmake")
            tarne_write_metainfo("{self.file}")""")
        subprocess.run(["cmake", "-P", script], check=True, timeout=60)
        return xml.etree.ElementTree.parse(self.file).getroot()

    def assert_valid(self):
        done = subprocess.run(["appstreamcli", "validate", "--no-net", self.file], timeout=60,
                              capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_names_no_host_unless_told(self):
        self.write()
        self.assertNotIn("://", self.file.read_text())
        self.assert_valid()

    def test_has_the_homepage_and_the_pictures_that_the_build_was_told(self):
        root = self.write(HOMEPAGE, PICTURES)
        self.assertEqual([url.text for url in root.iter("url")], [HOMEPAGE])
        self.assertEqual([image.text for image in root.iter("image")], PICTURES)
        self.assertEqual([picture.get("type") for picture in root.iter("screenshot")],
                         ["default", None])
        self.assert_valid()


class TheDesktopEntries(unittest.TestCase):
    def test_are_valid(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        template = PACKAGING / "com.tarne.app.Notifier.desktop.in"
        notifier = pathlib.Path(folder.name) / "com.tarne.app.Notifier.desktop"
        notifier.write_text(template.read_text().replace("@notifier@", "/usr/lib/tarne/notifier"))
        done = subprocess.run(["desktop-file-validate", PACKAGING / "com.tarne.app.desktop", notifier],
                              timeout=60, capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (0, ""))


if __name__ == "__main__":
    unittest.main()
