"""Runs all benchmark programs and the whole-process measurements, and prints them beside their
budgets and references.

    report.py FOLDER    the folder of the release build's programs
"""

import json
import pathlib
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).parent
NOT_MEASURED = "not measured"


def run_benchmarks(folder):
    """{benchmark's name: {"ms": real time, "MB/s": throughput where it has one}}"""
    results = {}
    for program in sorted(folder.glob("*_benchmark")):
        print(f"running {program.name} ...", file=sys.stderr)
        with tempfile.NamedTemporaryFile(suffix=".json") as out:
            subprocess.run([program, f"--benchmark_out={out.name}", "--benchmark_out_format=json"],
                           check=True, stdout=subprocess.DEVNULL)
            for run in json.load(open(out.name))["benchmarks"]:
                factor = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}[run["time_unit"]]
                name = run["name"].removesuffix("/real_time").removesuffix("/iterations:1")
                results[name] = {"ms": run["real_time"] * factor,
                                 "MB/s": run.get("bytes_per_second", 0) / 1e6}
    return results


def milliseconds(results, name):
    return f"{results[name]['ms']:.1f} ms" if name in results else NOT_MEASURED


def throughput(results, name):
    return f"{results[name]['MB/s']:.0f} MB/s" if name in results else NOT_MEASURED


def budget_rows(whole, results):
    """(what, budget, measured, reference)"""
    return [
        ("first frame after process start", "0.25 s", f"{whole['first frame s']:.2f} s",
         "two GTK timers, measured earlier: 0.49 s and 0.79 s"),
        ("resident memory on the timer screen", "90 MB", f"{whole['resident MB']:.0f} MB",
         "the same two: 104 MB and 218 MB"),
        ("CPU, session running, window visible", "3 %", f"{whole['visible CPU %']:.2f} %",
         "a GTK timer without animation: 0.2 %"),
        ("CPU, session running, window hidden", "0.3 %", f"{whole['hidden CPU %']:.2f} %", ""),
        ("decoding a history of 10,000 entries", "15 ms",
         milliseconds(results, "decodeIntoRecords/10000"),
         f"simdjson into structs {milliseconds(results, 'simdjsonIntoPlainStructs/10000')}, "
         f"QJsonDocument parse alone {milliseconds(results, 'qJsonDocumentParse/10000')}"),
        ("one save into that history", "60 ms", milliseconds(results, "saveHistory/10000"), ""),
        ("all figures of one Insights drawing", "20 ms",
         milliseconds(results, "insightsDrawing/10000"), ""),
        ("disk writes, idle", "0", f"{whole['idle bytes/s'] / 1024:.1f} KiB/s", ""),
        ("disk writes, session running", "32 KiB/s",
         f"{whole['running bytes/s'] / 1024:.1f} KiB/s", ""),
        ("parseFeedbackText", "200 MB/s", throughput(results, "parseFeedbackText/1000000"), ""),
        ("parseGoals", "200 MB/s", throughput(results, "parseGoals/100000"), ""),
    ]


def growth_rows(results):
    """One row for each benchmark that was run at several sizes: its time at each of them."""
    grown = {}
    for name, figures in results.items():
        base, _, size = name.rpartition("/")
        if base and size.isdigit():
            grown.setdefault(base, {})[int(size)] = figures["ms"]
    return {base: times for base, times in grown.items() if len(times) > 1}


def print_table(rows):
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    for row in rows:
        print("  ".join(text.ljust(width) for text, width in zip(row, widths)).rstrip())


def main():
    folder = pathlib.Path(sys.argv[1])
    measured = subprocess.run([sys.executable, HERE / "whole_process.py", folder / "tarne"],
                              check=True, stdout=subprocess.PIPE, text=True)
    results = run_benchmarks(folder)
    print_table([("What", "Budget", "Measured", "Reference")]
                + budget_rows(json.loads(measured.stdout), results))
    print("\nGrowth: size and time in ms")
    for name, times in sorted(growth_rows(results).items()):
        print(f"{name:32}", "  ".join(f"{size}: {time:.3f}" for size, time in sorted(times.items())))


if __name__ == "__main__":
    main()
