"""A client of the API Server: one call per connection.

    from tvapic import Client
    app = Client(port=8001)
    docs = app.IApplication_GetDocuments()          # a Handle
    doc = app.IDocuments_Add(docs, 1, True)
    app.ITavraDocument_SetAuthor(doc, "Ada")
    print(app.ITavraDocument_GetAuthor(doc))
    major, minor, release, build, ok = app.IApplication_GetSystemVersion(0, 0, 0, 0)

Every remotable function is a method named as it is exported, with its
arguments in the order the function takes them (the object's handle first);
`call(name, *args)` does the same by name. See `tvapic.wire.decode_response`
for what comes back, and `tvapic.errors` for what is raised instead.
"""

import difflib
import socket

from .errors import NotAnAPIServer, NotReachable, NotRemotable, ProtocolError
from .wire import bind, decode_response, encode_request, pack_name

try:
    from ._generated_remote import SIGNATURES, RemoteAPI
except ImportError as e:  # pragma: no cover - only a bare source checkout lacks it
    raise ImportError("tvapic/_generated_remote.py is missing: it is generated from the catalogue when the package "
                      "is built (the CMake build stages it; `pip install clients/python` installs it)") from e

DEFAULT_PORT = 8001


def signature(name):
    """The Signature of a remotable function; NotRemotable for a function of
    the library that the API Server does not serve, ValueError for any other name."""
    try:
        return SIGNATURES[name]
    except KeyError:
        pass
    from ._generated_exports import FUNCTIONS
    if name in FUNCTIONS:
        raise NotRemotable(f"{name} is a function of the library, but the API Server does not serve it: "
                           "it is called in process only (tvapic.native)")
    raise unknown_function(name)


def unknown_function(name):
    """The ValueError for a name the library does not export, with the names it may have meant."""
    from ._generated_exports import FUNCTIONS
    close = difflib.get_close_matches(name, SIGNATURES, n=3) or difflib.get_close_matches(name, FUNCTIONS, n=3)
    hint = f"; did you mean {', '.join(close)}?" if close else ""
    return ValueError(f"{name!r} is no function of the library{hint}")


class Client(RemoteAPI):
    """Calls functions on the API Server at host:port.

    timeout (seconds, or None to wait without limit) bounds connecting and
    each wait for the answer; a function that opens a dialog in the host
    answers only when the user closes it.
    """

    def __init__(self, host="127.0.0.1", port=DEFAULT_PORT, timeout=30.0):
        self.host = host
        self.port = port
        self.timeout = timeout

    def __repr__(self):
        return f"Client(host={self.host!r}, port={self.port})"

    def call(self, name, *args, **kwargs):
        """Calls a remotable function by name; arguments as for its method."""
        sig = signature(name)
        return self._invoke(sig, bind(sig, args, kwargs))

    def call_raw(self, name, payload=b""):
        """Sends the name and the bytes given as they are; returns the response bytes.

        Nothing is checked: this reaches any name, served or not.
        """
        return self.exchange(pack_name(name) + bytes(payload))

    def exchange(self, request):
        """Sends a whole request on a connection of its own and returns every byte of the answer."""
        return self._exchange(request)[0]

    def _invoke(self, sig, values):
        request = encode_request(sig, values)
        response, reset = self._exchange(request)
        try:
            return decode_response(sig, response, values)
        except ProtocolError as e:
            if response:
                # An API Server answers a function it serves exactly by its
                # signature, or not at all.
                raise NotAnAPIServer(f"{self.host}:{self.port} does not speak the API Server's protocol: it "
                                     f"answered {sig.name} with {len(response)} bytes ({response[:24]!r}"
                                     f"{'...' if len(response) > 24 else ''}), which do not fit ({e})") from None
            if reset:
                raise ProtocolError(f"{e} (the server reset the connection)") from None
            raise

    def _connect(self):
        try:
            return socket.create_connection((self.host, self.port), timeout=self.timeout)
        except OSError as e:   # refused, unreachable, timed out, a name that does not resolve
            raise NotReachable(f"cannot reach an API Server at {self.host}:{self.port}: {e.strerror or e} "
                               "(is the application running, with its API Server started on that port?)") from e

    def _exchange(self, request):
        """(response, whether the connection ended with a reset)."""
        chunks = []
        reset = False
        with self._connect() as s:
            try:
                # All at once: the server handles one call at a time, and
                # waits for this one's bytes while it holds the application.
                s.sendall(request)
            except (BrokenPipeError, ConnectionResetError):
                # The server stopped reading early (an unknown name) and
                # closed: what it answered before is still the answer.
                reset = True
            try:
                s.shutdown(socket.SHUT_WR)
            except OSError:
                pass  # already closed by the server
            while True:
                try:
                    chunk = s.recv(65536)
                except ConnectionResetError:
                    # The server discards bytes it did not read when it
                    # closes; a reset after its answer is the answer's end.
                    reset = True
                    break
                if not chunk:
                    break
                chunks.append(chunk)
        return b"".join(chunks), reset
