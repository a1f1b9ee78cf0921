"""The client's connection handling, against a stand-in server in a thread."""
import struct

import pytest

from standin import StandIn
from tvapic import Handle, ProtocolError


def name(s):
    return struct.pack("<Q", len(s)) + s.encode()


def test_the_whole_request_is_sent_and_the_sending_side_shut():
    # The stand-in reads to the end of the stream: it returns only because the client shut its side.
    server = StandIn(struct.pack("<Q", 0x99))
    assert server.client().IDocuments_GetItem(Handle(0x10), 2) == Handle(0x99)
    assert server.join() == name("IDocuments_GetItem") + struct.pack("<Qi", 0x10, 2)


def test_a_reset_after_the_answer_ends_it():
    # The stand-in leaves part of the request unread, so its close resets the connection.
    server = StandIn(b"\0" + struct.pack("<i", 7) + b"\1\1\1" + struct.pack("<i", 1), read=8, reset=True)
    assert server.client().IApplication_GetSystemVersion(1) == (7, None, None, None, True)
    server.join()


def test_an_answer_cut_short_names_the_function():
    server = StandIn(b"\0" + struct.pack("<i", 7))
    with pytest.raises(ProtocolError, match="IApplication_GetSystemVersion.*too short"):
        server.client().call("IApplication_GetSystemVersion", 1, 2)
    server.join()


