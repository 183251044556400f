"""Prints a page of measured times from the results of benchmark programs, and of the library's size.

usage: bench_page.py BUILD_DIRECTORY RESULTS_DIRECTORY
"""

import json
import pathlib
import re
import subprocess
import sys
from collections import defaultdict

from bench_table import OURS, read

# In the order of the page: program, title, what a reader must know of the rows.
FAMILIES = [
    ("fft", "Transforms", "Of complex (`fft`, `ifft`) and real signals (`rfft`, `irfft`); of any length (`dft`, `idft`, `rdft`, "
     "`irdft`); cosine transforms (`dct`). Ours in place. FFTW runs the plans it measured as fastest, of real signals in "
     "place or out of place, whichever is faster; they do not scale by 1/n, ours do. `fftw` is Debian's, `fftw-native` "
     "the same version built for this processor with AVX-512. `fft_avx2` keeps ours to AVX2."),
    ("elementwise", "Arithmetic and functions", "Beside the loop one would write, compiled for this processor. Rows of "
     "10^7 samples are as fast as memory."),
    ("scipy", "Called from Python", "Ours through ctypes, NumPy and SciPy in the same process on the same arrays. Both "
     "functions and windows start from a copy of the same samples each time, so that the copy counts on both sides; "
     "`call` is a call that has nothing to do, and part of every row. `dft` is a complex transform in place, beside SciPy's "
     "pocketfft. `spectrum` is a Hann window, a real transform and "
     "an average: scipy by `rfft` with the window at hand, welch by `scipy.signal.welch`; `roots`, by degree, is that of "
     "NumPy."),
    ("stats", "Statistics", "Reductions; `variance` in one call, Eigen's expression likewise."),
    ("window", "Windows", "`cached`: one that was used before, beside the product with an array at hand; `made`: "
     "generated anew, beside the loop that calls the C library for each sample."),
    ("spectrum", "Spectra", "A real record windowed, transformed and averaged."),
    ("filter", "Filters", "Block by block, by number of taps and length of the block: beside the loop as written down, a "
     "loop in tiles that the compiler vectorises, and overlap-save made of FFTW's transforms, of the next power of two or, "
     "`fftw-product`, of the next product of one with 1, 3, 5, 9 or 15. `multiplier`: as many products in registers, "
     "without a load or a store, which no sum can beat. `live`: filters that are long for their blocks."),
    ("resample", "Sample-rate conversion", "By ratio, in one call; `complex`: two channels at once. Beside a tone, ours leaves less "
     "than soxr's medium quality and more than its high quality, and its aliases are stronger than those of both: "
     "[accuracy.md](accuracy.md#sample-rate-conversion) has the figures. soxr's medium and high qualities compute in "
     "single precision, ours in double."),
    ("interp", "Interpolation", "Of so many nodes at so many places."),
    ("trace", "Traces for display", "Beside plain loops that do the same."),
    ("poly", "Polynomials", "By degree: all zeros (`roots`) of polynomials with random coefficients, 20 of them in turn, "
     "and real solutions (`solve`) of the same; `coefficients` multiplies zeros out in twice the digits."),
    ("rf", "Matrices and calibration", "Complex matrices of size n, beside Eigen's of dynamic size; `one_port` corrects "
     "a sweep of 1601 points."),
]

# Why, where we are slower: shown when a row that matches is behind the peer.
REASONS = [
    ("fft", r"r?i?r?dft/(12|24|60|100|360)/", "fftw", "At short lengths that are not powers of two the choice of the "
     "passes takes a share of the time, and vectors are partly empty."),
    ("elementwise", r"[^/]*/1000/", "loop", "At 1000 samples the checks of a call take a share of the time, and so does "
     "saturation, which the loop leaves out."),
    ("rf", r"product/3/", "eigen", "A product of 3 x 3 takes little more time than the call, its checks and its memory."),
    ("rf", r"product/32/", "eigen", "Eigen blocks for registers and caches; ours sums each element in order."),
    ("stats", r"[^/]*/1000/", ".*", "Partial sums over blocks of 2048 and saturation are part of the result, also at 1000 "
     "samples."),
    ("scipy", r"(exp|log|db)/", "numpy", "Exponentials and logarithms: ours are right to 0.84 ulp, NumPy's to 1.5 to 1.9."),
]


def output(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return ""


def machine():
    info = pathlib.Path("/proc/cpuinfo").read_text()
    field = lambda name: (re.search(rf"^{name}\s*: (.*)$", info, re.M) or ["", "unknown"])[1]
    flags = set(field("flags").split())
    chosen = "baseline"
    if {"avx2", "fma"} <= flags:
        wide = {"avx512f", "avx512dq", "avx512vl", "avx512bw"} <= flags
        chosen = "AVX-512" if wide else "AVX2"
    return field("model name"), chosen


def versions(results):
    found = []
    for name, module in (("FFTW", "fftw3"), ("GSL", "gsl"), ("Eigen", "eigen3"), ("soxr", "soxr"),
                         ("libsamplerate", "samplerate")):
        if version := output("pkg-config", "--modversion", module):
            found.append(f"{name} {version}")
    if version := output("dpkg-query", "-W", "-f", "${Version}", "libkissfft-dev"):
        found.append("KissFFT " + re.split("[-+~]", version)[0])
    path = results / "scipy_bench.json"
    if path.exists():
        context = json.loads(path.read_text())["context"]
        found += [f"NumPy {context['numpy']}", f"SciPy {context['scipy']}"]
    return ", ".join(found)


def time(ns):
    for unit, size in (("ns", 1), ("µs", 1e3), ("ms", 1e6), ("s", 1e9)):
        if ns < 999.5 * size or unit == "s":
            value = ns / size
            return f"{value:.1f} {unit}" if value < 99.95 else f"{value:.0f} {unit}"


def ratio(ours, theirs):
    return f"{ours / theirs:.2f}" if ours / theirs >= 0.095 else f"{ours / theirs:.3f}"


def table(head, lines):
    print()
    print("| " + " | ".join(head) + " |")
    print("| --- |" + " ---: |" * (len(head) - 1))
    for line in lines:
        print("| " + " | ".join(line) + " |")


def family(program, title, text, path):
    rows = {key: row for key, row in read([path]).items() if OURS in row}
    if not rows:
        return
    peers = list(dict.fromkeys(library for row in rows.values() for library in row if library != OURS))
    print(f"\n## {title}\n\n{text}")
    lines, reasons = [], {}
    for (work, size), row in rows.items():
        ours = row[OURS][0]
        line = [work, size, time(ours)]
        for peer in peers:
            line.append(f"{time(row[peer][0])} ({ratio(ours, row[peer][0])})" if peer in row else "")
            if peer in row and ours > 1.05 * row[peer][0]:
                for where, pattern, who, why in REASONS:
                    if where == program and re.match(pattern, f"{work}/{size}/") and re.fullmatch(who, peer):
                        reasons[why] = True
        lines.append(line)
    table(["work", "size", "dsp"] + [f"{peer} (ratio)" for peer in peers], lines)
    if reasons:
        print("\nWhere we are slower: " + " ".join(reasons))


def sizes(build):
    """Code and constants in bytes, {family: {instruction set: bytes}}."""
    total = defaultdict(lambda: defaultdict(int))
    for unit in build.glob("CMakeFiles/dsp_*.dir/dsp/*/*.o"):
        kind = re.sub(r"^dsp_(kernels_)?|\.dir$", "", unit.parts[-4])
        fields = output("size", str(unit)).splitlines()[-1].split()
        total[unit.parts[-2]][kind] += int(fields[0]) + int(fields[1])
    return total


def size(build):
    library = build / "libdsp.so"
    stripped = build / "libdsp.stripped"
    output("strip", "-o", str(stripped), str(library))
    print("\n## Size\n\nThe shared library, stripped, takes "
          f"{stripped.stat().st_size / 1024:.0f} KiB. Code and constants by family, in KiB, with what each instruction "
          "set adds:")
    kinds = ["common", "baseline", "avx2", "avx512"]
    by_family = sizes(build)
    lines = []
    for name, parts in sorted(by_family.items(), key=lambda item: -sum(item[1].values())):
        lines.append([name] + [f"{parts[k] / 1024:.1f}" if parts[k] else "" for k in kinds]
                     + [f"{sum(parts.values()) / 1024:.1f}"])
    sums = [sum(parts[k] for parts in by_family.values()) / 1024 for k in kinds]
    lines.append(["all"] + [f"{s:.1f}" for s in sums] + [f"{sum(sums):.1f}"])
    table(["family"] + kinds + ["sum"], lines)


def main(build, results):
    build, results = pathlib.Path(build), pathlib.Path(results)
    processor, chosen = machine()
    print(f"""# Performance

Medians of the processor time of runs that were interleaved at random, ours beside the libraries that a user would
otherwise pick, in one process and one thread. In brackets: our time over theirs; below 1 we are faster.
`scripts/bench --page` measures all of it on your machine, `scripts/bench --page fft` one family.

- Processor: {processor}, on which the library chose {chosen}
- Compiler: {output("c++", "--version").splitlines()[0]}; plain loops and peers' headers with `-O3 -march=native`
- Peers: {versions(results)}""")
    for program, title, text in FAMILIES:
        path = results / f"{program}_bench.json"
        if path.exists():
            family(program, title, text, path)
    size(build)


if __name__ == "__main__":
    main(*sys.argv[1:])
