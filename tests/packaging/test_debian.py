"""The packages' own lists agree with packaging/packages.txt, by which scripts/run installs."""

import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
# What scripts/run needs for a desktop that is not there, and what is compiled in or found by
# dpkg-shlibdeps.
NOT_OF_THE_PROGRAM = {"dbus", "gnome-keyring", "imagemagick", "xauth", "xdotool", "xvfb",
                      "bootstrap-icons", "libqt6svg6"}
COMPILED_IN = {"bootstrap-icons"}


def group(name):
    """The packages of a group of packages.txt."""
    text = (ROOT / "packaging/packages.txt").read_text()
    lines = re.search(rf"^\[{name}\]$(.*?)(^\[|\Z)", text, re.MULTILINE | re.DOTALL)[1].splitlines()
    return {line.split()[0] for line in lines if line and not line.startswith("#")}


def field(package, name):
    """The packages that a field names, in the first paragraph of debian/control that has both."""
    for paragraph in (ROOT / "debian/control").read_text().split("\n\n"):
        text = re.search(rf"^{name}:(.*?)(^\S|\Z)", paragraph, re.MULTILINE | re.DOTALL)
        if text and re.search(rf"^(Source|Package): {package}$", paragraph, re.MULTILINE):
            return {re.split(r"[ :(]", word.strip())[0] for word in text[1].split(",") if word.strip()}
    raise AssertionError(f"{package} has no {name}")


class TheControlFile(unittest.TestCase):
    def test_builds_with_what_the_scripts_install_to_build(self):
        told = field("tarne", "Build-Depends") - {"debhelper-compat", "python3"}
        self.assertEqual(told, group("build") | COMPILED_IN)

    def test_depends_on_what_the_scripts_install_to_run(self):
        told = {name for name in field("tarne", "Depends") if not name.startswith("$")}
        self.assertEqual(told, group("run") - NOT_OF_THE_PROGRAM)


if __name__ == "__main__":
    unittest.main()
