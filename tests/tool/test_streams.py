"""Standard streams that are closed or full, and a limit on the size of files."""
import json
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


class Scripts(ProgramTest):
    def test_standard_output_has_the_answers_alone(self):
        run = self.run_script("set display.brightness 1000", "nonsense", "restart", "list --json")
        self.assertTrue(json.loads(run.out)["items"])
        self.assertEqual(run.err.count("refused:"), 2)
        self.assertIn("CommsService is up on ", run.err)

    def test_quiet_leaves_refusals(self):
        run = self.run_script("set ip.address 10.0.0.5", "restart", options=("--quiet", "--log-level", "6"))
        self.assertEqual([line.split(":")[0] for line in run.remarks()],
                         ["ip.address keeps its value, because its group was not accepted", "refused"])

    def test_the_log_is_shown_unless_quiet_and_in_spite_of_it_where_asked_for(self):
        for options, shows in (((), True), (("--quiet",), False), (("--quiet", "--show-log"), True)):
            run = self.run_script("set ip.address 10.0.0.5", options=("--log-level", "4", *options))
            self.assertEqual(" ServiceDataManager " in run.err, shows, options)
            self.assertEqual("is up on" in run.err, "--quiet" not in options)

    def test_list_takes_any_part_of_an_id_and_what_was_changed(self):
        run = self.run_script("set time.zone Europe/Rome", "list --changed", "list .pollMin")
        self.assertEqual([line.split()[0] for line in run.lines()[1:] if "." in line.split()[0]],
                         ["time.zone", "time.pollMinutes"])

    def test_no_command_tells_what_steers_a_terminal(self):
        self.run_script("set snmp.contact x")
        with open(os.path.join(self.device, "security.log"), "ab") as file:
            file.write(b"\x1b[31m\t\x9b31m\t\xc2\x9b31m\n")
        run = self.run_script("securitylog", 'set snmp.location "\u009b31m"', "list --json snmp.", "show snmp.location")
        for steering in ("\x1b", "\u009b"):
            self.assertNotIn(steering, run.out + run.err)
        self.assertIn("facility 4  severity 1  type 5  class 3", run.out)
        self.assertIn("\\u009b", run.out)

    def test_get_says_which_word_is_wrong_beside_a_secret(self):
        run = self.run_script("get sip.password ip.address nosuch")
        self.assertIn("refused: item 3 of 3 is none", run.err)
        self.assertNotIn("nosuch", run.err + run.out)


if __name__ == "__main__":
    unittest.main()
