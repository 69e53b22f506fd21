"""User data: back to its defaults, locked, and read again."""
import unittest

from program import ProgramTest


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
        self.assertIn("refused: audio.ringVolume is locked", run.out)
        self.assertEqual(run.lines()[-1], "display.brightness = 33")
        self.assertEqual(self.run_script("unlock audio.ringVolume", "reset").code, 0)
        self.assertEqual(self.get("audio.ringVolume"), "6")

    def test_reload_reads_what_somebody_else_wrote(self):
        self.run_script("set display.brightness 33")
        run = self.run_script("set display.brightness 34", "reload")
        self.assertIn("10 user data items read again: 0 changed, 0 refused, 9 not in the database", run.out)
        self.assertEqual(run.code, 0)

    def test_reload_keeps_what_was_never_stored(self):
        run = self.run_script("reload", "get display.banner")
        self.assertEqual(run.lines()[-1], "display.banner = Ready")


if __name__ == "__main__":
    unittest.main()
