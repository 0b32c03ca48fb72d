"""Resumes work on clips on servers.

    resume_test.py --corvid PATH CLIP.mxf
"""

import json
import os
import shutil
import tempfile

from on_a_server import OnAServer, clip, main, run
from server import MODIFIED

LATER = "Sun, 22 Nov 2026 10:00:01 GMT"


class Resumes(OnAServer):
    def setUp(self):
        super().setUp()
        self.server.tag, self.server.modified, self.server.statuses = '"one"', MODIFIED, []
        self.work = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.work)
        self.log = os.path.join(self.work, "log")
        self.out = os.path.join(self.work, "out")
        self.name = "versioned.mxf"
        self.file = os.path.join(self.folder, self.name)
        shutil.copy(self.clip, self.file)

    def convert(self, *options, query="key=SECRET", mode="versioned"):
        """What is said of one clip: nothing where it was converted."""
        self.server.forget()
        address = self.address(mode, self.name, user="ann:SECRET@") + "?" + query
        done = run("to-xml", address, "--output-dir", self.out, "--log", self.log, *options)
        self.assertNotIn("SECRET", done.stdout + done.stderr)
        return done.stderr

    def resume(self, *options, **others):
        return self.convert("--resume", *options, **others)

    def lines(self):
        with open(self.log) as file:
            return [json.loads(line) for line in file]

    def assert_left_out(self, said):
        self.assertEqual(said, "corvid: 0 files; 1 done before\n")
        self.assertEqual([request.range for request in self.server.requests], ["bytes=0-0"])
        self.assertLessEqual(self.server.sent(), 1)
        self.assertEqual(len(self.lines()), 1)

    def assert_done_again(self, said):
        self.assertEqual(said, "")
        self.assertEqual([line["status"] for line in self.lines()], ["ok", "ok"])
        # Afterwards, it is done.
        self.assertEqual(self.resume(), "corvid: 0 files; 1 done before\n")

    def test_without_what_has_not_changed(self):
        self.convert()
        self.assert_left_out(self.resume())
        (line,) = self.lines()
        self.assertEqual(line["size"], os.path.getsize(self.file))
        self.assertIsNone(line["mtimeNs"])
        self.assertEqual(line["remoteVersion"], '"one"')
        self.assertNotIn("SECRET", json.dumps(line))

    def test_whatever_the_query(self):
        self.convert()
        self.assert_left_out(self.resume(query="key=SECRET2"))

    def test_whatever_the_time_where_the_tag_is_strong(self):
        self.convert()
        self.server.modified = LATER
        self.assert_left_out(self.resume())

    def test_by_the_time_where_no_tag_is_strong(self):
        for tag in (None, 'W/"one"'):
            self.server.tag, self.server.modified = tag, MODIFIED
            self.convert()
            self.assert_left_out(self.resume())
            self.server.modified = LATER
            self.assert_done_again(self.resume())
            os.remove(self.log)

    def test_with_another_weak_tag(self):
        self.server.tag = 'W/"one"'
        self.convert()
        self.server.tag = 'W/"two"'
        self.assert_done_again(self.resume())

    def test_with_another_tag(self):
        self.convert()
        self.server.tag = '"two"'
        self.assert_done_again(self.resume())

    def test_with_another_length(self):
        self.convert()
        shutil.copy(clip(), self.file)
        self.assert_done_again(self.resume())

    def test_what_says_neither_tag_nor_time(self):
        for tag in (None, 'W/"one"', '"' + 2000 * "o" + '"'):
            self.server.tag, self.server.modified = tag, None
            self.convert()
            self.assertEqual(self.resume(), "")
            self.assertEqual(self.resume(), "")
            self.assertIsNone(self.lines()[-1]["size"])

    def test_what_comes_whole(self):
        self.name = "small.mxf"
        self.convert(mode="whole")
        self.assertEqual(self.resume(mode="whole"), "")

    def test_what_can_not_be_asked_for_a_moment(self):
        self.convert()
        self.server.statuses = [503, 503]
        self.assert_done_again(self.resume())

    def test_what_is_gone(self):
        self.convert()
        self.server.statuses = [404, 404]
        self.assertIn("(404)", self.resume())
        self.assertEqual(self.resume(), "")

    def test_with_other_options_without_asking(self):
        self.convert()
        self.assertEqual(self.resume("--structural-only"), "")
        self.assertNotIn("bytes=0-0", [request.range for request in self.server.requests])

    def test_never_asks_where_people_forbid_it(self):
        self.convert()
        self.assertIn("--no-remote forbids", self.resume("--no-remote"))
        self.assertEqual(self.server.requests, [])

    def test_never_asks_for_a_file_whatever_the_log_says(self):
        path = self.address("plain", self.name).partition("://")[2]
        os.makedirs(os.path.dirname(os.path.join(self.work, path)))
        shutil.copy(self.file, os.path.join(self.work, path))
        run("info", path, "--log", self.log, cwd=self.work)
        (line,) = self.lines()
        line["remoteVersion"] = '"one"'
        with open(self.log, "w") as file:
            file.write(json.dumps(line, separators=(",", ":")) + "\n")
        done = run("info", path, "--log", self.log, "--resume", cwd=self.work)
        self.assertEqual(done.stderr, "corvid: 0 files; 1 done before\n")
        self.assertEqual(self.server.requests, [])

    def test_a_result_that_is_lost(self):
        self.convert()
        shutil.rmtree(self.out)
        self.assert_done_again(self.resume())

    def test_many_at_once(self):
        names = [f"many{number}.mxf" for number in range(20)]
        for name in names:
            os.link(self.file, os.path.join(self.folder, name))
        listed = "".join(self.address("versioned", name) + "?key=SECRET\n" for name in names)
        for added, said in ((self.clip, "corvid: 21 files: 21 ok\n"),
                            (self.clip, "corvid: 0 files; 21 done before\n"),
                            (clip(), "corvid: 1 file: 1 ok; 21 done before\n")):
            self.server.forget()
            done = run("check", self.clip, added, "--files-from", "-", "--jobs", "3", "--resume", "--log",
                       self.log, "--output-dir", self.out, input=listed)
            self.assertEqual(done.stderr, said)
            self.assertEqual(done.returncode, 0)
        self.assertEqual(len(self.server.requests), len(names))
        self.assertEqual(len(self.lines()), 22)


if __name__ == "__main__":
    main()
