"""Completion by Tab in bash: subcommands, options, rules, formats and files."""
import os
import re
import subprocess
import unittest

from program import SDM, ProgramTest

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools", "sdm", "completion", "sdm")


class Completion(ProgramTest):
    def completed(self, *words):
        """What bash offers for the last of these words."""
        script = ('source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); '
                  '_sdm "$1" "${COMP_WORDS[COMP_CWORD]}" ""; printf "%s\\n" "${COMPREPLY[@]}"')
        done = subprocess.run(["bash", "-c", script, "bash", SCRIPT, SDM, *words], capture_output=True, text=True,
                              cwd=self.folder, timeout=60)
        self.assertEqual(done.stderr, "")
        return done.stdout.split("\n")[:-1] if done.stdout.strip() else []

    def test_subcommands(self):
        told = re.search(r"(?m)^Subcommands:\n((?:  .*\n)+)", self.sdm("--help").out).group(1)
        known = re.findall(r"(?m)^  (\S+)", told)
        self.assertIn("check", known)
        self.assertEqual(self.completed(""), known)
        self.assertEqual(self.completed("che"), ["check"])

    def test_options_of_each_subcommand(self):
        for name in self.completed(""):
            told = re.findall(r"(?m)^  (?:-\w,)?(--[\w-]+)", self.sdm(name, "--help").out)
            self.assertEqual([each for each in self.completed(name, "--") if each.startswith("--")], told)
        self.assertEqual(self.completed("--v"), ["--version"])
        self.assertEqual(self.completed("check", "--str"), ["--strict"])

    def test_rules(self):
        rules = [line.split(" ")[0] for line in self.sdm("check", "--rules").lines()]
        self.assertEqual(self.completed("check", "--explain", ""), rules)
        self.assertEqual(self.completed("check", "--ignore", "carr"), ["carriage-return"])
        changes = [line.split(" ")[0] for line in self.sdm("diff", "--rules").lines()]
        self.assertEqual(self.completed("diff", "--explain", ""), changes)

    def test_formats(self):
        self.assertEqual(self.completed("check", "--format", "s"), ["sarif"])
        self.assertEqual(self.completed("check", "--format", "=", ""), ["text", "json", "sarif", "markdown", "junit", "gitlab", "github"])
        for name in ("check", "diff"):
            told = re.search(r"--format FORMAT\S*\s+[^:]*: ((?:\w+,\s+)+or \w+)", self.sdm(name, "--help").out)
            self.assertEqual(self.completed(name, "--format", ""), re.findall(r"\w+", told.group(1).replace(" or ", " ")))

    def test_levels(self):
        self.assertEqual(self.completed("diff", "--fail-on", ""), ["error", "warning", "note", "never"])

    def test_files_and_folders(self):
        os.mkdir(os.path.join(self.folder, "map folder"))
        open(os.path.join(self.folder, "map.csv"), "w").close()
        self.assertEqual(sorted(self.completed("check", "ma")), ["map folder", "map.csv"])
        self.assertEqual(self.completed("run", "--map", "map."), ["map.csv"])
        self.assertEqual(self.completed("run", "--device", "ma"), ["map folder"])

    def test_nothing_where_there_is_nothing_to_offer(self):
        self.assertEqual(self.completed("run", "--interfaces", ""), [])
        self.assertEqual(self.completed("nonsense", ""), [])


if __name__ == "__main__":
    unittest.main()
