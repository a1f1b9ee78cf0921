"""tvapic: calls the host application's API through tvAPIC's API Server.

Client          calls functions over TCP, one connection per call
Handle          an object handle (None is the null handle)
ProtocolError   a response that does not fit the function called
SIGNATURES      every remotable function's wire signature, by name

tvapic.native   every export of libtvAPIC, called in process (ctypes)
tvapic.objects  one class per interface, over tvapic.native or a Client
"""

from .wire import Handle, Param, ProtocolError, Result, Signature
from .client import DEFAULT_PORT, SIGNATURES, Client, signature

__all__ = ["Client", "DEFAULT_PORT", "Handle", "Param", "ProtocolError", "Result", "SIGNATURES", "Signature",
           "signature"]
__version__ = "0.1.0"
