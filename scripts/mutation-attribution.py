#!/usr/bin/env python3
"""Plants one-token faults with mutants.py's generator and records, per fault, the test
functions that fail: QtTest carries on after a failed function, so one ctest run tells every
function that notices a fault, and the record shows which tests overlap and which stand alone.

    scripts/mutation-attribution.py --build build/mut --per-file 3 --out faults.json \\
        [--skip earlier.json ...] src/model/*.cpp ...

The build folder must be configured with ZEL_BUILD_TESTS=ON and built. Faults already in a
--skip file are not planted again, so a second run samples fresh ones.
"""
import argparse
import json
import os
import re
import subprocess
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.environ.get("ZEL_MUTANTS", os.path.join(HERE, "../../shared/tools")))
from mutants import candidates, spread  # noqa: E402

FAILED = re.compile(r"^FAIL!\s+:\s+(\S+?)::(\w+)\((.*?)\)", re.M)
CRASHED = re.compile(r"\d+/\d+ Test\s+#\d+: (\w+) \.+\*\*\*(?:Exception|Timeout)")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--per-file", type=int, default=3)
    parser.add_argument("--out", required=True)
    parser.add_argument("--skip", nargs="*", default=[])
    parser.add_argument("--exclude", default="endtoend|metainfo|desktop_entries")
    parser.add_argument("targets", nargs="+")
    args = parser.parse_args()

    seen = set()
    for path in args.skip:
        seen |= {(r["at"].split(":")[0], r["rule"], r["line"]) for r in json.load(open(path))}
    ctest = ["ctest", "--test-dir", args.build, "-j2", "--timeout", "120",
             "--output-on-failure", "-E", args.exclude]
    results = []
    for path in args.targets:
        lines, found = candidates(path, 1, 10**9)
        original = "\n".join(lines)
        fresh = [c for c in found if (path, c[1], c[2].strip()) not in seen]
        for number, rule, before, after in spread(fresh, args.per_file):
            with open(path, "w") as f:
                f.write("\n".join(lines[:number - 1] + [after] + lines[number:]))
            started = time.time()
            try:
                built = subprocess.run(["cmake", "--build", args.build], capture_output=True)
                if built.returncode != 0:
                    verdict, killers = "broken", []
                else:
                    run = subprocess.run(ctest, capture_output=True, text=True, timeout=900)
                    killers = sorted({f"{c}::{fn}({row})" for c, fn, row in FAILED.findall(run.stdout)})
                    killers += [f"{name}::CRASH" for name in CRASHED.findall(run.stdout)]
                    verdict = "killed" if run.returncode else "survived"
            finally:
                with open(path, "w") as f:
                    f.write(original)
            results.append({"at": f"{path}:{number}", "rule": rule, "line": before.strip(),
                            "verdict": verdict, "killers": killers})
            print(f"{path}:{number} {rule}: {verdict} by {len(killers)} "
                  f"({time.time() - started:.0f} s)", flush=True)
            with open(args.out, "w") as f:
                json.dump(results, f, indent=1)
    subprocess.run(["cmake", "--build", args.build], capture_output=True)


if __name__ == "__main__":
    main()
