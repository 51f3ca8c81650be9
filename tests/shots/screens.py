"""screens.py FOLDER SHEET: puts the pictures of every screen on every display onto one sheet.

FOLDER has a folder for each display, as the walks through all screens fill them: each becomes a row,
under the display's name. They are made as wide as each other, so that what is small on its display
is small on the sheet.
"""

import pathlib
import re
import subprocess
import sys

WIDTH = 300
GAP = 8


def words(name):
    """The words of a class's name: "OnALaptopAt125Percent" is "On a laptop at 125 percent"."""
    parts = re.findall(r"[A-Z]+(?![a-z])|[A-Z][a-z]*|\d+", name)
    return parts[0] + " " + " ".join(part if part in ("HD",) else part.lower() for part in parts[1:])


def row(folder):
    pictures = sorted(folder.glob("*.png"))
    return ["(", "-size", f"{len(pictures) * (WIDTH + GAP)}x34", "-gravity", "West",
            "-background", "white", "-fill", "#1c1c1e", "-pointsize", "20",
            f"label:{words(folder.name)}",
            "(", *map(str, pictures), "-resize", f"{WIDTH}x", "-bordercolor", "white",
            "-border", str(GAP // 2), "-gravity", "North", "+append", ")", "-append", ")"]


def main():
    folder, sheet = map(pathlib.Path, sys.argv[1:])
    rows = [part for display in sorted(folder.iterdir()) for part in row(display)]
    subprocess.run(["convert", *rows, "-background", "white", "-gravity", "West", "-append",
                    "-colors", "255", f"PNG8:{sheet}"], check=True)
    print(sheet)


if __name__ == "__main__":
    main()
