"""Standard streams that are closed or full, and a limit on the size of files."""
import os
import resource
import subprocess
import unittest

from program import SDM, ProgramTest, Run


class Streams(ProgramTest):
    def shell(self, redirection, script="", **options):
        command = 'exec "$0" run --device "$1" ' + redirection
        return Run(subprocess.run(["sh", "-c", command, SDM, self.device], input=script.encode(), cwd=self.folder,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60, **options))

    def content(self, name):
        with open(os.path.join(self.device, name), "rb") as file:
            return file.read()

    def test_closed_input_holds_no_commands(self):
        self.run_script()
        with open(os.path.join(self.device, "lock"), "w") as first_file_of_the_device:
            first_file_of_the_device.write("nonsense\n")
        run = self.shell("<&-")
        self.assertEqual((run.code, run.out), (0, ""))
        self.assertNotIn("refused:", run.err)

    def test_output_that_is_closed_goes_into_no_file(self):
        for redirection in (">&-", "2>&-", ">&- 2>&-", "<&- >&- 2>&-"):
            self.shell("--log-level 6 " + redirection, "set time.zone Europe/Rome\nlist\n")
            self.assertEqual(self.content("lock"), b"", redirection)
            self.assertEqual(self.content("das.db")[:15], b"SQLite format 3", redirection)

    def test_lost_output_is_a_failure(self):
        run = self.shell(">/dev/full", "list\n")
        self.assertEqual(run.code, 1)
        self.assertIn("sdm: standard output cannot be written", run.err)

    def test_a_limit_on_file_sizes_is_told_and_kills_nothing(self):
        limit = 60 * 1024
        run = self.shell("", preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        self.assertEqual(run.code, 3)
        self.assertIn(".db", run.err)


if __name__ == "__main__":
    unittest.main()
