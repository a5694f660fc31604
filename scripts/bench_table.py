#!/usr/bin/env python3
"""The table of scripts/bench.sh: each subject beside the fastest peer that does the same work.

Reads the files of the benchmark programs: JSON of the benchmark library, or lines "subject|who<tab>nanoseconds". Who is
"ours" or a peer; one that does less has a "~" ahead of its name, and a row of its own.
"""
import json
import sys

# The ratios that are wanted, where there is a wish: rows above theirs are marked.
WANTED = {
    "construct and destroy": 1.6,
    "assign": 2,
    "format a secret": 2.5,
    "replace, every 2nd of 10000": 1,
    "replace, every 2nd of 100000": 1,
}


def read(path):
    with open(path, encoding="utf-8") as file:
        if not path.endswith(".json"):
            for line in file:
                name, time = line.split("\t")
                yield *name.split("|"), float(time)
            return
        for run in sorted(json.load(file)["benchmarks"], key=lambda run: run["family_index"]):
            if run.get("aggregate_name") == "median":
                yield *run["run_name"].split("|"), run["cpu_time"]


def shown(ns):
    unit, size = ("ms", 1e6) if ns >= 1e6 else ("us", 1e3) if ns >= 1e3 else ("ns", 1)
    return f"{ns / size:.3g} {unit}"


times = {}
for path in sys.argv[1:]:
    for subject, who, ns in read(path):
        times.setdefault(subject, {})[who] = ns

line = "{:32} {:>9}   {:48} {:>9} {:>6} {:>6}{}"
print(line.format("subject", "ours", "strongest peer", "peer", "ratio", "wanted", ""))
for subject, found in times.items():
    ours = found.pop("ours")
    peers = [(ns, who, WANTED.get(subject)) for who, ns in found.items() if who[0] != "~"]
    rows = [min(peers)] + [(ns, f"{who[1:]} (less work)", None) for who, ns in found.items() if who[0] == "~"]
    for ns, who, wanted in rows:
        ratio = ours / ns
        mark = "  BEHIND" if wanted and ratio > wanted else ""
        print(line.format(subject, shown(ours), who, shown(ns), f"{ratio:.2f}", wanted or "", mark))
