"""Whether something that goes on for long stays as it is: figures of processes, and a judgement."""

import dataclasses
import os
import pathlib
import statistics

# Below this, growth is what an allocator and a garbage collector make of their room.
ALLOWED_GROWTH_BYTES = 2 * 1024 * 1024


@dataclasses.dataclass(frozen=True)
class Figures:
    """What a process holds at one moment."""

    memory: int  # Bytes of its own that no file backs.
    descriptors: int
    threads: int


def figures_of(process):
    """The figures of a process now; OSError when it has ended."""
    folder = pathlib.Path(f"/proc/{process}")
    lines = (folder / "smaps_rollup").read_text().splitlines()[1:]
    rollup = dict(line.split(":", 1) for line in lines)
    kilobytes = sum(int(rollup[name].split()[0]) for name in ("Anonymous", "Swap"))
    return Figures(memory=kilobytes * 1024, descriptors=len(os.listdir(folder / "fd")),
                   threads=len(os.listdir(folder / "task")))


def growth(series):
    """From the first quarter of a series to its last: the difference of their medians."""
    quarter = max(1, len(series) // 4)
    return statistics.median(series[-quarter:]) - statistics.median(series[:quarter])


def faults(name, series):
    """What has grown in a series of figures, which begins after the warm-up, in sentences."""
    memory = growth([figures.memory for figures in series])
    told = [f"{name} has grown by {memory / 1024:,.0f} KiB"] if memory > ALLOWED_GROWTH_BYTES else []
    for kind in ("descriptors", "threads"):
        counts = [getattr(figures, kind) for figures in series]
        if growth(counts) > 0:
            told.append(f"{name} holds more {kind}: {counts}")
    return told
