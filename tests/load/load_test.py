#!/usr/bin/env python3
"""The API Server under load and faults: a tvhost of its own, warmed up, then
the load tool (tools/server_load) against it. No wrong and no lost answers;
the server still serves, its resident memory grew by no more than the bound,
and it stops on its signal having written nothing but its own reports. Each
stop (its signal makes tvhost stop the server, as the host does from its
main thread) comes while 50 connections are held, silent, half a request
sent or a request complete, and, in every other tvhost, while four clients
call without pause: the first tvhost's, then those of --stop-trials more.

    load_test.py --tvhost PATH --load PATH [--calls 3000] [--rss-growth-limit-kib N] [--stop-trials N]
                 [--emulator COMMAND]

--emulator runs both under a command (`wine`); tvhost then stops on SIGINT,
Wine's Ctrl-C, and takes longer to end.
"""
import argparse
import re
import shlex
import socket
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "common"))
import tvhost_process  # noqa: E402

REPORT = re.compile(r"calls (\d+), correct (\d+), wrong (\d+), lost (\d+)")


def counted(*texts):
    return b"".join(struct.pack("<Q", len(t)) + t for t in texts)


SET_DIRECTORY = counted(b"IApplication_SetCurrentDirectory", b"folder")


def resident_kib(pid):
    """Resident memory of a process: Linux only (/proc)."""
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        return int(re.search(r"^VmRSS:\s+(\d+)", status.read(), re.M)[1])


def run_load(command, port, arguments):
    result = subprocess.run([*command, "--port", str(port), *arguments], capture_output=True, text=True, timeout=300)
    sys.stdout.write(result.stdout)
    sys.stderr.write(result.stderr)
    return result


def answered_all(run):
    """Whether a run of the load tool passed and reports every call answered correctly."""
    report = REPORT.search(run.stdout)
    return run.returncode == 0 and bool(report) and report[1] == report[2] and report[3] == report[4] == "0"


def stop_while_busy(proc, port, load_tool, emulated, with_stream):
    """Stops tvhost while 50 connections are held and, with_stream, the load
    tool's four clients call without pause: a failure's description, or None."""
    what = "with 50 connections held" + (" and calls in flight" if with_stream else "")
    held = []
    try:
        for i in range(50):  # silent, half a request sent, a request complete
            held.append(socket.create_connection(("127.0.0.1", port), timeout=5))
            held[-1].sendall([b"", SET_DIRECTORY[:20], SET_DIRECTORY][i % 3])
    except OSError as error:
        what += f" (but: {error})"
    stream = with_stream and subprocess.Popen([*load_tool, "--port", str(port), "--calls", "1000000", "--threads", "4",
                                               "--silent", "0", "--fault-rate", "0"], stdout=subprocess.DEVNULL,
                                              stderr=subprocess.DEVNULL)
    time.sleep(1 if with_stream else 0.3)
    start = time.monotonic()
    stopped = tvhost_process.stop(proc, emulated=emulated)
    took = time.monotonic() - start
    if stream:
        stream.kill()
        stream.wait()
    for s in held:
        s.close()
    print(f"load_test: tvhost stopped {what} in {took:.2f} s")
    if stopped is None or stopped[0] != 0 or "tvhost: stopped" not in stopped[1]:
        return f"tvhost did not stop cleanly {what}: {stopped and stopped[0]}"
    # The stop itself returns within a second; under an emulator the process's own end takes longer.
    return f"tvhost took {took:.2f} s to stop {what}" if took > (5 if emulated else 1) else None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--tvhost", required=True)
    parser.add_argument("--load", required=True)
    parser.add_argument("--calls", type=int, default=3000)
    parser.add_argument("--rss-growth-limit-kib", type=int)
    parser.add_argument("--stop-trials", type=int, default=0)
    parser.add_argument("--emulator", default="", help="command that runs both programs, e.g. wine")
    args = parser.parse_args()
    emulator = shlex.split(args.emulator)
    tvhost, load_tool = [*emulator, args.tvhost], [*emulator, args.load]

    failures = []
    with tempfile.TemporaryFile(mode="w+") as server_errors, tempfile.TemporaryDirectory() as scratch:
        # Relative names resolve against the application's current directory, which starts at the files root.
        proc, port = tvhost_process.start(tvhost, "--files", scratch, stderr=server_errors, cwd=scratch, timeout=60)
        if port is None:
            sys.exit(f"load_test: {shlex.join(tvhost)} did not start serving")
        try:
            # The first calls, faults included, bring in the library's code and
            # the allocator's arenas: memory is measured from after them.
            if not answered_all(run_load(load_tool, port, ["--calls", "1000", "--silent", "0", "--seed", "7"])):
                failures.append("the warm-up run failed")
            before = resident_kib(proc.pid) if args.rss_growth_limit_kib is not None else 0
            if not answered_all(run_load(load_tool, port, ["--calls", str(args.calls)])):
                failures.append("wrong or lost answers, or a silent client not dropped in time")
            if not answered_all(run_load(load_tool, port, ["--calls", "20", "--silent", "0", "--fault-rate", "0"])):
                failures.append("the server does not serve after the run")
            if args.rss_growth_limit_kib is not None:
                growth = resident_kib(proc.pid) - before
                print(f"load_test: tvhost resident memory grew by {growth} KiB "
                      f"(limit {args.rss_growth_limit_kib} KiB)")
                if growth > args.rss_growth_limit_kib:
                    failures.append(f"resident memory grew by {growth} KiB")
        finally:
            failures.append(stop_while_busy(proc, port, load_tool, bool(emulator), with_stream=True))
        for trial in range(args.stop_trials):
            proc, port = tvhost_process.start(tvhost, "--files", scratch, stderr=server_errors, cwd=scratch, timeout=60)
            failures.append(stop_while_busy(proc, port, load_tool, bool(emulator), with_stream=trial % 2 == 0)
                            if port else "tvhost did not start serving")
        failures = [f for f in failures if f]
        server_errors.seek(0)
        foreign = [line for line in server_errors.read().splitlines() if not line.startswith("API Server: ")]
        if foreign:
            failures.append("tvhost wrote to stderr:\n" + "\n".join(foreign[:40]))

    for failure in failures:
        print(f"load_test: FAILED: {failure}", file=sys.stderr)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
