"""The tvapic command: calls one function of the API Server from a shell.

    tvapic call [--host H] [--port N] [--timeout S] [--json] NAME [ARG...]
    tvapic list [--json] [TEXT]
    tvapic help NAME
    tvapic --version

Arguments are read by the function's signature, as `tvapic help NAME` writes
them: handles as 0x... or decimal (0 and None are the null handle), integers
in any base Python reads (0x10, -3), truth values as true/false/yes/no/on/off/
1/0, numbers as floats, texts as given. A slot (a value the function gives
back through a parameter) left out at the end is sent holding 0, so that its
value comes back; `-` or None sends it without a value. Options come before
NAME; every word after it is an argument.

Each value of the answer is printed on a line of its own: the slots first,
then the result. Handles print as 0x..., a slot sent without a value as `-`,
a list of texts as a JSON array (`null` for a null list). With --json the
answer is one JSON object instead: {"slots": {name: value}, "result": value},
handles as "0x..." strings, null for a null handle, a slot without a value
or no result.

Exit status: 0 answered; 1 the call could not be made or answered (no
server, not an API Server, an answer that does not fit), or it ran but its
result does not travel back (a double, a list: what did come back is
printed, and the reason on standard error); 2 a mistake in the command
line, found before anything is sent.
"""

import argparse
import json
import os
import sys

from . import __version__
from ._help import describe
from .client import DEFAULT_PORT, SIGNATURES, Client, signature
from .errors import NotReachable, ProtocolError
from .wire import Handle

_TRUE = {"1", "true", "yes", "on"}
_FALSE = {"0", "false", "no", "off"}


_NOT_GIVEN = ("-", "None")   # as the answer and `tvapic help` write a slot without a value


def parse_value(param, word):
    """The Python value of a command-line word for a parameter; ValueError when it does not read."""
    if param.is_slot and word in _NOT_GIVEN:
        return None
    type_ = param.type
    try:
        if type_ == "object":
            value = 0 if word == "None" else int(word, 0)
            return Handle(value) if value else None
        if type_ == "bool":
            low = word.lower()
            if low in _TRUE or low in _FALSE:
                return low in _TRUE
            return int(word, 0)
        if type_ in ("int", "enum", "int64"):
            return int(word, 0)
        if type_ == "double":
            return float(word)
    except ValueError:
        raise ValueError(f"argument {param.name!r} expects {_expects(param)}, not {word!r}") from None
    return word


def _expects(param):
    return {"object": "a handle (0x..., decimal or None)", "bool": "true or false", "double": "a number"}.get(
        param.type, "an integer") + (" or - to send it without a value" if param.is_slot else "")


def parse_arguments(sig, words):
    """The values of the words; slots left out at the end hold 0, so that their values come back."""
    required = max((n + 1 for n, p in enumerate(sig.params) if not p.is_slot), default=0)
    if not required <= len(words) <= len(sig.params):
        names = " ".join(p.name for p in sig.params) or "no arguments"
        count = f"{required} to {len(sig.params)}" if required < len(sig.params) else str(len(sig.params))
        raise ValueError(f"{sig.name} takes {count} argument{'s' * (len(sig.params) != 1)} "
                         f"({names}), {len(words)} given")
    words = list(words) + ["0"] * (len(sig.params) - len(words))
    return [parse_value(p, w) for p, w in zip(sig.params, words)]


def format_value(value):
    if value is None:
        return "-"
    if isinstance(value, Handle):
        return f"0x{int(value):x}"
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, list):
        return json.dumps(value, ensure_ascii=False)
    return str(value)


def format_answer(sig, answer):
    """The printed lines of a call's answer."""
    if sig.slots:
        values = list(answer)
    elif sig.result:
        values = [answer]
    else:
        return []
    lines = [format_value(v) for v in values]
    if sig.result:
        last = values[-1]
        if last is None:
            lines[-1] = "null" if sig.result.kind == "string vector" else "0x0"
    return lines


def _json_value(value):
    if isinstance(value, Handle):
        return f"0x{int(value):x}"
    return value


def answer_json(sig, answer):
    """The answer as one JSON object: {"slots": {name: value}, "result": value}."""
    values = list(answer) if sig.slots else [answer]
    slots = {p.name: _json_value(v) for p, v in zip(sig.slots, values)}
    result = _json_value(values[-1]) if sig.result else None
    return json.dumps({"slots": slots, "result": result}, ensure_ascii=False)


def signature_json(sig):
    return {"name": sig.name,
            "params": [{"name": p.name, "kind": p.kind, "type": p.type, "of": p.of, "slot": p.is_slot}
                       for p in sig.params],
            "response": sig.response, "does_not_travel": list(sig.stays)}


def port_number(text):
    try:
        port = int(text)
    except ValueError:
        port = 0
    if not 1 <= port <= 65535:
        raise argparse.ArgumentTypeError(f"{text!r} is not a port number (1 to 65535)")
    return port


def _parser():
    parser = argparse.ArgumentParser(prog="tvapic", description="Calls functions of tvAPIC's API Server.",
                                     epilog="See `tvapic help NAME` for a function's arguments.")
    parser.add_argument("--version", action="version", version=f"tvapic {__version__}")
    sub = parser.add_subparsers(dest="command", required=True)
    call = sub.add_parser("call", help="call a function and print its answer",
                          description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    call.add_argument("--host", default="127.0.0.1", help="server address (default 127.0.0.1)")
    call.add_argument("--port", type=port_number, default=DEFAULT_PORT,
                      help=f"server port (default {DEFAULT_PORT})")
    call.add_argument("--timeout", type=float, default=30.0, help="seconds to wait for the answer (default 30)")
    call.add_argument("--json", action="store_true", help="print the answer as one JSON object")
    call.add_argument("name", metavar="NAME")
    call.add_argument("args", metavar="ARG", nargs=argparse.REMAINDER)
    listing = sub.add_parser("list", help="list the functions, with their wire signatures")
    listing.add_argument("--json", action="store_true", help="print a JSON array of the signatures")
    listing.add_argument("text", nargs="?", default="", help="only names containing this text (any case)")
    helping = sub.add_parser("help", help="describe a function of the library")
    helping.add_argument("name", metavar="NAME")
    return parser


def main(argv=None, out=None):
    """Runs the command; its exit status."""
    args = _parser().parse_args(argv)
    out = out or sys.stdout
    try:
        status = _run(args, out)
        out.flush()
        return status
    except BrokenPipeError:
        # The reader went away (`tvapic list | head`): what it wanted it has.
        # Standard output points nowhere from here on, so that the
        # interpreter's last flush finds no broken pipe either.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return 1


def _run(args, out):
    try:
        if args.command == "list":
            found = [sig for name, sig in SIGNATURES.items() if args.text.lower() in name.lower()]
            if args.json:
                print(json.dumps([signature_json(sig) for sig in found], indent=1), file=out)
            else:
                for sig in found:
                    print(sig.describe(), file=out)
            return 0
        if args.command == "help":
            print(describe(args.name), file=out)
            return 0
        sig = signature(args.name)
        values = parse_arguments(sig, args.args)
    except ValueError as e:
        print(f"tvapic: {e}", file=sys.stderr)
        return 2
    client = Client(args.host, args.port, args.timeout)
    try:
        answer = client._invoke(sig, values)
    except (TypeError, ValueError) as e:
        print(f"tvapic: {e}", file=sys.stderr)
        return 2
    except (NotReachable, ProtocolError) as e:
        print(f"tvapic: {e}", file=sys.stderr)
        return 1
    except OSError as e:
        print(f"tvapic: the call to {args.host}:{args.port} failed: {e}", file=sys.stderr)
        return 1
    if args.json:
        print(answer_json(sig, answer), file=out)
    else:
        for line in format_answer(sig, answer):
            print(line, file=out)
    if sig.result_stays:
        print(f"tvapic: {sig.name} ran, but its {sig.result_stays} result does not travel back through the API "
              "Server: call it in process (tvapic.native) for its value", file=sys.stderr)
        return 1
    return 0
