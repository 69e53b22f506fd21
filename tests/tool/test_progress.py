"""What takes longer than a second says so on a terminal, and nowhere else."""
import os
import subprocess
import time
import unittest

import terminals
from program import SDM, ProgramTest

SLOW = os.path.join(os.environ["SERVICES"], "SlowLamp.so")
CLEARED = "\r\x1b[K"


class Progress(ProgramTest):
    def setUp(self):
        super().setUp()
        self.map = os.path.join(self.folder, "Lamp.csv")
        self.write_map("42")

    def write_map(self, level):
        with open(self.map, "w") as file:
            file.write("lamp.level,Lamp,Level,,,%s,setLevel,getLevel,,Lamp,,\n"
                       "lamp.hue,Lamp,Hue,,,,setKey,,,Lamp,,\n" % level)

    def on_terminal(self, *arguments, script=b"", until=None, environment=None):
        """What the program shows, its standard output and error being a terminal; up to a text that comes first."""
        terminal, its_end = terminals.open_pair()
        process = subprocess.Popen([SDM, *arguments], stdin=subprocess.PIPE, stdout=its_end, stderr=its_end,
                                   cwd=self.folder, env={**os.environ, "TERM": "xterm", "NO_COLOR": "1", "TMPDIR": self.folder,
                                                         **(environment or {})})
        os.close(its_end)
        process.stdin.write(script)
        process.stdin.close()
        seen = b""
        end = time.monotonic() + 60
        while time.monotonic() < end and (until is None or until.encode() not in seen):
            try:
                seen += os.read(terminal, 65536)
            except OSError:
                break
        process.kill()
        process.wait()
        os.close(terminal)
        return seen.decode(errors="replace")

    def recorded(self):
        """A folder with the transcript of a slow command."""
        self.write_map("1")
        os.mkdir(os.path.join(self.folder, "transcripts"))
        run = self.run_script("set lamp.level 42 lamp.hue \"\"", options=("--service", SLOW, "--map", self.map,
                                                                      "--record", "transcripts/slow.jsonl"))
        self.assertNotIn("\x1b", run.out + run.err)
        return "transcripts"

    def test_check_of_a_service(self):
        shown = self.on_terminal("check", "--service", SLOW, self.map)
        self.assertIn("trying %s with %s … 1 s" % (SLOW, self.map), shown)
        self.assertIn(CLEARED, shown[shown.rindex("trying"):])

    def test_start_of_a_run(self):
        shown = self.on_terminal("run", "--service", SLOW, "--map", self.map)
        self.assertIn("bringing the device up … 1 s", shown)
        self.assertIn(CLEARED, shown[:shown.index("Lamp is up on")])

    def test_groups(self):
        self.assertIn("starting the service … 1 s",
                      self.on_terminal("groups", "--permute", "--service", SLOW, "--map", self.map, until="… 1 s"))
        self.write_map("1")
        # How many are done by then depends on the machine.
        self.assertRegex(self.on_terminal("groups", "--permute", "--service", SLOW, "--map", self.map, "--set",
                                          "lamp.level=42", until="… 1 s"), "Lamp: [1-4] of 4 requests … 1 s")

    def test_replay_and_test(self):
        folder = self.recorded()
        arguments = ("--service", SLOW, "--map", self.map)
        shown = self.on_terminal("replay", *arguments, folder + "/slow.jsonl")
        self.assertIn("running transcripts/slow.jsonl again … 1 s", shown)
        self.assertIn(CLEARED, shown[:shown.index("as recorded")])
        self.assertIn("1 of 1: slow.jsonl … 1 s", self.on_terminal("test", *arguments, folder))

    def test_nothing_where_there_is_no_cursor(self):
        self.assertEqual(self.on_terminal("check", "--service", SLOW, self.map, environment={"TERM": "dumb"})
                         .count("trying"), 0)
        run = self.sdm("check", "--service", SLOW, self.map)
        self.assertNotIn("trying", run.out + run.err)


if __name__ == "__main__":
    unittest.main()
