#!/usr/bin/env python3
"""Runs a command in checked mode and fails when checked mode says anything
but what the command does on purpose.

usage: run_checked.py --log FILE [--expected FILE] -- COMMAND...

The command, and every process it starts, runs with TVAPIC_CHECK=1 and
TVAPIC_CHECK_LOG=FILE (emptied first), so that the lines are read whole
whatever captures the command's output. A line passes when the expected file
lists it (one per line, without the prefix; '#' starts a comment; a count of
repeated findings at exit follows from its line), or when it is the API
Server's summary of the references its remote clients keep, which the
protocol cannot give back. The command's own status counts too.
"""

import argparse
import os
import re
import subprocess
import sys

PREFIX = "tvAPIC check: "
CLIENTS = "API Server: "
REPEATED = re.compile(r" \(\d+ times in all\)$")


def expected_lines(path):
    if not path:
        return set()
    with open(path, encoding="utf-8") as f:
        return {line.strip() for line in f if line.strip() and not line.startswith("#")}


def unexpected(log, expected):
    with open(log, encoding="utf-8", errors="replace") as f:
        lines = [line.rstrip("\n") for line in f]
    found = []
    for line in lines:
        text = REPEATED.sub("", line[len(PREFIX):]) if line.startswith(PREFIX) else line
        if not (text.startswith(CLIENTS) or text in expected):
            found.append(line)
    return found


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--log", required=True)
    parser.add_argument("--expected")
    parser.add_argument("command", nargs=argparse.REMAINDER)
    args = parser.parse_args()
    command = args.command[1:] if args.command[:1] == ["--"] else args.command
    open(args.log, "w").close()
    status = subprocess.call(command, env={**os.environ, "TVAPIC_CHECK": "1", "TVAPIC_CHECK_LOG": args.log})
    found = unexpected(args.log, expected_lines(args.expected))
    if found:
        print("run_checked: checked mode reported:", *found, sep="\n  ", file=sys.stderr)
        return 1
    return status


if __name__ == "__main__":
    sys.exit(main())
