"""The tvapic command: arguments read by signature, answers printed a value a
line or as JSON, and each way a call can fail said as what it is."""
import io
import json
import os
import socket
import subprocess
import sys

import pytest

from standin import StandIn
from tvapic import SIGNATURES, Client, Handle, NotReachable
from tvapic.cli import answer_json, format_answer, main, parse_arguments


def parse(fn, *words):
    return parse_arguments(SIGNATURES[fn], list(words))


class TestArguments:
    def test_words_are_read_by_the_parameter_kinds(self):
        assert parse("IDocuments_Open", "0x1f", "a b.tvd", "true", "0") == [Handle(31), "a b.tvd", True, False]
        assert parse("IDocuments_Open", "31", "-", "No", "1") == [Handle(31), "-", False, True]
        assert parse("ITavraDocument2D_MoveObjects", "0", "-1.5", "2") == [None, -1.5, 2.0]
        assert parse("IApplication_GetSystemVersion", "-", "0x10", "-", "-3") == [None, 16, None, -3]
        # The values help writes; slots left out at the end hold 0, so that their values come back.
        assert parse("IDocuments_GetItem", "None", "1") == [None, 1]
        assert parse("IApplication_GetSystemVersion", "None", "-") == [None, None, 0, 0]
        assert parse("IApplication_GetSystemVersion") == [0, 0, 0, 0]
        assert parse("IDocuments_GetLoadCombinations", "0x2", "a.tvd") == [Handle(2), "a.tvd", 0]

    @pytest.mark.parametrize("fn, words, message", [
        ("IDocuments_GetItem", ["doc", "1"], "'documents' expects a handle"),
        ("IDocuments_GetItem", ["0x1", "-"], "'index' expects an integer, not '-'"),
        ("ITavraDocument2D_MoveObjects", ["0x1", "x", "1"], "'dx' expects a number"),
        ("IDocuments_GetItem", ["0x1"], "takes 2 arguments \\(documents index\\), 1 given"),
        ("IDocuments_GetLoadCombinations", ["0x1"], "takes 2 to 3 arguments"),
    ])
    def test_bad_words_are_refused(self, fn, words, message):
        with pytest.raises(ValueError, match=message):
            parse(fn, *words)


def test_answers_print_one_value_a_line_or_as_json():
    version = SIGNATURES["IApplication_GetSystemVersion"]
    assert format_answer(version, (26, None, 0, None, True)) == ["26", "-", "0", "-", "true"]
    assert format_answer(SIGNATURES["IDocuments_GetLoadCombinations"], (None, None)) == ["-", "null"]
    assert format_answer(SIGNATURES["IDocuments_GetLoadCombinations"], (2, ["a", "é"])) == ["2", '["a", "é"]']
    assert format_answer(SIGNATURES["IApplication_GetDocuments"], None) == ["0x0"]
    assert format_answer(SIGNATURES["IApplication_Quit"], None) == []
    assert json.loads(answer_json(version, (26, None, 0, None, True))) == {
        "slots": {"major": 26, "minor": None, "release": 0, "build": None}, "result": True}
    assert json.loads(answer_json(SIGNATURES["IApplication_GetDocuments"], Handle(0xab))) == {
        "slots": {}, "result": "0xab"}


def test_list_and_help_describe_the_functions():
    out = io.StringIO()
    assert main(["list", "getsystemversion"], out) == 0
    assert out.getvalue() == ("IApplication_GetSystemVersion(major?, minor?, release?, build?) -> "
                              "i32 slot, i32 slot, i32 slot, i32 slot, i32\n")
    out = io.StringIO()
    assert main(["list", "--json", "GetExternalFilesNames"], out) == 0
    listed, = json.loads(out.getvalue())
    assert listed["params"][1] == {"name": "recursive", "kind": "i32", "type": "bool", "of": "", "slot": False}
    assert (listed["response"], listed["does_not_travel"]) == (["i32"], ["fileNames StringVector"])
    out = io.StringIO()
    assert main(["help", "IDocumentSettings_IsTextStability"], out) == 0 and "Remotable: no." in out.getvalue()


def test_usage_errors_exit_2_before_connecting(capsys):
    assert main(["call", "--port", "1", "IDocuments_GetItem", "0x1"]) == 2
    assert main(["call", "--port", "1", "IDocuments_Ad"]) == 2
    assert main(["call", "--port", "1", "IDocumentSettings_IsTextStability", "0x1"]) == 2
    err = capsys.readouterr().err
    assert "tvapic: 'IDocuments_Ad' is no function of the library; did you mean IDocuments_Add" in err
    assert ("tvapic: IDocumentSettings_IsTextStability is a function of the library, but the API Server does not "
            "serve it") in err
    for port in ("99999", "0", "http"):
        with pytest.raises(SystemExit) as exit:
            main(["call", "--port", port, "IApplication_GetBuildNumber"])
        assert exit.value.code == 2 and f"'{port}' is not a port number" in capsys.readouterr().err


def test_a_reader_that_stops_early_is_no_error():
    # More than a pipe holds: the command is still writing when the reader goes.
    listing = subprocess.Popen([sys.executable, "-m", "tvapic", "list", "--json"], stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, text=True)
    assert listing.stdout.readline() == "[\n"
    listing.stdout.close()   # as `tvapic list --json | head -1` does
    assert listing.stderr.read() == ""
    listing.wait(timeout=30)


def test_a_peer_that_is_no_api_server_is_named(capsys):
    stranger = StandIn(b"HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n")   # as a web server answers
    assert main(["call", "--port", str(stranger.port), "IApplication_GetBuildNumber"]) == 1
    assert f"tvapic: 127.0.0.1:{stranger.port} does not speak the API Server's protocol" in capsys.readouterr().err
    stranger.join()


def test_no_server_is_not_reachable(capsys):
    with socket.socket() as held:
        held.bind(("127.0.0.1", 0))   # bound, not listening: connections are refused
        port = held.getsockname()[1]
        with pytest.raises(NotReachable, match=f"cannot reach an API Server at 127.0.0.1:{port}"):
            Client(port=port).IApplication_GetBuildNumber()
        assert main(["call", "--port", str(port), "IApplication_GetBuildNumber"]) == 1
    assert "tvapic: cannot reach an API Server" in capsys.readouterr().err
    assert issubclass(NotReachable, ConnectionError)


def run(port, *words):
    return subprocess.run([sys.executable, "-m", "tvapic", "call", "--port", str(port), *words],
                          capture_output=True, text=True, timeout=30, env=os.environ)


def test_calls_through_the_command(tvhost):
    _, port = tvhost
    done = run(port, "IApplication_GetSystemVersion", "0", "-", "0", "-")
    assert (done.returncode, done.stdout) == (0, "26\n-\n0\n-\ntrue\n"), done.stderr
    documents = run(port, "IApplication_GetDocuments").stdout.strip()
    document = run(port, "IDocuments_Add", documents, "1", "false").stdout.strip()
    assert run(port, "ITavraDocument_SetAuthor", document, "Zoë \U0001F600").stdout == ""
    assert run(port, "ITavraDocument_GetAuthor", document).stdout == "Zoë \U0001F600\n"
    # A result that does not travel is said so, and the call counts as unanswered.
    done = run(port, "ITavraDocument_GetCreationDate", document)
    assert (done.returncode, done.stdout, done.stderr) == (1, "", "tvapic: ITavraDocument_GetCreationDate ran, but "
        "its double result does not travel back through the API Server: call it in process (tvapic.native) for its "
        "value\n")
