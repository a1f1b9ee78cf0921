"""The tvapic command: arguments read by signature, answers printed a value a line."""
import io
import os
import subprocess
import sys

import pytest

from tvapic import SIGNATURES, Handle
from tvapic.cli import format_answer, main, parse_arguments


def parse(fn, *words):
    return parse_arguments(SIGNATURES[fn], list(words))


class TestArguments:
    def test_words_are_read_by_the_parameter_kinds(self):
        assert parse("IDocuments_Open", "0x1f", "a b.tvd", "true", "0") == [Handle(31), "a b.tvd", True, False]
        assert parse("IDocuments_Open", "31", "-", "No", "1") == [Handle(31), "-", False, True]
        assert parse("ITavraDocument2D_MoveObjects", "0", "-1.5", "2") == [None, -1.5, 2.0]
        assert parse("IApplication_GetSystemVersion", "-", "0x10", "-", "-3") == [None, 16, None, -3]

    @pytest.mark.parametrize("fn, words, message", [
        ("IDocuments_GetItem", ["doc", "1"], "'documents' expects a handle"),
        ("IDocuments_GetItem", ["0x1", "one"], "'index' expects an integer"),
        ("IDocuments_GetItem", ["0x1", "-"], "'index' expects an integer, not '-'"),
        ("ITavraDocument2D_MoveObjects", ["0x1", "x", "1"], "'dx' expects a number"),
        ("IDocuments_GetItem", ["0x1"], "takes 2 arguments \\(documents index\\), 1 given"),
    ])
    def test_bad_words_are_refused(self, fn, words, message):
        with pytest.raises(ValueError, match=message):
            parse(fn, *words)


def test_answers_print_one_value_a_line():
    assert format_answer(SIGNATURES["IApplication_GetSystemVersion"], (26, None, 0, None, True)) == [
        "26", "-", "0", "-", "true"]
    assert format_answer(SIGNATURES["IDocuments_GetLoadCombinations"], (None, None)) == ["-", "null"]
    assert format_answer(SIGNATURES["IDocuments_GetLoadCombinations"], (2, ["a", "é"])) == ["2", '["a", "é"]']
    assert format_answer(SIGNATURES["IApplication_GetDocuments"], Handle(0xab)) == ["0xab"]
    assert format_answer(SIGNATURES["IApplication_GetDocuments"], None) == ["0x0"]
    assert format_answer(SIGNATURES["IApplication_Quit"], None) == []


def test_list_and_help_describe_the_functions():
    out = io.StringIO()
    assert main(["list", "getsystemversion"], out) == 0
    assert out.getvalue() == ("IApplication_GetSystemVersion(major?, minor?, release?, build?) -> "
                              "i32 slot, i32 slot, i32 slot, i32 slot, i32\n")
    out = io.StringIO()
    assert main(["help", "IDocuments_Open"], out) == 0
    assert "fileName" in out.getvalue() and "Wire: u64, string, i32, i32 -> u64" in out.getvalue()


def test_usage_errors_exit_2_before_connecting(capsys):
    assert main(["call", "--port", "1", "IDocuments_GetItem", "0x1"]) == 2
    assert main(["call", "--port", "1", "INoSuch_Function"]) == 2
    assert "not a function the API Server serves" in capsys.readouterr().err


def run(port, *words):
    return subprocess.run([sys.executable, "-m", "tvapic", "call", "--port", str(port), *words],
                          capture_output=True, text=True, timeout=30, env=os.environ)


def test_calls_through_the_command(tvhost):
    _, port = tvhost
    done = run(port, "IApplication_GetSystemVersion", "0", "-", "0", "-")
    assert (done.returncode, done.stdout) == (0, "26\n-\n0\n-\ntrue\n"), done.stderr
    documents = run(port, "IApplication_GetDocuments").stdout.strip()
    assert documents.startswith("0x") and documents != "0x0"
    document = run(port, "IDocuments_Add", documents, "1", "false").stdout.strip()
    assert run(port, "ITavraDocument_SetAuthor", document, "Zoë \U0001F600").stdout == ""
    assert run(port, "ITavraDocument_GetAuthor", document).stdout == "Zoë \U0001F600\n"
