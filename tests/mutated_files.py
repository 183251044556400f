#!/usr/bin/env python3
"""Runs the example programs on damaged files: each must be read, or refused in one line.

usage: mutated_files.py DIRECTORY-OF-PROGRAMS SCRATCH-DIRECTORY [COUNT [SEED]]
"""
import math
import os
import random
import struct
import subprocess
import sys

programs, scratch = sys.argv[1:3]
count, seed = (int(x) for x in (sys.argv[3:] + ["60", "1"][len(sys.argv) - 3 :])[:2])
os.makedirs(scratch, exist_ok=True)
os.chdir(scratch)
chance = random.Random(seed)

SAMPLES = [0.5 * math.cos(0.7 * i) for i in range(600)]
DATA = struct.pack("<600h", *(round(32767 * x) for x in SAMPLES))
WAV = b"RIFF" + struct.pack("<I4s4sIHHIIHH4sI", 36 + len(DATA), b"WAVE", b"fmt ", 16, 1, 1, 8000, 16000, 2, 16, b"data", len(DATA)) + DATA
CSV = "Model,7\nTime (s),CH1 (mV)\n" + "".join(f"{i * 1e-4:.4f},{1000 * x:.6f}\n" for i, x in enumerate(SAMPLES))
SEMICOLONS = CSV.replace(",", ";").replace(".", ",")
S1P = "! one-port\n# MHz S RI R 50\n" + "".join(f"{100 + i} {0.5 * x:.6f} {-x:.6f}\n" for i, x in enumerate(SAMPLES[:40]))
CASES = [  # a file, and the commands that read it
    ("f.wav", WAV, [["dsp-tone", "f.wav"], ["dsp-stream", "-r", "4000", "f.wav", "out.wav"]]),
    ("f.csv", CSV.encode(), [["dsp-tone", "f.csv"], ["dsp-spectrum", "--json", "-b", "256", "f.csv"]]),
    ("g.csv", SEMICOLONS.encode(), [["dsp-tone", "g.csv"]]),
    ("f.s1p", S1P.encode(), [["dsp-oneport", "f.s1p", "short", "f.s1p", "open", "f.s1p", "load", "f.s1p"]]),
]


def mutated(data):
    data = bytearray(data)
    for _ in range(chance.choice([1, 1, 2, 5])):
        # Half of the damage goes where headers are.
        at = chance.randrange(min(len(data), 64) if chance.random() < 0.5 else len(data))
        size = chance.choice([1, 1, 2, 4, 30])
        kind = chance.randrange(5)
        if kind == 0:
            data[at] ^= 1 << chance.randrange(8)
        elif kind == 1:
            del data[at : at + size]
        elif kind == 2:
            data[at:at] = chance.choice([b",", b";", b"\t", b"\n", b'"', b"-", b"e9", b"nan", b"\xff\xff\xff\x7f", b"\0", b"#"])
        elif kind == 3:
            data[at:at] = data[at : at + size]
        else:
            data = data[: max(at, 1)]
        if not data:
            return b"\n"
    return bytes(data)


failures = 0
for i in range(count):
    name, whole, commands = CASES[i % len(CASES)]
    with open(name, "wb") as file:
        file.write(mutated(whole))
    for command in commands:
        done = subprocess.run([os.path.join(programs, command[0])] + command[1:], capture_output=True, timeout=60)
        lines = done.stderr.count(b"\n")
        good = done.returncode in (0, 1, 2) and (lines == 1 if done.returncode == 2 else lines <= 1)
        if not good or b"Sanitizer" in done.stderr:
            failures += 1
            os.replace(name, f"failed-{seed}-{i}-{name}") if os.path.exists(name) else None
            print(f"seed {seed}, file {i}: {' '.join(command)}: status {done.returncode}, {done.stderr.decode(errors='replace')}")
            break
sys.exit(failures > 0)
