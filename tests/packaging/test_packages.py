"""Each package of packaging/packages.txt is used by what stands beside it."""

import pathlib
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


def packages():
    """Pairs of a package and what is said of its use."""
    for line in (ROOT / "packaging/packages.txt").read_text().splitlines():
        if line and line[0] not in "#[":
            package, _, use = line.partition(" ")
            yield package, use.strip()


def is_found(use):
    """Whether the text of "path: text" stands in the file, or in a file of the folder."""
    name, _, text = use.partition(": ")
    path = ROOT / name
    files = [path] if path.is_file() else path.rglob("*")
    return bool(text) and any(
        text.encode() in file.read_bytes() for file in files if file.is_file()
    )


class PackagesTest(unittest.TestCase):
    def test_each_package_is_used_by_what_stands_beside_it(self):
        unused = [package for package, use in packages() if not is_found(use)]
        self.assertEqual(unused, [])

    def test_no_package_is_there_twice(self):
        names = [package for package, _ in packages()]
        self.assertEqual(sorted(names), sorted(set(names)))


if __name__ == "__main__":
    unittest.main()
