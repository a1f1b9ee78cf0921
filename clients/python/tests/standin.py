"""A stand-in server in a thread, for tests of how the client handles a connection."""
import socket
import struct
import threading

from tvapic import Client


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
