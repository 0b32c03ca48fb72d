"""A server of files that behaves as the first part of an address says, for tests of remote files.

    server = Server(folder)            # http; Server(folder, certificate, key) is https
    server.address("plain", "clip.mxf")
    server.requests                    # what was asked and sent
"""

import base64
import http.server
import os
import re
import ssl
import threading
import time

MODIFIED = "Sun, 22 Nov 2026 10:00:00 GMT"


class Request:
    def __init__(self, method, path, headers):
        self.method = method
        self.path = path
        self.range = headers.get("Range")
        self.if_match = headers.get("If-Match")
        self.sent = 0


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    timeout = 20
    disable_nagle_algorithm = True

    def log_message(self, *_):
        pass

    def do_HEAD(self):
        self.server.note(Request("HEAD", self.path, self.headers))
        self.answer(405)

    def do_GET(self):
        self.request_noted = self.server.note(Request("GET", self.path, self.headers))
        mode, _, rest = self.path.split("?")[0].lstrip("/").partition("/")
        self.count = self.server.count(self.path.split("?")[0])
        behaviour = getattr(self, "mode_" + mode, None)
        name = rest.rpartition("/")[2]
        if behaviour is None or not os.path.isfile(os.path.join(self.server.folder, name or "clip.mxf")):
            self.answer(404)
        else:
            behaviour(rest)

    # What a server can do.

    def answer(self, status, headers=(), body=b"", length=None):
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        self.send_header("Content-Length", str(len(body) if length is None else length))
        self.end_headers()
        self.wfile.write(body)
        if length is not None and length != len(body):
            self.close_connection = True

    def send_bytes(self, path, first, count, pause=0.0):
        with open(path, "rb") as file:
            file.seek(first)
            while count:
                piece = file.read(min(count, 65536))
                if not piece:
                    break
                try:
                    self.wfile.write(piece)
                except (BrokenPipeError, ConnectionResetError):
                    self.close_connection = True
                    return
                self.request_noted.sent += len(piece)
                count -= len(piece)
                time.sleep(pause)

    def asked(self, size):
        found = re.fullmatch(r"bytes=(\d+)-(\d+)", self.headers.get("Range", ""))
        first, last = int(found[1]), min(int(found[2]), size - 1)
        return first, last

    def part(self, name, tag='"one"', modified=MODIFIED, total=0, most=None, shift=0,
             says_range=True, encoding=None, pause=0.0, sent=None):
        path = os.path.join(self.server.folder, name)
        size = os.path.getsize(path)
        first, last = self.asked(size)
        if first > last:
            self.answer(416, [("Content-Range", f"bytes */{size}")])
            return
        if most:
            last = min(last, first + most - 1)
        self.send_response(206)
        if says_range:
            self.send_header("Content-Range",
                             f"bytes {first + shift}-{last + shift}/{size + total}")
        if tag:
            self.send_header("ETag", tag)
        if modified:
            self.send_header("Last-Modified", modified)
        if encoding:
            self.send_header("Content-Encoding", encoding)
        count = last - first + 1
        self.send_header("Content-Length", str(count))
        self.end_headers()
        self.send_bytes(path, first, count if sent is None else sent, pause)
        if sent is not None:
            self.close_connection = True

    def whole(self, name, says_length=True):
        path = os.path.join(self.server.folder, name)
        size = os.path.getsize(path)
        self.send_response(200)
        if says_length:
            self.send_header("Content-Length", str(size))
        else:
            self.send_header("Connection", "close")
            self.close_connection = True
        self.end_headers()
        self.send_bytes(path, 0, size)

    # How it behaves.

    def mode_plain(self, name):
        self.part(name)

    def mode_versioned(self, name):
        """With the tag and time of change that the test has set, after the statuses that it has set."""
        if self.server.statuses:
            self.answer(self.server.statuses.pop(0))
        else:
            self.part(name, tag=self.server.tag, modified=self.server.modified)

    def mode_whole(self, name):
        self.whole(name)

    def mode_endless(self, name):
        self.whole(name, says_length=False)

    def mode_strong(self, name):
        if self.count > 1 and self.headers.get("If-Match") != '"one"':
            self.answer(400)
        else:
            self.part(name)

    def mode_weak(self, name):
        if self.headers.get("If-Match"):
            self.answer(400)
        else:
            self.part(name, tag='W/"one"')

    def mode_replaced(self, name):
        """A strong tag that does not match any more."""
        if self.headers.get("If-Match"):
            self.answer(412)
        else:
            self.part(name)

    def mode_tags(self, name):
        self.part(name, tag=f'W/"{self.count}"')

    def mode_dates(self, name):
        self.part(name, tag=None, modified=f"Sun, 22 Nov 2026 10:00:{self.count:02} GMT")

    def mode_grows(self, name):
        self.part(name, tag=None, total=self.count)

    def mode_shrinks(self, name):
        self.part(name) if self.count == 1 else self.answer(416)

    def mode_stops(self, name):
        """Sends no parts after the first one."""
        self.part(name) if self.count == 1 else self.whole(name)

    def mode_little(self, name):
        self.part(name, most=100_000)

    def mode_crumbs(self, name):
        self.part(name, most=10_000)

    def mode_elsewhere(self, name):
        self.part(name, shift=16, total=16)

    def mode_unsaid(self, name):
        self.part(name, says_range=False)

    def mode_gzip(self, name):
        self.part(name, encoding="gzip")

    def mode_slow(self, name):
        self.part(name, pause=0.05)

    def mode_cut(self, rest):
        """cut/N/NAME: breaks the first N answers off."""
        times, _, name = rest.partition("/")
        self.part(name, sent=1000 if self.count <= int(times) else None)

    def mode_headless(self, rest):
        """headless/N/NAME: breaks the first N answers off inside their head."""
        times, _, name = rest.partition("/")
        if self.count <= int(times):
            self.wfile.write(b"HTTP/1.1 206 Partial Content\r\nETag: \"one\"\r\n")
            self.close_connection = True
        else:
            self.part(name)

    def mode_more(self, name):
        """More than the range that it says."""
        self.send_response(206)
        size = os.path.getsize(os.path.join(self.server.folder, name))
        self.send_header("Content-Range", f"bytes 0-99/{size}")
        self.send_header("Content-Length", "1000")
        self.end_headers()
        self.wfile.write(bytes(1000))

    def mode_status(self, rest):
        """status/CODE/N/NAME: answers the first N requests with it."""
        code, times, name = rest.split("/", 2)
        if self.count <= int(times):
            self.answer(int(code), [("Retry-After", "0")])
        else:
            self.part(name)

    def mode_redirect(self, rest):
        """redirect/N/MODE/...: leads N times on."""
        times, _, rest = rest.partition("/")
        target = f"/redirect/{int(times) - 1}/{rest}" if int(times) > 1 else "/" + rest
        self.answer(302, [("Location", target)], b"moved")

    def mode_to(self, address):
        self.answer(307, [("Location", self.path.partition("?to=")[2])])

    def mode_signed(self, name):
        """Leads to an address that is good for one request."""
        self.answer(302, [("Location", f"/signature/{self.count}/{name}?key=SECRET")])

    def mode_signature(self, rest):
        self.part(rest.partition("/")[2]) if self.count == 1 else self.answer(403)

    def mode_user(self, name):
        wanted = "Basic " + base64.b64encode(b"ann:word").decode()
        if self.headers.get("Authorization") == wanted:
            self.part(name)
        else:
            self.answer(401, [("WWW-Authenticate", 'Basic realm="clips"')])


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def __init__(self, folder, certificate=None, key=None):
        super().__init__(("127.0.0.1", 0), Handler)
        self.folder = folder
        self.requests = []
        self.tag = '"one"'
        self.modified = MODIFIED
        self.statuses = []
        self._counts = {}
        self._lock = threading.Lock()
        self.scheme = "http"
        if certificate:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(certificate, key)
            self.socket = context.wrap_socket(self.socket, server_side=True)
            self.scheme = "https"
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def handle_error(self, request, client_address):
        pass

    def note(self, request):
        with self._lock:
            self.requests.append(request)
        return request

    def count(self, path):
        """How many requests there were for a path, this one included."""
        with self._lock:
            self._counts[path] = self._counts.get(path, 0) + 1
            return self._counts[path]

    def address(self, mode, name, host="127.0.0.1", user=""):
        return f"{self.scheme}://{user}{host}:{self.server_address[1]}/{mode}/{name}"

    def forget(self):
        with self._lock:
            self.requests.clear()
            self._counts.clear()

    def sent(self):
        """Bytes of bodies."""
        return sum(request.sent for request in self.requests)
