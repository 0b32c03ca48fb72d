"""Runs every command of the page about archives, and lets a node of a cluster die.

    archive_test.py --corvid PATH --page docs/archive.md CLIP.mxf

Parts whose programs are missing are skipped; exit status 77 where all are.
"""

import argparse
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

from cluster import Cluster, NoCluster

CORVID = PAGE = CLIP = None
CLIPS = 300
SECONDS = 120


def blocks(kind):
    with open(PAGE, encoding="utf-8") as file:
        return re.findall(rf"^```{kind}\n(.*?)^```$", file.read(), re.MULTILINE | re.DOTALL)


def commands(section):
    """The commands that name a program, each with what the page shows of its output."""
    found = []
    for block in blocks("console"):
        for example in re.split(r"^\$ ", block, flags=re.MULTILINE)[1:]:
            command, _, output = example.partition("\n")
            found.append((command, output))
    return [each for each in found if re.match(section, each[0])]


class Archive(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        for number in range(CLIPS):
            target = os.path.join(self.folder, "clips", f"{number % 7}", f"{number}.mxf")
            os.makedirs(os.path.dirname(target), exist_ok=True)
            shutil.copy(CLIP, target)
        with open(os.path.join(self.folder, "clips", "none.mxf"), "w") as file:
            file.write("no MXF file\n")
        with open(os.path.join(self.folder, "hosts"), "w") as file:
            file.write(":\n")
        os.makedirs(os.path.join(self.folder, "log"))
        self.environment = {**os.environ,
                            "PATH": os.path.dirname(CORVID) + os.pathsep + os.environ["PATH"],
                            "PARALLEL_HOME": self.folder}

    def need(self, *programs):
        for program in programs:
            if shutil.which(program) is None:
                self.skipTest(f"no {program}")

    def run_here(self, command, status, shown="...\n"):
        done = subprocess.run(command, shell=True, cwd=self.folder, env=self.environment,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True, timeout=SECONDS)
        self.assertIn(done.returncode, status, f"{command}\n{done.stderr}")
        pattern = re.escape(shown).replace(r"\.\.\.", ".*")
        self.assertRegex(done.stdout, re.compile(f"^{pattern.rstrip()}\n?$", re.DOTALL), command)
        return done.stdout

    def assert_done(self):
        """Each clip has its document, and the document of none is half-written."""
        one = subprocess.run([CORVID, "to-xml", CLIP], stdout=subprocess.PIPE, check=True).stdout
        count = 0
        for folder, _, names in os.walk(os.path.join(self.folder, "xml")):
            for name in names:
                with open(os.path.join(folder, name), "rb") as file:
                    self.assertEqual(file.read(), one, name)
                count += 1
        self.assertEqual(count, CLIPS)
        last = {}
        for name in os.listdir(os.path.join(self.folder, "log")):
            if name.endswith(".log"):
                with open(os.path.join(self.folder, "log", name)) as file:
                    for line in file:
                        entry = json.loads(line)
                        last[entry["path"]] = entry["status"]
        self.assertEqual(last.pop("clips/none.mxf"), "refused")
        self.assertEqual(set(last.values()), {"ok"})
        self.assertEqual(len(last), CLIPS)

    def test_over_hosts_and_into_a_table(self):
        self.need("parallel")
        for command, shown in commands("mkdir|parallel"):
            # One clip is none.
            self.run_here(command, (0, 1), shown)
        self.assert_done()
        self.need("jq", "sqlite3")
        table = commands("jq|sqlite3")
        self.assertGreater(len(table), 5)
        printed = "".join(self.run_here(command, (0,), shown) for command, shown in table)
        self.assertIn(f"ok|{CLIPS}\nrefused|1\n", printed)
        self.assertIn("clips/none.mxf|", printed)

    def test_over_a_cluster_of_which_a_node_dies(self):
        # The sockets of a cluster have names of at most some hundred bytes.
        folder = tempfile.mkdtemp(prefix="corvid-slurm-", dir="/tmp")
        self.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        try:
            with Cluster(folder) as cluster:
                self.environment["SLURM_CONF"] = cluster.environment["SLURM_CONF"]
                self.submit_and_let_the_node_die(cluster)
                self.assertEqual(self.documents(), CLIPS)
                # What is done is passed over.
                self.run_here(*self.submission())
        except NoCluster as reason:
            self.skipTest(str(reason))
        self.assert_done()

    def submission(self):
        (script,) = blocks("sh")
        with open(os.path.join(self.folder, "archive.sbatch"), "w") as file:
            file.write(script)
        ((command, shown),) = commands("sbatch")
        return command, (0, 1), shown

    def submit_and_let_the_node_die(self, cluster):
        command, _, _ = self.submission()
        waiting = subprocess.Popen(command, shell=True, cwd=self.folder, env=self.environment,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            self.wait_for(lambda: 0 < self.documents())
            cluster.kill_node()
            self.assertLess(self.documents(), CLIPS)
            cluster.wait_until_missed()
            cluster.start_node()
            cluster.start_waiting_jobs()
            waiting.wait(SECONDS)
        finally:
            if waiting.poll() is None:
                waiting.kill()
                waiting.wait()

    def documents(self):
        return sum(len(names) for _, _, names in os.walk(os.path.join(self.folder, "xml")))

    def wait_for(self, is_so):
        end = time.monotonic() + SECONDS
        while not is_so():
            self.assertLess(time.monotonic(), end)
            time.sleep(0.02)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--corvid", required=True)
    parser.add_argument("--page", required=True)
    parser.add_argument("clip")
    given, rest = parser.parse_known_args()
    CORVID, PAGE, CLIP = (os.path.abspath(path) for path in (given.corvid, given.page, given.clip))
    program = unittest.main(argv=[sys.argv[0], *rest], exit=False)
    if not program.result.wasSuccessful():
        sys.exit(1)
    sys.exit(77 if len(program.result.skipped) == program.result.testsRun else 0)
