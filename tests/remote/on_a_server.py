"""What tests of clips on servers share: the command, a server with clips, and how such a test is started."""

import argparse
import ctypes
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

from long_clip import lengthen
from server import Server

SECONDS = 120
CORVID = CLIP = None


def run(*arguments, environment=None, **options):
    return subprocess.run([CORVID, *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          timeout=SECONDS, env={**os.environ, **(environment or {})}, text=True,
                          **options)


def clip():
    """The clip of the command line."""
    return CLIP


class OnAServer(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp()
        cls.clip = os.path.join(cls.folder, "clip.mxf")
        lengthen(CLIP, cls.clip, 3 * 2 ** 20)
        cls.small = os.path.join(cls.folder, "small.mxf")
        done = run("to-xml", CLIP, "-o", os.path.join(cls.folder, "clip.xml"))
        assert done.returncode == 0, done.stderr
        done = run("from-xml", os.path.join(cls.folder, "clip.xml"), "-o", cls.small)
        assert done.returncode == 0, done.stderr
        open(os.path.join(cls.folder, "empty.mxf"), "wb").close()
        cls.server = Server(cls.folder)

    @classmethod
    def tearDownClass(cls):
        cls.server.shutdown()
        cls.server.server_close()
        shutil.rmtree(cls.folder)

    def setUp(self):
        self.server.forget()

    def address(self, mode, name="clip.mxf", **options):
        return self.server.address(mode, name, **options)

    def read(self, mode, name="clip.mxf", *options):
        """The document of a remote clip."""
        return run("to-xml", *options, self.address(mode, name))

    def assert_read(self, mode, name="clip.mxf", *options):
        remote = self.read(mode, name, *options)
        local = run("to-xml", os.path.join(self.folder, name))
        self.assertEqual(remote.returncode, 0, remote.stderr)
        self.assertEqual(remote.stdout, local.stdout)
        self.assertNotIn("HEAD", [request.method for request in self.server.requests])

    def assert_refused(self, mode, what, name="clip.mxf", *options):
        done = self.read(mode, name, *options)
        self.assertEqual(done.returncode, 3, done.stderr)
        self.assertEqual(done.stdout, "")
        self.assertIn(what, done.stderr)
        self.assertNotIn("SECRET", done.stderr)


def has_curl():
    for name in ("libcurl.so.4", "libcurl-gnutls.so.4"):
        try:
            ctypes.CDLL(name)
            return True
        except OSError:
            pass
    return False


def main():
    """Runs the tests of the script. Exit status 77 where the clip or libcurl is not there."""
    global CORVID, CLIP
    parser = argparse.ArgumentParser()
    parser.add_argument("--corvid", required=True)
    parser.add_argument("clip")
    given, rest = parser.parse_known_args()
    if not os.path.exists(given.clip) or not has_curl():
        print("no clip, or no libcurl")
        sys.exit(77)
    CORVID, CLIP = given.corvid, given.clip
    # A proxy would answer instead, and other certificates be trusted.
    for variable in list(os.environ):
        if variable.lower().endswith("_proxy") or variable in ("CURL_CA_BUNDLE", "SSL_CERT_FILE"):
            del os.environ[variable]
    unittest.main("__main__", argv=[sys.argv[0], *rest])
