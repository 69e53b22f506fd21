"""Subcommands that are programs of their own: found beside the program, told, completed, and run in its place."""
import os
import shutil
import subprocess
import unittest

import program
from test_completion import SCRIPT

GREET = os.environ["GREET"]
REAL = program.SDM


class ProgramsBeside(program.ProgramTest):
    def setUp(self):
        super().setUp()
        # The libraries are found from the folder of the program.
        self.bin = os.path.join(self.folder, "bin")
        os.mkdir(self.bin)
        for folder in ("lib", "lib64"):
            beside = os.path.join(os.path.dirname(os.path.dirname(REAL)), folder)
            if os.path.isdir(beside):
                os.symlink(beside, os.path.join(self.folder, folder))
        program.SDM = shutil.copy(REAL, os.path.join(self.bin, "sdm"))
        self.addCleanup(setattr, program, "SDM", REAL)

    def beside(self, name, content=None, mode=0o755):
        path = os.path.join(self.bin, name)
        if content is None:
            shutil.copy(GREET, path)
        else:
            with open(path, "w") as file:
                file.write(content)
        os.chmod(path, mode)

    def told(self):
        lines = self.sdm("--help").lines()
        part = lines[lines.index("Subcommands:") + 1:]
        return [line.split()[0] for line in part[:part.index("")] if line[2] != " "]

    def test_one_is_run_in_place_of_the_program(self):
        self.beside("sdm-greet")
        run = self.sdm("greet", "--name", "the operator")
        self.assertEqual((run.code, run.out, run.err), (0, "hello the operator\n", ""))

    def test_its_exit_codes_are_those_of_every_subcommand(self):
        self.beside("sdm-greet")
        run = self.sdm("greet")
        self.assertEqual((run.code, run.out, run.err), (3, "", "sdm: there is nobody to greet\n"))
        run = self.sdm("greet", "--nmae", "x")
        self.assertEqual((run.code, run.out), (2, ""))
        self.assertEqual(run.err, "sdm: --nmae is not expected here\nsdm: x is not expected here\n"
                                  "did you mean --name?\nTry `sdm greet --help`.\n")
        self.assertRegex(self.sdm("greet", "--version").out, r"^sdm-greet \d+\.\d+\.\d+\n$")
        self.assertIn("Usage: sdm greet [OPTIONS]", self.sdm("greet", "--help").out)

    def test_arguments_and_signals_pass_unchanged(self):
        self.beside("sdm-echo", '#!/bin/sh\nprintf "%s|" "$@"\nkill -TERM $$\n')
        run = self.sdm("echo", "", "a b", "--help", "*")
        self.assertEqual((run.code, run.out), (-15, "|a b|--help|*|"))

    def test_help_lists_them_behind_the_others(self):
        before = self.told()
        self.beside("sdm-greet")
        self.beside("sdm-clap")
        self.assertEqual(self.told(), before + ["clap", "greet"])

    def test_bash_completes_them(self):
        self.beside("sdm-greet")
        script = ('source "$1"; COMP_WORDS=("$2" gre); COMP_CWORD=1; _sdm "$2" gre ""; printf "%s" "${COMPREPLY[*]}"; '
                  'COMP_WORDS=("$2" greet --na); COMP_CWORD=2; _sdm "$2" --na ""; printf ",%s" "${COMPREPLY[*]}"')
        done = subprocess.run(["bash", "-c", script, "bash", SCRIPT, program.SDM], capture_output=True, text=True)
        self.assertEqual((done.stdout, done.stderr), ("greet,--name", ""))

    def test_a_missing_one_is_named(self):
        run = self.sdm("console")
        self.assertEqual((run.code, run.out), (2, ""))
        self.assertIn("there is no subcommand console, and no program sdm-console beside this one", run.err)

    def test_nobody_takes_the_place_of_a_subcommand(self):
        self.beside("sdm-check", "#!/bin/sh\necho mine\n")
        self.assertNotIn("mine", self.sdm("check", "--rules").out)
        self.assertEqual(self.told().count("check"), 1)

    def test_what_is_no_program_is_passed_over(self):
        before = self.told()
        self.beside("sdm-notes", "a text", mode=0o644)
        self.beside("sdm-", "#!/bin/sh\n")
        self.beside("sdm-Big\033[31m", "#!/bin/sh\n")
        os.mkdir(os.path.join(self.bin, "sdm-folder"))
        self.assertEqual(self.told(), before)
        self.assertEqual(self.sdm("notes").code, 2)
        self.assertEqual(self.sdm("../bin/sdm").code, 2)

    def test_other_folders_are_not_searched(self):
        self.beside("sdm-greet")
        os.rename(os.path.join(self.bin, "sdm-greet"), os.path.join(self.folder, "sdm-greet"))
        old = os.environ["PATH"]
        os.environ["PATH"] = self.folder + ":" + old
        self.addCleanup(os.environ.__setitem__, "PATH", old)
        self.assertEqual(self.sdm("greet", "--name", "x").code, 2)

    def test_one_that_cannot_be_run_is_told(self):
        self.beside("sdm-greet", "\177ELF and no more")
        run = self.sdm("greet")
        self.assertEqual((run.code, run.out), (3, ""))
        self.assertIn("the program %s cannot be run: " % os.path.join(self.bin, "sdm-greet"), run.err)


if __name__ == "__main__":
    unittest.main()
