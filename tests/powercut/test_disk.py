"""A disk that is full or cannot be written: what a device on it does and tells."""
import errno
import os
import unittest

from program import ProgramTest

LIBRARY = os.environ["POWERCUT"]
# When it is the file beside the database that cannot be made, the database does not say why.
ADVICE = {errno.ENOSPC: "make room|disk is full", errno.EROFS: "writable"}
REASON = {errno.ENOSPC: "(full|No space left|unable to open)", errno.EROFS: "(readonly|Read-only|unable to open)"}


class Disk(ProgramTest):
    def run_on(self, failure, *commands, since=1, options=(), together=False):
        plan = {"LD_PRELOAD": LIBRARY, "CUT_FOLDER": os.path.realpath(self.folder), "CUT_FAIL": str(failure),
                "CUT_FAIL_AT": str(since)}
        os.environ.update(plan)
        try:
            return self.run_script(*commands, options=options, together=together)
        finally:
            for name in plan:
                del os.environ[name]

    def attention(self, run):
        return [line for line in run.remarks() if line.startswith("  attention")]

    def test_the_service_starts_and_reads_what_is_there(self):
        self.run_script("set display.brightness 44 sip.userName anna sip.password opensesame42", "changed phone.room 4.12")
        before = {path: content for path, content in self.files().items() if not path.endswith("device.log")}
        for failure in ADVICE:
            run = self.run_on(failure, "get display.brightness phone.room sip.password", "list sip.password")
            self.assertEqual(run.code, 0, run.out + run.err)
            for line in ("display.brightness = 44", "phone.room = 4.12", "sip.password = *****"):
                self.assertIn(line, run.lines())
            self.assertEqual(run.row("sip.password")[3], "database")
            told = self.attention(run)
            for name in ("das.db", "ocms.db"):
                line = next(line for line in told if name in line)
                self.assertRegex(line, REASON[failure])
                self.assertRegex(line, ADVICE[failure])
                self.assertIn("changes are refused", line)
            after = {path: content for path, content in self.files().items()
                     if not path.endswith("device.log") and not path.endswith(("-wal", "-shm"))}
            self.assertEqual(after, before)

    def test_changes_are_refused_and_told(self):
        self.run_script("set display.brightness 44", "changed phone.room 4.12")
        for failure in ADVICE:
            run = self.run_on(failure, "set display.brightness 55", "changed phone.room 5.13", "lock display.banner",
                              "reset", "restart")
            self.assertEqual(run.code, 1)
            self.assertIn("the database did not take the change, so it is gone after a restart", run.err)
            self.assertGreaterEqual(run.err.count("refused: ") + run.err.count("failed"), 3, run.err)
            self.assertEqual(self.get("display.brightness"), "44")
            self.assertEqual(self.get("phone.room"), "4.12")

    def test_an_empty_folder_starts_with_defaults(self):
        for failure in ADVICE:
            self.device = os.path.join(self.folder, "device-%d" % failure)
            os.mkdir(self.device)
            run = self.run_on(failure, "get display.brightness", "set display.brightness 55")
            self.assertIn("display.brightness = 80", run.lines(), run.err)
            told = "\n".join(self.attention(run))
            for name in ("das.db", "ocms.db", "das.key", "CommsSettings.csv"):
                self.assertIn(name, told)
            self.assertEqual(run.code, 1)

    def test_a_disk_that_fills_up_loses_nothing_that_was_answered(self):
        self.run_script("set display.brightness 40")
        answered = 40
        for since in range(5, 60, 6):
            run = self.run_on(errno.ENOSPC, *("set display.brightness %d" % value for value in range(answered + 1, answered + 4)),
                              since=since, options=("--quiet",), together=True)
            # Each answer is either the value or a refusal right behind it.
            lines = run.lines()
            for place, line in enumerate(lines):
                if line.startswith("display.brightness = "):
                    gone = any("gone after a restart" in other for other in lines[place + 1:place + 2])
                    if not gone:
                        answered = int(line.split(" = ")[1].split()[0])
                    else:
                        self.assertIn("make room", lines[place + 1])
            self.assertEqual(self.get("display.brightness"), str(answered))
            self.run_script("set display.brightness 40")
            answered = 40

    def test_a_folder_that_cannot_be_made_is_an_error_that_says_what_to_do(self):
        for failure in ADVICE:
            run = self.run_on(failure)
            self.assertEqual(run.code, 3)
            self.assertIn(self.device, run.err)
            self.assertIn("--device", run.err)


if __name__ == "__main__":
    unittest.main()
