"""Prints the results of benchmark programs (JSON) as one table: medians, and the ratio of our time to each other's.
Processor time, which other programs on the machine hardly touch; all that is measured runs in one thread.

Rows are named work/size/library, ours `dsp`. Rows named bandwidth/size/pattern are the yardstick: a row that counts
its bytes shows its share of the same size's bandwidth, under the pattern that its label names or else the best one.
"""

import json
import statistics
import sys
from collections import defaultdict

OURS = "dsp"


def read(paths):
    """{(work, size): {library: (ns, bytes per second, label)}}, in the order of the programs."""
    samples = defaultdict(lambda: defaultdict(list))
    for path in paths:
        try:
            with open(path) as file:
                runs = json.load(file)["benchmarks"]
        except json.JSONDecodeError:  # a filter that matches no row leaves the file empty
            continue
        # Random interleaving shuffles the runs; this is the order in which the program names them.
        for run in sorted(runs, key=lambda run: (run["family_index"], run["per_family_instance_index"])):
            if run.get("run_type") != "iteration" or run.get("error_occurred"):
                continue
            work, size, library = run["run_name"].split("/")[:3]
            ns = run["cpu_time"] * {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[run["time_unit"]]
            samples[work, size][library].append((ns, run.get("bytes_per_second", 0.0), run.get("label", "")))
    rows = {}
    for key, libraries in samples.items():
        rows[key] = {
            library: (statistics.median(r[0] for r in runs), statistics.median(r[1] for r in runs), runs[0][2])
            for library, runs in libraries.items()
        }
    return rows


def number(size):
    try:
        return float(size)
    except ValueError:
        return size


def share_of_bandwidth(size, row, bandwidths):
    patterns = bandwidths.get(number(size))
    _, rate, label = row
    if not patterns or not rate:
        return ""
    yardstick = patterns.get(label) or max(patterns.values())
    return f"{100 * rate / yardstick:.0f} %"


def time(ns):
    return f"{ns:.1f}" if ns < 100 else f"{ns:.0f}"


def main(paths):
    rows = read(paths)
    bandwidths = {
        number(size): {pattern: rate for pattern, (_, rate, _) in patterns.items()}
        for (work, size), patterns in rows.items()
        if work == "bandwidth"
    }
    works = {key: row for key, row in rows.items() if key[0] != "bandwidth"}
    peers = list(dict.fromkeys(library for row in works.values() for library in row if library != OURS))
    head = ["work", "size", "dsp ns"] + [h for p in peers for h in (f"{p} ns", "ratio")] + ["bandwidth"]
    table = [head]
    for (work, size), row in works.items():
        ours = row.get(OURS)
        line = [work, size, time(ours[0]) if ours else ""]
        for peer in peers:
            theirs = row.get(peer)
            line.append(time(theirs[0]) if theirs else "")
            line.append(f"{ours[0] / theirs[0]:.2f}" if ours and theirs else "")
        table.append(line + [share_of_bandwidth(size, ours, bandwidths) if ours else ""])
    used = [i for i in range(len(head)) if i < 3 or any(line[i] for line in table[1:])]
    widths = {i: max(len(line[i]) for line in table) for i in used}
    print("time in ns, median; ratio: ours/theirs, below 1 we are faster; bandwidth: share of what memory gives")
    for line in table:
        cells = (line[i].ljust(widths[i]) if i == 0 else line[i].rjust(widths[i]) for i in used)
        print("  ".join(cells).rstrip())
    print()
    for size, patterns in bandwidths.items():
        rates = ", ".join(f"{pattern} {rate / 1e9:.1f}" for pattern, rate in patterns.items())
        print(f"bandwidth at {size:.0e} samples, GB/s: {rates}")


if __name__ == "__main__":
    main(sys.argv[1:])
