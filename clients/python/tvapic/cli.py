"""The tvapic command: calls one function of the API Server from a shell.

    tvapic call [--host H] [--port N] NAME [ARG...]
    tvapic list [TEXT]
    tvapic help NAME

Arguments are read by the function's signature: handles as 0x... or decimal
(0 is the null handle), integers in any base Python reads (0x10, -3),
truth values as true/false/yes/no/on/off/1/0, numbers as floats, texts as
given. `-` leaves a slot out. Options come before NAME; every word after it
is an argument.

Each value of the answer is printed on a line of its own: the slots first,
then the result. Handles print as 0x..., a left-out slot as `-`, a list of
texts as a JSON array (`null` for a null list).
"""

import argparse
import inspect
import json
import sys

from .client import DEFAULT_PORT, SIGNATURES, Client, signature
from .wire import Handle, ProtocolError

_TRUE = {"1", "true", "yes", "on"}
_FALSE = {"0", "false", "no", "off"}


def parse_value(param, word):
    """The Python value of a command-line word for a parameter; ValueError when it does not read."""
    if param.is_slot and word == "-":
        return None
    type_ = param.type
    try:
        if type_ == "object":
            value = int(word, 0)
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
    return {"object": "a handle (0x... or decimal)", "bool": "true or false", "double": "a number"}.get(
        param.type, "an integer") + (" or - to leave it out" if param.is_slot else "")


def parse_arguments(sig, words):
    if len(words) != len(sig.params):
        names = " ".join(p.name for p in sig.params) or "no arguments"
        raise ValueError(f"{sig.name} takes {len(sig.params)} argument{'s' * (len(sig.params) != 1)} "
                         f"({names}), {len(words)} given")
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


def _parser():
    parser = argparse.ArgumentParser(prog="tvapic", description="Calls functions of tvAPIC's API Server.",
                                     epilog="See `tvapic help NAME` for a function's arguments.")
    sub = parser.add_subparsers(dest="command", required=True)
    call = sub.add_parser("call", help="call a function and print its answer",
                          description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    call.add_argument("--host", default="127.0.0.1", help="server address (default 127.0.0.1)")
    call.add_argument("--port", type=int, default=DEFAULT_PORT, help=f"server port (default {DEFAULT_PORT})")
    call.add_argument("--timeout", type=float, default=30.0, help="seconds to wait for the answer (default 30)")
    call.add_argument("name", metavar="NAME")
    call.add_argument("args", metavar="ARG", nargs=argparse.REMAINDER)
    listing = sub.add_parser("list", help="list the functions, with their wire signatures")
    listing.add_argument("text", nargs="?", default="", help="only names containing this text (any case)")
    helping = sub.add_parser("help", help="describe a function")
    helping.add_argument("name", metavar="NAME")
    return parser


def main(argv=None, out=None):
    out = out or sys.stdout
    args = _parser().parse_args(argv)
    try:
        if args.command == "list":
            for name, sig in SIGNATURES.items():
                if args.text.lower() in name.lower():
                    print(sig.describe(), file=out)
            return 0
        sig = signature(args.name)
        if args.command == "help":
            print(inspect.getdoc(getattr(Client, sig.name)), file=out)
            return 0
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
    except ProtocolError as e:
        print(f"tvapic: {e}", file=sys.stderr)
        return 1
    except OSError as e:
        print(f"tvapic: cannot call {args.host}:{args.port}: {e}", file=sys.stderr)
        return 1
    for line in format_answer(sig, answer):
        print(line, file=out)
    return 0
