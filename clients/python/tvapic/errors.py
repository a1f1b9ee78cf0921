"""The errors tvapic raises when a call cannot give its answer, one class per reason.

    Error               any of them
      NotReachable      nothing accepts the connection (also a ConnectionError)
      ProtocolError     an answer that does not fit the function called
        NotAnAPIServer  the peer answers, but not as an API Server does
      NotRemotable      the API Server does not serve the function (also a ValueError)
      DoesNotTravel     the function ran on the server; its result cannot come back
      NullHandle        an object was required and the null handle came
      NoApplication     in process, outside the application, before the simulated host started

Arguments of the wrong type or out of range are refused before anything is
sent, with Python's own TypeError and ValueError.
"""


class Error(Exception):
    """Something tvapic could not do for a reason of its own."""


class NotReachable(Error, ConnectionError):
    """Nothing at the address accepts the connection: no application, or its
    API Server is not started, or another port."""


class ProtocolError(Error):
    """A response that does not fit the signature of the function called."""


class NotAnAPIServer(ProtocolError):
    """The peer answered in a way no API Server answers: it is some other program."""


class NotRemotable(Error, ValueError):
    """A function of the library that the API Server does not serve: it is
    called in process only (tvapic.native)."""


class DoesNotTravel(Error):
    """The function was called on the server, but its result (a double, a
    structure, a list) does not travel back. `answer` holds what did come
    back, in the in-process shape, with None in the result's place."""

    def __init__(self, message, answer=None):
        super().__init__(message)
        self.answer = answer


class NullHandle(Error, ValueError):
    """The null handle (None) where an object was required."""


class NoApplication(Error, RuntimeError):
    """In process, a call of the application (or of its transfer service)
    while none is in the process: outside the application, the simulated
    host has to be started first (tvapic.native.start_simulated_host())."""
