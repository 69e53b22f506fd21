"""Starts the program for a test: on a device folder of its own, with a script on a pipe."""
import os
import shutil
import subprocess
import tempfile
import unittest

SDM = os.environ["SDM"]


class Run:
    """What one run of the program left behind."""

    def __init__(self, done):
        self.out = done.stdout.decode()
        self.err = (done.stderr or b"").decode()
        self.code = done.returncode

    def lines(self):
        return self.out.splitlines()

    def remarks(self):
        return self.err.splitlines()

    def after(self, beginning):
        """The rest of the first line that begins so, of answers and remarks."""
        for line in self.lines() + self.remarks():
            if line.startswith(beginning):
                return line[len(beginning):].strip()
        raise AssertionError("no line begins with %r in:\n%s%s" % (beginning, self.out, self.err))

    def row(self, root_id):
        """The cells of an item in the last output of `list`."""
        lines = self.lines()
        heading = max(i for i, line in enumerate(lines) if line.startswith("ITEM "))
        for line in lines[heading + 1:]:
            if line.split(" ")[0] == root_id:
                return line.split()
        raise AssertionError("no row of %s in:\n%s" % (root_id, self.out))


class ProgramTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="sdm-test-")
        self.device = os.path.join(self.folder, "device")
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)

    def sdm(self, *arguments, script="", together=False):
        """`together` has all in the order in which it was written, as `out`."""
        done = subprocess.run([SDM, *arguments], input=script.encode(), stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT if together else subprocess.PIPE, cwd=self.folder, timeout=60)
        return Run(done)

    def run_script(self, *commands, options=(), together=False):
        script = "".join(command + "\n" for command in commands)
        return self.sdm("run", "--device", self.device, *options, script=script, together=together)

    def get(self, root_id):
        return self.run_script("get " + root_id).after(root_id + " = ")

    def files(self):
        """All files of the device folder with their content."""
        found = {}
        for folder, _, names in os.walk(self.device):
            for name in names:
                path = os.path.join(folder, name)
                with open(path, "rb") as file:
                    found[path] = file.read()
        return found
