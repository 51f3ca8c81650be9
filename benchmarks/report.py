"""Runs all benchmark programs and the measurements from outside, and prints them beside their budgets
and references.

    report.py FOLDER    the folder of the release build's programs
"""

import contextlib
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).parent
NOT_MEASURED = "not measured"
# They wait for the display at each of hundreds of frames, over which their figures are.
DRAWING = ("history_tab_benchmark", "long_text_benchmark", "schedule_benchmark", "wrapup_benchmark")
# Two thirds of a minute for figures that whole_process.py takes of the whole program.
LEFT_OUT = "-diskBytes"


class Durations:
    """How long each part of the report took."""

    def __init__(self):
        self.rows = []

    @contextlib.contextmanager
    def part(self, name):
        print(f"running {name} ...", file=sys.stderr)
        begin = time.monotonic()
        yield
        self.rows.append((name, time.monotonic() - begin))


def run_benchmarks(folder, durations):
    """{benchmark's name: {"ms": time, "MB/s": throughput where it has one}}

    The median of three runs, or one run where it draws: of processor time, which other programs of
    the machine change little, but of real time where a benchmark waits for the disk.
    """
    results = {}
    for program in sorted(folder.glob("*_benchmark")):
        with tempfile.NamedTemporaryFile(suffix=".json") as out, durations.part(program.name):
            subprocess.run([program, f"--benchmark_out={out.name}", "--benchmark_out_format=json",
                            f"--benchmark_repetitions={1 if program.name in DRAWING else 3}",
                            f"--benchmark_filter={LEFT_OUT}",
                            "--benchmark_min_time=0.2",
                            # What is compared is not to be measured one after the other.
                            "--benchmark_enable_random_interleaving=true"],
                           check=True, stdout=subprocess.DEVNULL, cwd=folder)
            for run in json.load(open(out.name))["benchmarks"]:
                # The aggregates of several runs stand behind them.
                if run.get("aggregate_name", "median") != "median":
                    continue
                clock = "real_time" if run["run_name"].endswith("/real_time") else "cpu_time"
                factor = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}[run["time_unit"]]
                name = re.sub("/(real_time|process_time|iterations:[0-9]+|repeats:[0-9]+)", "",
                              run["run_name"])
                results[name] = {"ms": run[clock] * factor,
                                 "slowest ms": run.get("slowest", 0),
                                 "bytes": run.get("bytes", 0),
                                 "resident KiB": run.get("resident", 0) / 1024,
                                 "before KiB": run.get("before", 0) / 1024,
                                 "MB/s": run.get("bytes_per_second", 0) / 1e6}
    return results


def milliseconds(results, name):
    return f"{results[name]['ms']:.1f} ms" if name in results else NOT_MEASURED


def throughput(results, name):
    return f"{results[name]['MB/s']:.0f} MB/s" if name in results else NOT_MEASURED


def figures_of(script, program, durations):
    """What a measurement from outside prints."""
    with durations.part(script):
        measured = subprocess.run([sys.executable, HERE / script, program],
                                  check=True, stdout=subprocess.PIPE, text=True)
    return json.loads(measured.stdout)


def beside_others(figures, what, unit, digits=0):
    """(TARNE's figure, the others' and what share of each of them it is)"""
    ours = figures["TARNE"][what]
    others = {name: theirs[what] for name, theirs in figures.items() if name != "TARNE"}
    return (f"{ours:.{digits}f} {unit}", "; ".join(
        f"{name} {theirs:.{digits}f}" + (f" ({ours / theirs:.2f})" if theirs > 0 else "")
        for name, theirs in others.items()))


def side_by_side_rows(whole):
    """TARNE beside other programs, measured in the same run: in brackets, TARNE in theirs."""
    start, idle = whole["start"], dict(whole["idle"])
    # It counts down from its start on.
    del idle["bare window"]
    cpu = {name: figures["CPU ms"] for name, figures in start.items()}
    lightest = min(time for name, time in cpu.items() if name.startswith("gnome"))
    return [
        ("start: CPU to the first pixels", "1.7 of the bare window",
         f"{cpu['TARNE'] / cpu['bare window']:.2f}", f"{cpu['TARNE']:.0f} ms"),
        ("", "0.85 of the lightest GTK timer", f"{cpu['TARNE'] / lightest:.2f}",
         beside_others(start, "CPU ms", "ms")[1]),
        ("start: CPU of its first 2 s", "-", *beside_others(start, "settled CPU ms", "ms")),
        ("start: time to the first pixels", "250 ms", *beside_others(start, "wall ms", "ms")),
        ("resident memory on the timer screen", "56 MB",
         *beside_others(start, "resident MB", "MB", 1)),
        ("of it private", "-", *beside_others(start, "private MB", "MB", 1)),
        *[row for state, figures, budget, switches in [
            ("session running, window visible", whole["visible"], "1.1 %", "-"),
            ("session running, window hidden", whole["hidden"], "0.09 %", "5 /s"),
            ("no session, window visible", idle, "0.85 %", "-")] for row in [
            (f"CPU, {state}", budget, *beside_others(figures, "CPU %", "%", 2)),
            ("voluntary context switches, the same", switches,
             *beside_others(figures, "switches/s", "/s", 1))]],
        *[row for state, budget, of in [
            ("no session", "0", whole["idle disk"]),
            ("session running", "32 KiB/s", whole["running disk"])] for row in [
            (f"disk writes, {state}", budget, f"{of['bytes/s'] / 1024:.1f} KiB/s",
             f"{of['writes a minute']:.0f} writes a minute"),
            ("syncs, the same", "0 a minute", f"{of['syncs a minute']:.0f} a minute", "")]],
    ]


def goals_api_rows(api):
    share = api["requests/s"] / api["nginx requests/s"]
    return [
        ("goals API, 16 clients, a connection a request", "0.6 of nginx", f"{share:.2f}",
         f"{api['requests/s']:.0f} requests/s, nginx {api['nginx requests/s']:.0f}"),
        ("an answer beside 1,000 silent connections", "50 ms",
         f"{api['beside silent ms']:.1f} ms", "the slowest of 20"),
        (f"its memory over {api['requests']:.0f} requests", "flat",
         f"{api['grown KiB']:+.0f} KiB", ""),
    ]


def notifier_rows(notifier):
    return [
        ("notifier: 1,000 requests added, each answered when saved", "1 s",
         f"{notifier['adding s']:.2f} s", f"its start and the first: {notifier['start s']:.2f} s"),
        ("notifier: resident memory with them", "16 MB", f"{notifier['resident MB']:.1f} MB",
         "an empty program of Qt Core, DBus and SQLite: 12.3 MB"),
        ("notifier: of these anonymous", "3 MB", f"{notifier['anonymous MB']:.1f} MB", ""),
        ("notifier: wake-ups while it waits", "0 a minute",
         f"{notifier['wake-ups a minute']:.0f} a minute", ""),
        ("notifier: a notification after its moment", "1 s", f"{notifier['latest s']:.2f} s",
         "the latest of 5"),
    ]


def schedule_rows(results):
    return [(what, budget, milliseconds(results, f"{name}/10000"), "") for what, budget, name in [
        ("loading 10,000 scheduled goals", "20 ms", "scheduleLoad"),
        ("one day's list of them", "20 ms", "scheduleDay"),
        ("both counters of the schedule", "20 ms", "scheduleCounters"),
        ("ticking one of them off", "20 ms", "scheduleTick"),
        ("the same on the screen", "20 ms", "scheduleScreenTick"),
        ("a character typed for a new one", "1 ms", "scheduleScreenKey"),
        ("opening the schedule to its first frame", "150 ms", "scheduleFirstFrame"),
    ]]


def supervision_rows(figures):
    """What the server costs beside what the idle program costs anyway: nothing to be measured."""
    supervising = figures["supervising CPU %"]
    seconds = figures["checking s"]
    check = (figures["checking CPU %"] - supervising) / 100 * seconds
    return [
        ("CPU, supervising an idle server, window hidden", "0 %",
         f"{supervising - figures['alone CPU %']:+.3f} %",
         f"with it {supervising:.3f} %, without {figures['alone CPU %']:.3f} %"),
        ("CPU, its health checks, one every 30 s", "0 %", f"{100 * check / 30:+.3f} %",
         f"{1000 * check:.1f} ms a check"),
    ]


def companion_rows(companions, results):
    cached = f"{results['cachedQuestion/10000']['ms'] * 1000:.0f} us" \
        if "cachedQuestion/10000" in results else NOT_MEASURED
    return [
        ("a question answered from the cache, by bridge and server, p99", "3 ms",
         f"{companions['cached p99 ms']:.2f} ms",
         f"median {companions['cached median ms']:.2f} ms; the server's work beside 10,000 "
         f"cached pages {cached}"),
        ("the same asked by 50 tabs at once, the last answer", "-",
         f"{companions['50 at once ms']:.1f} ms",
         f"by 10 {companions['10 at once ms']:.1f} ms, by 1 {companions['1 at once ms']:.1f} ms"),
        ("a session's start to the extension, from the store's commit", "-",
         f"{companions['session told ms']:.1f} ms", ""),
        ("resident memory of the server", "25 MB", f"{companions['server MB']:.1f} MB",
         f"after a question to the model {companions['server used MB']:.1f} MB"),
        ("resident memory of the bridge", "6 MB", f"{companions['bridge MB']:.1f} MB", ""),
        ("wake-ups of server and bridge, idle, in a minute", "0",
         f"{companions['idle wake-ups']:.0f}", ""),
        ("model calls for one page and one set of goals", "1", f"{companions['model calls']:.0f}",
         f"{companions['questions']:.0f} questions"),
    ]


def extension_rows(extension):
    rows = []
    for name in ("Chromium", "Firefox"):
        found = {what.partition(" ")[2]: figure for what, figure in extension.items()
                 if what.startswith(name.lower())}
        rows += [
            (f"{name}: a known page to the block page", "0.1 s", f"{found['known page s']:.2f} s",
             f"the slowest of 20 {found['slowest known page s']:.2f} s; requests sent "
             f"{found['requests of known pages']}"),
            (f"{name}: a session's start to the block page", "1.5 s", f"{found['start s']:.2f} s",
             "the slowest of 5, from the bridge's message on"),
            (f"{name}: its end to the page", "1.5 s", f"{found['end s']:.2f} s", "the same"),
        ]
    return rows


def wrap_up_rows(results):
    answer = results["answerOnScreen/1000000"]
    return [
        ("an answer of 1 MB on the screen, from its arrival", "16 ms", f"{answer['ms']:.1f} ms",
         f"the slowest frame while its rest follows {answer['slowest ms']:.1f} ms; reading it, "
         f"beside the main thread, {milliseconds(results, 'answerRead/1000000')}"),
        ("memory over 1,000 presentations of the last sheets", "flat",
         f"{results['wrapUpPresentation']['resident KiB']:+.0f} KiB",
         f"of {results['wrapUpPresentation']['before KiB']:.0f} KiB after the first 200; one costs "
         f"{milliseconds(results, 'wrapUpPresentation')}"),
    ]


def long_text_rows(results):
    stored = results["storedLines/1000000"]
    return [(f"{what}, of 1 MB", "1 s", milliseconds(results, f"{name}/1000000"),
             f"of 100 kB, in 100 ms: {milliseconds(results, f'{name}/100000')}")
            for what, name in [
        ("lines pasted into an editor", "pasteLines"),
        ("a paragraph pasted into an editor", "pasteProse"),
        ("a word pasted into an editor", "pasteWord"),
        ("lines of one character pasted into an editor", "pasteGoals"),
        ("a character typed into lines", "typeIntoLines"),
        ("a pasted key", "pasteKey"),
    ]] + [("a stored text of 500,000 lines, its slowest frame", "100 ms",
           f"{stored['slowest ms']:.1f} ms", f"the first {stored['ms']:.1f} ms")]


def history_rows(results):
    """Cold: in memory that the kernel gives page by page, as after a while without a drawing; warm: in
    memory that the last reading has left."""
    def cold_and_warm(what, budgets, name, reference):
        cold = name.replace("/", "Cold/")
        return [(f"{what}, cold", budgets[0], milliseconds(results, cold), reference(cold)),
                (f"{what}, warm", budgets[1], milliseconds(results, name), reference(name))]
    others = (f"simdjson into structs {milliseconds(results, 'simdjsonIntoPlainStructs/10000')}, "
              f"QJsonDocument parse alone {milliseconds(results, 'qJsonDocumentParse/10000')}")
    figures = milliseconds(results, "insightsFigures/10000")
    return [
        *cold_and_warm("decoding a history of 10,000 entries", ("-", "15 ms"),
                       "decodeIntoRecords/10000",
                       lambda name: "" if "Cold" in name else others),
        *cold_and_warm("decoding what its figures need", ("-", "-"), "decodeIntoOutcomes/10000",
                       lambda name: ""),
        *cold_and_warm("all figures of one Insights drawing", ("10 ms", "-"), "insightsDrawing/10000",
                       lambda name: f"without reading the history {figures}"),
    ]


def budget_rows(whole, supervision, results, api, notifier, companions, extension):
    """(what, budget, measured, reference)"""
    return [
        *side_by_side_rows(whole),
        *supervision_rows(supervision),
        *history_rows(results),
        ("one save into that history", "60 ms", milliseconds(results, "saveHistory/10000"), ""),
        ("grouping and ordering the history", "30 ms",
         milliseconds(results, "historyGrouping/10000"), ""),
        ("opening the History tab on it, to the first frame", "100 ms",
         milliseconds(results, "openHistoryTab/10000"), ""),
        ("slowest frame of scrolling through it", "16 ms",
         f"{results['scrollHistoryTab/10000']['slowest ms']:.1f} ms",
         f"a frame on average {milliseconds(results, 'scrollHistoryTab/10000')}"),
        ("memory of the tab for each of its entries", "-",
         f"{results['openHistoryTab/10000']['bytes']:.0f} bytes", "the document: 1,160 bytes"),
        *schedule_rows(results),
        *wrap_up_rows(results),
        *long_text_rows(results),
        *goals_api_rows(api),
        *notifier_rows(notifier),
        *companion_rows(companions, results),
        *extension_rows(extension),
        ("parseFeedbackText", "200 MB/s", throughput(results, "parseFeedbackText/1000000"),
         f"64 MB: {throughput(results, 'parseFeedbackText/64000000')}"),
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
    folder = pathlib.Path(sys.argv[1]).resolve()
    durations = Durations()
    whole, supervision, api, notifier, companions, extension = (
        figures_of(script, folder / program, durations) for script, program in [
            ("whole_process.py", "tarne"), ("supervision.py", "tarne"),
            ("goals_api.py", "goals_server"), ("notifier.py", "tarne-notifier"),
            ("companions.py", "tarne-bridge"), ("extension.py", "tarne")])
    results = run_benchmarks(folder, durations)
    print_table([("What", "Budget", "Measured", "Reference")]
                + budget_rows(whole, supervision, results, api, notifier, companions, extension))
    print("\nGrowth: size and time in ms")
    for name, times in sorted(growth_rows(results).items()):
        print(f"{name:32}", "  ".join(f"{size}: {time:.3f}" for size, time in sorted(times.items())))
    print("\nDuration in s")
    for name, seconds in [*durations.rows, ("all", sum(seconds for _, seconds in durations.rows))]:
        print(f"{name:32} {seconds:6.0f}")


if __name__ == "__main__":
    main()
