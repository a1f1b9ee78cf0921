#!/usr/bin/env python3
"""Stopping a tvhost (its signal makes it stop the API Server, as the host
does from its main thread) while 50 connections are held, and while clients
call without pause, again and again: each time it exits cleanly and soon.

    stop_test.py --tvhost PATH [--trials N] [--emulator COMMAND]

--emulator runs tvhost under a command (`wine`), which stops on SIGINT and
takes longer to end a process.
"""
import argparse
import shlex
import socket
import struct
import sys
import tempfile
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "common"))
import tvhost_process  # noqa: E402


def name(text):
    return struct.pack("<Q", len(text)) + text.encode()


CALL = name("IApplication_GetBuildNumber")
WHOLE = name("IApplication_SetCurrentDirectory") + name("folder")


def hold_fifty(port):
    """Fifty connections: silent, half a request sent, a request complete."""
    held = []
    for i in range(50):
        s = socket.create_connection(("127.0.0.1", port), timeout=5)
        s.sendall([b"", WHOLE[: len(WHOLE) // 2], WHOLE][i % 3])
        held.append(s)
    return held


def stream_of_calls(port, end):
    """Calls one after the other until `end` is set; what a stop cuts short is no fault."""
    while not end.is_set():
        try:
            with socket.create_connection(("127.0.0.1", port), timeout=5) as s:
                s.sendall(CALL)
                s.shutdown(socket.SHUT_WR)
                while s.recv(64):
                    pass
        except OSError:
            time.sleep(0.005)


def trial(tvhost, emulated, with_stream, limit):
    """A failure's description, or None."""
    with tempfile.TemporaryDirectory() as files:
        proc, port = tvhost_process.start(tvhost, "--files", files, timeout=60)
        if port is None:
            return "tvhost did not start serving"
        end = threading.Event()
        streams = [threading.Thread(target=stream_of_calls, args=(port, end)) for _ in range(2 if with_stream else 0)]
        held = []
        try:
            held = hold_fifty(port)
            for t in streams:
                t.start()
            time.sleep(0.3)
            start = time.monotonic()
            stopped = tvhost_process.stop(proc, emulated=emulated)
            took = time.monotonic() - start
        finally:
            end.set()
            for t in streams:
                t.join()
            for s in held:
                s.close()
    if stopped is None:
        return "tvhost did not stop on its signal"
    status, out, _ = stopped
    if status != 0 or "tvhost: stopped" not in out:
        return f"tvhost ended with {status}"
    if took > limit:
        return f"tvhost took {took:.2f} s to stop"
    return None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--tvhost", required=True)
    parser.add_argument("--trials", type=int, default=10)
    parser.add_argument("--emulator", default="", help="command that runs tvhost, e.g. wine")
    args = parser.parse_args()
    emulator = shlex.split(args.emulator)
    # The stop itself returns within a second; under an emulator the process's own end takes longer.
    limit = 5.0 if emulator else 1.0
    failures = []
    for n in range(args.trials):
        with_stream = n % 2 == 1
        failure = trial([*emulator, args.tvhost], bool(emulator), with_stream, limit)
        what = "50 connections held" + (" and a stream of calls" if with_stream else "")
        print(f"stop_test: trial {n + 1}, {what}: {failure or 'stopped cleanly'}")
        if failure:
            failures.append(failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
