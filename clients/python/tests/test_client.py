"""The client's connection handling, against a stand-in server in a thread."""
import socket
import struct
import threading

import pytest

from tvapic import Client, Handle, ProtocolError


class StandIn:
    """Serves one connection: reads the request to its end (or `read` bytes),
    answers, then closes, optionally with a reset."""

    def __init__(self, answer, read=None, reset=False):
        self.answer, self.read, self.reset = answer, read, reset
        self.received = None
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        self.thread = threading.Thread(target=self.serve, daemon=True)
        self.thread.start()

    def serve(self):
        conn, _ = self.listener.accept()
        with conn:
            data = b""
            while self.read is None or len(data) < self.read:
                chunk = conn.recv(4096)
                if not chunk:
                    break
                data += chunk
            self.received = data
            conn.sendall(self.answer)
            if self.reset:
                conn.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.listener.close()

    def client(self):
        return Client(port=self.port, timeout=5)

    def join(self):
        self.thread.join(5)
        return self.received


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


def test_call_by_name_checks_the_name_and_arguments_before_connecting():
    client = Client(port=1)  # nothing listens there: a connection attempt would fail differently
    with pytest.raises(ValueError, match="did you mean IApplication_GetDocuments"):
        client.call("IApplication_GetDocument")
    with pytest.raises(TypeError, match="must be a tvapic.Handle"):
        client.ITavraDocument_GetName(0x10)
