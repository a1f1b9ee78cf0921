#!/usr/bin/env python3
"""The API Server under load and faults: a tvhost of its own, warmed up, then
the load tool (tools/server_load) against it. No wrong and no lost answers;
the server still serves, its resident memory grew by no more than the bound,
and it stops on its signal having written nothing but its own reports.

    load_test.py --tvhost PATH --load PATH [--calls 3000] [--rss-growth-limit-kib N] [--emulator COMMAND]

--emulator runs both under a command (`wine`); tvhost then stops on SIGINT, Wine's Ctrl-C.
"""
import argparse
import os
import re
import select
import shlex
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time

REPORT = re.compile(r"calls (\d+), correct (\d+), wrong (\d+), lost (\d+)")


def build_number(port):
    """IApplication_GetBuildNumber over the wire; None when nothing answers."""
    name = b"IApplication_GetBuildNumber"
    try:
        with socket.create_connection(("127.0.0.1", port), timeout=15) as s:
            s.sendall(struct.pack("<Q", len(name)) + name)
            answer = b""
            while chunk := s.recv(64):
                answer += chunk
    except OSError:
        return None
    return struct.unpack("<i", answer)[0] if len(answer) == 4 else None


def start_tvhost(command, stderr, scratch):
    """(process, port) of a tvhost serving on a port it chose, working in
    `scratch`: the simulated host saves documents under the names the calls
    give. It announces the port once it listens."""
    # Under the sanitizers, leaks are not checked in tvhost: what remote calls
    # leave with the clients is a leak by the protocol's rules, and tvhost
    # unloads the library before it exits, so its frames can no longer be
    # named, nor suppressed. The fuzzer checks the API Server for leaks in process.
    env = dict(os.environ, ASAN_OPTIONS=os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=0")
    # Relative names resolve against the application's current directory, which starts at the files root.
    proc = subprocess.Popen([*command, "--port", "0", "--files", scratch], stdout=subprocess.PIPE, stderr=stderr,
                            text=True, env=env, cwd=scratch)
    deadline = time.monotonic() + 60
    while time.monotonic() < deadline and proc.poll() is None:
        if select.select([proc.stdout], [], [], 0.2)[0]:
            found = re.search(r"API Server on port (\d+)", proc.stdout.readline())
            if found:
                return proc, int(found[1])
    proc.kill()
    sys.exit(f"load_test: {shlex.join(command)} did not start serving")


def resident_kib(pid):
    """Resident memory of a process: Linux only (/proc)."""
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        return int(re.search(r"^VmRSS:\s+(\d+)", status.read(), re.M)[1])


def run_load(command, port, arguments):
    result = subprocess.run([*command, "--port", str(port), *arguments], capture_output=True, text=True, timeout=300)
    sys.stdout.write(result.stdout)
    sys.stderr.write(result.stderr)
    return result


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--tvhost", required=True)
    parser.add_argument("--load", required=True)
    parser.add_argument("--calls", type=int, default=3000)
    parser.add_argument("--rss-growth-limit-kib", type=int)
    parser.add_argument("--emulator", default="", help="command that runs both programs, e.g. wine")
    args = parser.parse_args()
    emulator = shlex.split(args.emulator)
    tvhost, load_tool = [*emulator, args.tvhost], [*emulator, args.load]
    stop_signal = signal.SIGINT if emulator else signal.SIGTERM

    failures = []
    with tempfile.TemporaryFile(mode="w+") as server_errors, tempfile.TemporaryDirectory() as scratch:
        proc, port = start_tvhost(tvhost, server_errors, scratch)
        try:
            # The first calls, faults included, bring in the library's code and
            # the allocator's arenas: memory is measured from after them.
            warm = run_load(load_tool, port, ["--calls", "1000", "--silent", "0", "--seed", "7"])
            if warm.returncode != 0:
                failures.append("the warm-up run failed")
            before = resident_kib(proc.pid) if args.rss_growth_limit_kib is not None else 0

            load = run_load(load_tool, port, ["--calls", str(args.calls)])
            report = REPORT.search(load.stdout)
            if load.returncode != 0 or not report:
                failures.append(f"server_load exited with {load.returncode}")
            elif report[3] != "0" or report[4] != "0" or report[1] != report[2]:
                failures.append(f"wrong or lost answers: {report[0]}")

            if build_number(port) is None:
                failures.append("the server does not serve a call after the run")
            if args.rss_growth_limit_kib is not None:
                growth = resident_kib(proc.pid) - before
                print(f"load_test: tvhost resident memory grew by {growth} KiB "
                      f"(limit {args.rss_growth_limit_kib} KiB)")
                if growth > args.rss_growth_limit_kib:
                    failures.append(f"resident memory grew by {growth} KiB")
        finally:
            proc.send_signal(stop_signal)
            try:
                out, _ = proc.communicate(timeout=30)
            except subprocess.TimeoutExpired:
                proc.kill()
                out, _ = proc.communicate()
                failures.append(f"tvhost did not stop on {stop_signal.name}")
        if proc.returncode != 0 or "tvhost: stopped" not in out:
            failures.append(f"tvhost ended with {proc.returncode}")
        server_errors.seek(0)
        foreign = [line for line in server_errors.read().splitlines() if not line.startswith("API Server: ")]
        if foreign:
            failures.append("tvhost wrote to stderr:\n" + "\n".join(foreign[:40]))

    for failure in failures:
        print(f"load_test: FAILED: {failure}", file=sys.stderr)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
