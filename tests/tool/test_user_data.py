"""User data: back to its defaults, locked, and read again."""
import os
import sqlite3
import subprocess
import unittest

from program import SDM, ProgramTest


class UserData(ProgramTest):
    def test_reset_puts_it_back_everywhere(self):
        run = self.run_script('set display.banner "Front desk" display.brightness 33', "reset", "list display.b")
        self.assertEqual(run.code, 0)
        self.assertIn('display.banner = Ready (was "Front desk")', run.out)
        self.assertIn("2 of 10 user data items are back at their defaults", run.out)
        self.assertEqual(run.row("display.banner")[1:4], ["Ready", "Ready", "reset"])
        self.assertEqual(self.get("display.brightness"), "80")
        self.assertEqual(self.run_script("import display.banner").lines()[-1], "display.banner is stored as Ready")

    def test_reset_leaves_other_items_alone(self):
        self.run_script("set time.zone Europe/Rome display.brightness 33", "reset")
        self.assertEqual(self.get("time.zone"), "Europe/Rome")

    def test_reset_with_nothing_to_do_is_done(self):
        run = self.run_script("reset")
        self.assertEqual(run.code, 0)
        self.assertIn("nothing to reset: all 10", run.out)

    def test_a_lock_keeps_everything_from_being_reset(self):
        self.run_script("set display.brightness 33 audio.ringVolume 2", "lock audio.ringVolume")
        run = self.run_script("lock", "list audio.ringV", "reset", "get display.brightness")
        self.assertEqual(run.code, 1)
        self.assertEqual(run.row("audio.ringVolume")[-1], "UK")
        self.assertIn("refused: audio.ringVolume is locked", run.err)
        self.assertEqual(run.lines()[-1], "display.brightness = 33")
        self.assertEqual(self.run_script("unlock audio.ringVolume", "reset").code, 0)
        self.assertEqual(self.get("audio.ringVolume"), "6")

    def reload_after(self, statement):
        """The output of a reload after somebody else wrote to the database of the running device."""
        program = subprocess.Popen([SDM, "run", "--device", self.device], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        program.stdin.write(b"set display.brightness 33\n")
        program.stdin.flush()
        for line in program.stdout:
            if line.startswith(b"display.brightness"):
                break
        database = sqlite3.connect(os.path.join(self.device, "das.db"))
        with database:
            database.execute(statement)
        database.close()
        out, _ = program.communicate(b"reload\nget display.brightness\n", timeout=60)
        return out.decode(), program.returncode

    def test_reload_takes_what_somebody_else_wrote(self):
        out, code = self.reload_after('UPDATE "UserPreferences" SET "Brightness" = 44')
        self.assertIn("display.brightness = 44 (was 33)", out)
        self.assertIn("10 user data items read again: 1 changed, 0 refused, 9 not in the database", out)
        self.assertEqual((code, out.splitlines()[-1]), (0, "display.brightness = 44"))

    def test_reload_refuses_what_does_not_fit(self):
        out, code = self.reload_after('UPDATE "UserPreferences" SET "Brightness" = 444')
        self.assertIn("refused display.brightness: must be a whole number from 0 to 100", out)
        self.assertEqual((code, out.splitlines()[-1]), (1, "display.brightness = 33"))

    def test_reload_keeps_what_was_never_stored(self):
        run = self.run_script("reload", "get display.banner")
        self.assertEqual(run.lines()[-1], "display.banner = Ready")


if __name__ == "__main__":
    unittest.main()
