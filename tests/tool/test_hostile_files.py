"""Files that are none, have no end or are nested without end: nothing hangs, grows or ends by a signal."""
import json
import os
import resource
import subprocess
import unittest

from program import SDM, ProgramTest, Run

MEMORY = 600 * 1024 * 1024
DEEP = "[" * 60000 + "]" * 60000


class HostileFiles(ProgramTest):
    def sdm(self, *arguments, script="", together=False):
        """In so little memory and time that a file without end ends it."""
        def limit():
            # Sanitizers and emulator take far more address space than that before anything is read.
            if os.environ.get("LARGE_ADDRESS_SPACE") != "1":
                resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_STACK, (1 << 20, 1 << 20))
        done = subprocess.run([SDM, *arguments], input=script.encode(), stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT if together else subprocess.PIPE, cwd=self.folder, timeout=30, preexec_fn=limit)
        return Run(done)

    def path(self, name):
        return os.path.join(self.device, name)

    def pipe(self, name):
        path = os.path.join(self.folder, name)
        os.mkfifo(path)
        return path

    def write(self, name, content):
        path = os.path.join(self.folder, name)
        with open(path, "w") as file:
            file.write(content)
        return path

    def test_what_is_no_regular_file_is_no_file_of_any_subcommand(self):
        self.run_script()
        for path in ("/dev/zero", self.pipe("pipe")):
            for arguments in (("new", "bell", "--map", path), ("run", "--map", path), ("run", "--service", path),
                              ("replay", path), ("check", path), ("check", "--service", path, os.environ["SAMPLE_MAP"]),
                              ("groups", "--map", path), ("groups", "--service", path),
                              ("replay", "--map", path, self.recorded()), ("replay", "--service", path, self.recorded())):
                run = self.sdm(*arguments)
                self.assertEqual(run.code, 3, (arguments, run.out, run.err))
                self.assertIn("no regular file", run.err, arguments)

    def test_a_line_without_end_is_refused_by_its_number_and_the_next_one_is_taken(self):
        longest = 1 << 20
        fits = "get time.zone".ljust(longest)
        lines = [fits, fits + " ", "get " + "x" * (200 << 20), "get time.zone", fits + "\r"]
        run = self.run_script(*lines)
        self.assertEqual(run.code, 1)
        self.assertEqual(run.lines(), ["time.zone = UTC"] * 3)
        self.assertEqual([line for line in run.remarks() if line.startswith("refused")],
                         ["refused: line %d has more than 1048576 bytes and is passed over" % i for i in (2, 3)])

    def test_a_service_that_writes_into_the_pipe_of_its_process_is_one_failed_test(self):
        os.mkdir(os.path.join(self.folder, "tests"))
        service = os.path.join(os.environ["SERVICES"], "FloodingLamp.so")
        map_file = self.write("Lamp.csv", "lamp.level,Lamp,Level,,,7,setLevel,getLevel,,,,\n")
        for name in ("calm", "flood"):
            self.sdm("run", "--device", self.path(name), "--service", service, "--map", map_file, "--record",
                     os.path.join(self.folder, "tests", name + ".jsonl"), script="set lamp.level 42\n" * (name == "flood"))
        run = self.sdm("test", os.path.join(self.folder, "tests"), "--service", service, "--map", map_file)
        self.assertEqual((run.code, run.err), (1, ""))
        self.assertIn("ok 1 - calm.jsonl", run.lines())
        self.assertIn("not ok 2 - flood.jsonl", run.lines())
        self.assertIn("told more than 64 MiB", run.after("  message: "))

    def recorded(self):
        path = os.path.join(self.folder, "recorded.jsonl")
        if not os.path.exists(path):
            self.sdm("run", "--device", os.path.join(self.folder, "recorded"), "--record", path)
        return path

    def test_what_is_larger_than_any_map_or_transcript_is_refused(self):
        path = os.path.join(self.folder, "large")
        with open(path, "w") as file:
            file.truncate(1 << 40)
        for arguments in (("new", "bell", "--map", path), ("run", "--map", path), ("replay", path), ("check", path)):
            run = self.sdm(*arguments)
            self.assertEqual(run.code, 3)
            self.assertIn("it has more than 64 MiB", run.err)

    def replaced(self, name):
        """The start with a pipe in the place of a file of the device."""
        self.run_script("set display.brightness 44")
        if os.path.exists(self.path(name)):
            os.remove(self.path(name))
        os.mkfifo(self.path(name))
        return self.run_script("get display.brightness", "set display.contrast 30")

    def test_a_pipe_in_the_place_of_a_log_is_told_and_the_device_runs(self):
        for name in ("history.log", "log/device.log"):
            run = self.replaced(name)
            self.assertEqual(run.code, 0, run.err)
            self.assertIn("display.brightness = 44", run.lines())
            self.assertRegex(run.after("  attention"), name + ".*no regular file")
            os.remove(self.path(name))

    def test_a_pipe_in_the_place_of_the_map_is_kept_aside(self):
        run = self.replaced("CommsSettings.csv")
        self.assertEqual(run.code, 0)
        self.assertIn("is damaged and kept as " + self.path("CommsSettings.csv.damaged-1"), run.after("  attention"))
        self.assertNotIn("attention", self.run_script().err)

    def test_a_pipe_in_the_place_of_another_file_ends_the_start(self):
        for name in ("das.key", "security.log", "lock", "das.db", "das.db-wal", "das.db-journal", "ocms.db"):
            run = self.replaced(name)
            self.assertEqual(run.code, 3, name)
            self.assertIn(self.path(name) + ": is no regular file; move it away", run.err)
            os.remove(self.path(name))

    def test_explain_takes_no_history_without_an_end(self):
        os.mkdir(self.device)
        os.symlink("/dev/zero", self.path("history.log"))
        run = self.sdm("explain", "--device", self.device, "time.zone")
        self.assertEqual(run.code, 3)
        self.assertIn("history.log cannot be read: it is no regular file", run.err)

    def test_a_deep_line_of_the_history_is_passed_over(self):
        self.run_script("set display.brightness 44")
        with open(self.path("history.log"), "a") as file:
            file.write('{"item": ' + DEEP + "}\n")
        self.assertEqual(self.sdm("explain", "--device", self.device, "display.brightness").code, 0)
        self.assertEqual(self.run_script("explain display.brightness").code, 0)

    def test_a_transcript_that_is_nested_deep_is_refused(self):
        path = self.write("deep.jsonl", '{"transcript": ' + DEEP + "}\n")
        run = self.sdm("replay", path)
        self.assertEqual((run.code, run.err), (3, "sdm: the transcript %s, line 1: this is nested deeper than 16 levels\n"
                                               % path))

    def test_a_hostile_transcript_is_one_failed_test(self):
        good = self.recorded()
        tests = os.path.join(self.folder, "tests")
        os.mkdir(tests)
        with open(good) as file:
            header, end = file.readlines()[0], '{"result": "run", "commands": 0}\n'
        with open(good) as file:
            self.write("tests/z.jsonl", file.read())
        hostile = {"a": DEEP + "\n", "b": header + '{"op": "x", "values": ' + DEEP + "}\n" + end,
                   "c": header + '{"log": 1e999999, "text": ""}\n' + end, "d": header + '{"op": "\\ud800"}\n' + end,
                   "e": header + "\0\n" + end, "f": header + '{"command": 7}\n' + end}
        for name, content in hostile.items():
            self.write("tests/%s.jsonl" % name, content)
        os.mkfifo(os.path.join(tests, "g.jsonl"))
        os.symlink("/dev/zero", os.path.join(tests, "h.jsonl"))
        run = self.sdm("test", tests, "--json")
        self.assertEqual(run.code, 1, run.err)
        self.assertEqual([(test["name"], test["passed"]) for test in json.loads(run.out)["tests"]],
                         [(name + ".jsonl", name == "z") for name in "abcdefghz"])


if __name__ == "__main__":
    unittest.main()
