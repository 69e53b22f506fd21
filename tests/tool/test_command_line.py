"""Arguments, help texts, exit codes, and what stops the program from starting."""
import os
import re
import subprocess
import unittest

from program import SDM, ProgramTest


class CommandLine(ProgramTest):
    def assert_one_line(self, run, *parts):
        self.assertEqual(len(run.err.splitlines()), 1, run.err)
        for part in parts:
            self.assertIn(part, run.err)
        self.assertEqual(run.out, "")
        self.assertEqual(run.code, 3)

    def test_help_tells_the_exit_codes(self):
        run = self.sdm("--help")
        self.assertEqual((run.code, run.err), (0, ""))
        for code in range(4):
            self.assertRegex(run.out, r"(?m)^  %d  \S" % code)

    def test_help_of_run_tells_every_option_and_command(self):
        run = self.sdm("run", "--help")
        self.assertEqual((run.code, run.err), (0, ""))
        for option in ("--map FILE", "--device DIR", "--interfaces N", "--log-level L", "--slow-wait MS"):
            self.assertIn(option, run.out)
        shown = self.run_script("help").out
        for command in ("list", "show", "get", "set", "changed", "import", "reset", "reload", "restart", "lock",
                        "unlock", "traffic", "securitylog", "stats", "log", "help", "quit"):
            self.assertRegex(run.out, r"(?m)^  %s( |$)" % command)
            self.assertRegex(shown, r"(?m)^  %s( |$)" % command)

    def test_wrong_usage_is_exit_code_two_with_a_suggestion(self):
        for arguments, hint in ((["runn"], "run"), (["run", "--devise", "x"], "--device"), ([], None),
                                (["run", "--interfaces", "many"], None), (["run", "--log-level", "7"], None),
                                (["run", "--device", ""], None)):
            run = self.sdm(*arguments)
            self.assertEqual((run.code, run.out), (2, ""), arguments)
            if hint:
                self.assertIn("did you mean %s?" % hint, run.err)

    def test_a_subcommand_that_is_not_there(self):
        for arguments in (["chek"], ["chek", "map.csv"], ["chek", "--help"]):
            run = self.sdm(*arguments)
            self.assertEqual((run.code, run.out), (2, ""), arguments)
            self.assertEqual(run.err.splitlines(), ["sdm: there is no subcommand chek", "did you mean check?",
                                                    "Try `sdm --help`."])
        self.assertEqual(self.sdm("nonsense").err.splitlines(),
                         ["sdm: there is no subcommand nonsense, and no program sdm-nonsense beside this one",
                          "Try `sdm --help`."])

    def test_a_missing_map_is_named(self):
        run = self.sdm("run", "--map", "nowhere.csv", "--device", self.device)
        self.assert_one_line(run, "item map", "nowhere.csv", "No such file", "--map")
        self.assertFalse(os.path.exists(self.device))

    def test_a_map_without_items_is_named(self):
        path = os.path.join(self.folder, "empty.csv")
        with open(path, "w") as file:
            file.write("not,enough,columns\n")
        self.assert_one_line(self.sdm("run", "--map", path, "--device", self.device), path, "holds no item")

    def test_a_map_that_is_too_large_is_named(self):
        path = os.path.join(self.folder, "large.csv")
        for size in (0x4000001, 0x100000010):
            with open(path, "w") as file:
                file.write("time.server,TimeSettings,Server,,,d,,,,,,\n")
                file.truncate(size)
            run = self.sdm("run", "--map", path, "--device", self.device)
            self.assert_one_line(run, path, "more than 64 MiB", "--map")

    def test_a_map_that_does_not_fit_the_database_is_named(self):
        self.run_script()
        path = os.path.join(self.folder, "other.csv")
        with open(path, "w") as file:
            file.write("time.server,TimeSettings,Server,Row,1,d,,,,,,\n")
        run = self.sdm("run", "--map", path, "--device", self.device)
        self.assert_one_line(run, path, "das.db", "TimeSettings")

    def test_a_folder_that_cannot_be_made_is_named(self):
        path = os.path.join(self.folder, "file")
        open(path, "w").close()
        self.assert_one_line(self.sdm("run", "--device", path), path, "--device")

    def test_a_database_of_another_kind_is_named(self):
        self.run_script()
        os.replace(os.path.join(self.device, "das.db"), os.path.join(self.device, "ocms.db"))
        self.assert_one_line(self.run_script(), "ocms.db", "of another kind", "--device")

    def test_a_folder_in_use_is_refused_and_left_alone(self):
        first = subprocess.Popen([SDM, "run", "--device", self.device], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                 stderr=subprocess.STDOUT)
        try:
            first.stdout.readline()
            before = self.files()
            other_map = os.path.join(self.folder, "other.csv")
            with open(other_map, "w") as file:
                file.write("x,TimeSettings,Server,,,d,,,,,,\n")
            run = self.run_script("get time.zone", options=("--map", other_map))
            self.assert_one_line(run, self.device, "in use")
            self.assertEqual(self.files(), before)
        finally:
            out, _ = first.communicate(b"set time.zone Europe/Berlin\nquit\n", timeout=60)
        self.assertIn(b"time.zone = Europe/Berlin", out)
        self.assertEqual(first.returncode, 0)

    def test_a_missing_folder_for_temporary_files_is_told_in_words(self):
        for arguments in (("groups", "--permute"), ("check", "--service", os.environ["SAMPLE"], os.environ["SAMPLE_MAP"])):
            done = subprocess.run([SDM, *arguments], env={**os.environ, "TMPDIR": os.path.join(self.folder, "none")},
                                  capture_output=True, cwd=self.folder, timeout=60)
            self.assertEqual((done.returncode, done.stderr.decode()),
                             (3, "sdm: there is no folder for temporary files: No such file or directory; "
                                 "name one in TMPDIR\n"))

    def test_the_default_device_folder_is_in_the_current_one(self):
        self.assertEqual(self.sdm("run").code, 0)
        self.assertTrue(os.path.exists(os.path.join(self.folder, "device", "das.db")))

    def test_the_map_is_copied_into_the_device_folder(self):
        self.run_script()
        copy = os.path.join(self.device, "CommsSettings.csv")
        before = os.stat(copy)
        self.run_script()
        self.assertEqual(os.stat(copy).st_ino, before.st_ino, "written again without need")
        with open(copy, "a") as file:
            file.write("left over from an older map\n")
        self.run_script()
        self.assertNotIn(b"left over", self.files()[copy])

    def test_there_is_no_colour_and_no_prompt_on_a_pipe(self):
        run = self.run_script("list", "nonsense")
        self.assertNotIn("\x1b", run.out + run.err)
        self.assertNotIn("sdm>", run.out)

    def test_log_lines_go_to_standard_error_alone(self):
        run = self.run_script("log 5", "get time.zone", options=("--log-level", "4"))
        self.assertIn("getData", run.err)
        self.assertNotIn("getData", run.out)
        self.assertTrue(re.search(r"log level 5", run.out))


if __name__ == "__main__":
    unittest.main()
