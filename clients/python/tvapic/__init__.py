"""tvapic: calls the host application's API through tvAPIC's API Server.

Client          calls functions over TCP, one connection per call
Handle          an object handle (None is the null handle)
SIGNATURES      every remotable function's wire signature, by name
Error, ...      what is raised when a call cannot answer (see tvapic.errors)

tvapic.native   every export of libtvAPIC, called in process (ctypes)
tvapic.objects  one class per interface, over tvapic.native or a Client
"""

from .errors import (DoesNotTravel, Error, NoApplication, NotAnAPIServer, NotReachable, NotRemotable, NullHandle,
                     ProtocolError)
from .wire import Handle, Param, Result, Signature
from .client import DEFAULT_PORT, SIGNATURES, Client, signature

__all__ = ["Client", "DEFAULT_PORT", "DoesNotTravel", "Error", "Handle", "NoApplication", "NotAnAPIServer",
           "NotReachable", "NotRemotable", "NullHandle", "Param", "ProtocolError", "Result", "SIGNATURES", "Signature",
           "signature"]
__version__ = "0.1.0"
