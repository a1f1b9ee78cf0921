"""What docs/protocol.md tells a client author, tried on a tvhost of the
test's own: its example client works as written; a client may half-close
after its request; bytes after a request go unread and cost nothing of the
response; an i32 is signed and an f64 passes any value, NaN included, byte
for byte.

    protocol_document_test.py <tvhost>
"""
import re
import socket
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "common"))
import tvhost_process  # noqa: E402

TVHOST = sys.argv.pop(1) if len(sys.argv) > 1 else str(ROOT / "build" / "apps" / "tvhost")


def u64(v):
    return struct.pack("<Q", v)


def text(s):
    return u64(len(s.encode())) + s.encode()


def example():
    """The Python of the document's section "A minimal client"."""
    section = (ROOT / "docs" / "protocol.md").read_text(encoding="utf-8").split("## A minimal client", 1)[1]
    return re.search(r"```python\n(.*?)```", section, re.S).group(1)


class ProtocolDocument(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.files = tempfile.TemporaryDirectory()
        cls.server, cls.port = tvhost_process.start([TVHOST], "--files", cls.files.name, stderr=subprocess.DEVNULL)
        assert cls.port, "tvhost did not start serving"

    @classmethod
    def tearDownClass(cls):
        tvhost_process.stop(cls.server)
        cls.files.cleanup()

    @classmethod
    def call(cls, name, values=b"", after=b"", half_close=True):
        """The response's bytes, up to the close or a reset after them."""
        with socket.create_connection(("127.0.0.1", cls.port), timeout=15) as s:
            s.sendall(text(name) + values + after)
            response = b""
            try:
                if half_close:
                    s.shutdown(socket.SHUT_WR)  # fails once bytes after the request had the server reset
            except OSError:
                pass
            try:
                while chunk := s.recv(65536):
                    response += chunk
            except ConnectionResetError:
                pass
        return response

    def document(self):
        documents = self.call("IApplication_GetDocuments")
        return struct.unpack("<Q", self.call("IDocuments_Add", documents + struct.pack("<ii", 1, 1)))[0]

    def test_the_example_client_works_as_written(self):
        code = example()
        self.assertIn("PORT = 8001", code)
        scope = {}
        exec(code.replace("PORT = 8001", f"PORT = {self.port}"), scope)  # noqa: S102 - the document's own code
        self.assertNotEqual(scope["document"], 0)
        self.assertEqual(scope["author"], "Ada")
        self.assertEqual(len(scope["reply"]), 4 * 9 + 4)

    def test_half_closing_after_the_request_and_bytes_after_it(self):
        handle = self.call("IApplication_GetDocuments", half_close=False)
        self.assertEqual(len(handle), 8)
        self.assertEqual(self.call("IApplication_GetDocuments"), handle)
        # Unread bytes: the whole response still arrives, then the close (a reset).
        self.assertEqual(self.call("IApplication_GetDocuments", after=b"\x07" * 64), handle)
        # A request cut short by the half-close is not answered.
        self.assertEqual(self.call("IDocuments_GetItem", handle + b"\x00\x00"), b"")

    def test_an_i32_is_signed_and_an_f64_passes_every_value_as_it_is(self):
        documents = self.call("IApplication_GetDocuments")
        # No such file: the function leaves the slot, which comes back as sent, then an empty list.
        reply = self.call("IDocuments_GetLoadCombinations", documents + text("none.tvd") + b"\x00" + struct.pack("<i", -7))
        self.assertEqual(reply, b"\x00" + b"\xf9\xff\xff\xff" + u64(0))
        # Without a matrix the drawing transforms nothing and leaves the slot.
        document = u64(self.document())
        for value in (b"\x01\x00\x00\x00\x00\x00\xf8\x7f", struct.pack("<d", float("-inf")), struct.pack("<d", -0.0)):
            reply = self.call("ITavraDocument2D_TransformLengthIntoMatrix", document + b"\x00" + value)
            self.assertEqual(reply, b"\x00" + value + struct.pack("<i", 0))


if __name__ == "__main__":
    unittest.main()
