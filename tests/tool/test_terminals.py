"""The tests themselves, where no terminal can be had."""
import os
import re
import subprocess
import sys
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))


class WithoutTerminals(unittest.TestCase):
    def run_tests(self, *arguments):
        return subprocess.run([sys.executable, "-B", "-m", "unittest", "-v", *arguments], cwd=HERE, text=True,
                              env={**os.environ, "PYTHONPATH": os.path.join(HERE, "no_terminals")},
                              stderr=subprocess.PIPE, check=False)

    def test_a_module_of_terminals_is_skipped_whole(self):
        run = self.run_tests("test_terminal")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertRegex(run.stderr, "skipped 'this system has no pseudo-terminals: out of pty devices'")
        self.assertIn("Ran 0 tests", run.stderr)

    def test_a_single_test_that_needs_one_is_skipped(self):
        for module, name in (("test_check", "a_terminal_shows"), ("test_progress", "test_groups")):
            run = self.run_tests("-k", name, module)
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assertRegex(run.stderr, r"skipped 'this system has no pseudo-terminals[^\n]*\n(.*\n)*OK \(skipped=\d+\)")

    def test_all_tests_take_their_terminals_from_one_place(self):
        for folder, _, names in os.walk(os.path.dirname(HERE)):
            for name in sorted(set(names) - {"terminals.py"}):
                if name.endswith(".py"):
                    with open(os.path.join(folder, name)) as file:
                        self.assertIsNone(re.search(r"^import pty|\bpty\.\w", file.read(), re.M), name)


if __name__ == "__main__":
    unittest.main()
