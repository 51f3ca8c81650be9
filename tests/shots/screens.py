"""screens.py FOLDER SHEET: puts the pictures of every screen on every display onto one sheet.

FOLDER has a folder for each display, as the walks through all screens fill them. Its pictures stand
under the display's name. They are made as wide as each other, so that what is small on its display
is small on the sheet.
"""

import pathlib
import re
import subprocess
import sys

WIDTH = 300
GAP = 8
A_ROW = 8


def words(name):
    """The words of a class's name: "OnALaptopAt125Percent" is "On a laptop at 125 percent"."""
    parts = re.findall(r"[A-Z]+(?![a-z])|[A-Z][a-z]*|\d+", name)
    names = ("HD", "Arabic")
    return " ".join(parts[:1] + [part if part in names else part.lower() for part in parts[1:]])


def rows(folder):
    """The display's name, and its pictures, some beside each other."""
    pictures = sorted(map(str, folder.glob("*.png")))
    parts = ["(", "-size", f"{A_ROW * (WIDTH + GAP)}x34", "-gravity", "West", "-background",
             "white", "-fill", "#1c1c1e", "-pointsize", "20", f"label:{words(folder.name)}", ")"]
    for first in range(0, len(pictures), A_ROW):
        parts += ["(", *pictures[first:first + A_ROW], "-resize", f"{WIDTH}x", "-bordercolor",
                  "white", "-border", str(GAP // 2), "-gravity", "North", "+append", ")"]
    return parts


def main():
    folder, sheet = map(pathlib.Path, sys.argv[1:])
    parts = [part for display in sorted(folder.iterdir()) for part in rows(display)]
    subprocess.run(["convert", *parts, "-background", "white", "-gravity", "West", "-append",
                    "-colors", "255", f"PNG8:{sheet}"], check=True)
    print(sheet)


if __name__ == "__main__":
    main()
