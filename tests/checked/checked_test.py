#!/usr/bin/env python3
"""Checked mode against a plug-in that breaks each rule once (mistakes.c).

Run three times: without TVAPIC_CHECK, which must write no line of checked
mode; with TVAPIC_CHECK=1, whose lines on the standard error stream must be
exactly the expected ones, each once; and with TVAPIC_CHECK_LOG too, which
moves the same lines to the file. Every run ends normally and prints the same
results. With --tvhost, a checked tvhost serves two calls whose references
the client keeps: they are listed apart, as the clients'.

usage: checked_test.py PROGRAM [--tvhost=TVHOST] [--emulator=COMMAND]
"""

import argparse
import os
import re
import shlex
import socket
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "common"))
import tvhost_process  # noqa: E402

PREFIX = "tvAPIC check: "
THREAD = r"\d+"

# What the program does wrong, as checked mode says it, in the order it is
# said: findings as they happen, then the counts and what is left at exit.
EXPECTED = [
    "IApplicationEvents_AddCreateDocumentHandler: null callback. Not registered: "
    "the host is never handed a handler to call",
    "ILineSegment_GetLength: the handle lacks ILineSegment; it answers IAPIObject, ITavraDocument, "
    "ITavraDocument2D. Nothing was called; the default was returned",
    "ITavraDocument_GetName: null handle. Nothing was called; the default was returned",
    "IAPIObject_Release: a handle whose counted references were all given back already "
    "(ILineSegment from ILineSegments_Add)",
    f"ITavraDocument_IsChanged: called from thread {THREAD}, not from thread {THREAD}, which loaded the library: "
    "the host's objects belong to its main thread",
    "IAPIObject_AddRef: null handle. Nothing was done; 0 was returned",
    "IAPIObject_Release: null handle. Nothing was done; 0 was returned",
    "ILineSegment_GetLength: the handle lacks ILineSegment; it answers IAPIObject, ITavraDocument, "
    r"ITavraDocument2D. Nothing was called; the default was returned \(2 times in all\)",
    r"ITavraDocument2D_FindObject: 1 reference still held at exit \(IDrawingObject\)",
    r"ObjectReferenceVector: 1 vector never deleted \(ITavraDocument2D_FindObjects 1\)",
    r'IApplicationEvents_AddCreateDocumentHandler: 1 handler still registered at exit '
    r'\(IApplicationEvents, key "checked"\)',
]
# Escaped above where a line holds a regular expression's special characters.
PATTERNS = [line if "\\(" in line or THREAD in line else re.escape(line) for line in EXPECTED]

# What the program prints, in both modes: the host's answers, unchanged.
RESULTS = """\
IDocuments_Add -> a drawing; CreateDocument handled 1 time(s)
ILineSegment_GetLength(drawing) -> 0
ILineSegment_GetLength(drawing) again -> 0
ITavraDocument_GetName(NULL) -> null
FindObject is the segment -> true
IAPIObject_Release(segment) -> 2
IAPIObject_Release(segment) again -> 1
ITavraDocument2D_FindObjects -> 1 object(s)
IAPIObject_Release(its element) -> 1
ITavraDocument_IsChanged on a second thread -> 1
IAPIObject_AddRef(NULL) -> 0
IAPIObject_Release(NULL) -> 0
done
"""


def run(environment):
    env = {k: v for k, v in os.environ.items() if not k.startswith("TVAPIC_CHECK")}
    env.update(environment)
    return subprocess.run([*EMULATOR, PROGRAM], env=env, capture_output=True, text=True, timeout=60)


def said(text):
    """Checked mode's lines among a program's output (an emulator may add its own)."""
    return [line for line in text.splitlines() if line.startswith(PREFIX)]


def check_lines(test, text):
    lines = said(text)
    test.assertEqual(len(lines), len(PATTERNS), "\n".join(lines))
    for line, pattern in zip(lines, PATTERNS):
        test.assertRegex(line[len(PREFIX):], f"^{pattern}$")


def call(port, name):
    """A remote call without arguments whose result is a handle (docs/protocol.md)."""
    request = struct.pack("<Q", len(name)) + name.encode()
    with socket.create_connection(("127.0.0.1", port), timeout=10) as connection:
        connection.sendall(request)
        response = b""
        while len(response) < 8:
            chunk = connection.recv(8 - len(response))
            if not chunk:
                break
            response += chunk
    return struct.unpack("<Q", response)[0] if len(response) == 8 else None


def windows_path(path):
    """A path as a program under Wine reads it: the Unix root is drive Z."""
    return "Z:" + path.replace("/", "\\") if EMULATOR else path


class CheckedMode(unittest.TestCase):
    def test_without_checking_nothing_is_said(self):
        plain = run({})
        self.assertEqual(plain.returncode, 0, plain.stderr)
        self.assertEqual(plain.stdout.replace("\r\n", "\n"), RESULTS)
        self.assertNotIn(PREFIX, plain.stdout + plain.stderr)

    def test_each_mistake_is_reported_once_and_no_result_changes(self):
        checked = run({"TVAPIC_CHECK": "1"})
        self.assertEqual(checked.returncode, 0, checked.stderr)
        self.assertEqual(checked.stdout.replace("\r\n", "\n"), RESULTS)
        check_lines(self, checked.stderr)

    def test_the_log_takes_the_lines(self):
        with tempfile.TemporaryDirectory() as folder:
            log = os.path.join(folder, "check.log")
            with open(log, "w", encoding="utf-8") as f:
                f.write("an earlier run\n")
            logged = run({"TVAPIC_CHECK": "1", "TVAPIC_CHECK_LOG": windows_path(log)})
            self.assertEqual(logged.returncode, 0, logged.stderr)
            self.assertNotIn(PREFIX, logged.stderr)
            with open(log, encoding="utf-8") as f:
                text = f.read()
            self.assertTrue(text.startswith("an earlier run\n"), "the log is appended to")
            check_lines(self, text)

    def test_a_log_that_cannot_be_opened_leaves_the_lines_on_the_standard_error_stream(self):
        with tempfile.TemporaryDirectory() as folder:
            missing = os.path.join(folder, "no such folder", "check.log")
            checked = run({"TVAPIC_CHECK": "1", "TVAPIC_CHECK_LOG": windows_path(missing)})
            self.assertEqual(checked.returncode, 0, checked.stderr)
            lines = said(checked.stderr)
            self.assertTrue(lines and lines[0].startswith(PREFIX + "TVAPIC_CHECK_LOG: "), checked.stderr)
            check_lines(self, "\n".join(lines[1:]))

    def test_references_remote_clients_keep_are_one_summary_apart(self):
        if not TVHOST:
            self.skipTest("no tvhost given")
        with tempfile.TemporaryDirectory() as folder:
            log = os.path.join(folder, "check.log")
            env = {**os.environ, "TVAPIC_CHECK": "1", "TVAPIC_CHECK_LOG": windows_path(log)}
            proc, port = tvhost_process.start([*EMULATOR, TVHOST], env=env,
                                              stderr=subprocess.PIPE, timeout=60 if EMULATOR else 15)
            self.assertIsNotNone(port, "tvhost did not serve")
            handles = [call(port, "IApplication_GetDocuments") for _ in range(2)]
            stopped = tvhost_process.stop(proc, emulated=bool(EMULATOR))
            self.assertTrue(stopped and stopped[0] == 0, stopped)
            self.assertTrue(all(handles), handles)
            with open(log, encoding="utf-8") as f:
                lines = f.read().splitlines()
        self.assertEqual(lines, [PREFIX + "API Server: 2 references sent to remote clients, which the protocol "
                                 "cannot give back, so not counted above (IApplication_GetDocuments 2)"])

    def test_another_value_leaves_checking_off_and_says_so(self):
        other = run({"TVAPIC_CHECK": "yes"})
        self.assertEqual(other.returncode, 0, other.stderr)
        self.assertEqual(other.stdout.replace("\r\n", "\n"), RESULTS)
        self.assertEqual(said(other.stderr), [PREFIX + "TVAPIC_CHECK=yes is neither 1 nor 0: checking stays off"])


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--emulator", default="")
    parser.add_argument("--tvhost", default="")
    args, rest = parser.parse_known_args()
    PROGRAM, EMULATOR, TVHOST = args.program, shlex.split(args.emulator), args.tvhost
    unittest.main(argv=[sys.argv[0], *rest])
