"""Stored values that cannot be used: what a start tells of them."""
import os
import sqlite3
import unittest

from program import ProgramTest


class Damage(ProgramTest):
    def in_database(self, statement, *values):
        connection = sqlite3.connect(os.path.join(self.device, "das.db"))
        with connection:
            connection.execute(statement, values)
        connection.close()

    def test_a_schema_that_cannot_be_read_is_told_by_name(self):
        self.run_script("set display.banner Hello display.brightness 44 time.zone Europe/Rome")
        self.in_database("UPDATE UserPreferences SET Banner = ?", "a\x01b")
        run = self.run_script("show display.brightness", "list display.brightness", "restart", "get time.zone")
        self.assertRegex(run.out, r"(?m)^  failed +1 schema, ")
        self.assertEqual(run.out.count("\n  failed UserPreferences: "), 2, "at the start and at the restart")
        self.assertIn("the database holds another value, but the schema could not be read: ", run.out)
        self.assertNotIn("which the service refused", run.out)
        self.assertEqual(run.row("display.brightness")[-1][-1], "!")
        self.assertEqual(run.lines()[-1], "time.zone = Europe/Rome")

    def test_an_import_that_fails_is_refused(self):
        self.run_script("set display.banner Hello")
        self.in_database("UPDATE UserPreferences SET Banner = ?", "a\x01b")
        run = self.run_script("import display.banner")
        self.assertEqual(run.code, 1)
        self.assertIn("refused: display.banner could not be read: ", run.out)

    def test_a_value_that_the_service_refused_is_told_as_such(self):
        self.run_script("set display.brightness 44")
        self.in_database("UPDATE UserPreferences SET Brightness = '1000'")
        run = self.run_script("show display.brightness")
        self.assertIn("the database holds another value, which the service refused", run.out)
        self.assertNotIn("failed UserPreferences", run.out)

    def test_a_database_without_values_is_no_failure(self):
        self.assertNotIn("\n  failed", self.run_script("restart").out)

    def start_without_the_key(self):
        self.run_script("set sip.userName anna sip.password opensesame42", "set feature.unlockPin 73591246")
        os.remove(os.path.join(self.device, "das.key"))
        return self.run_script("list", "show sip.password")

    def test_secrets_that_cannot_be_decrypted_are_told(self):
        self.assertNotIn("undecryptable", self.run_script("set line.pin-1 1234", "restart").out)
        self.start_without_the_key()
        run = self.run_script("list", "show sip.password", "show sip.userName")
        told = run.after("  undecryptable")
        self.assertTrue(told.startswith("3: "), told)
        for root_id in ("sip.password", "feature.unlockPin", "line.pin-1"):
            self.assertIn(root_id, told)
            self.assertEqual(run.row(root_id)[3], "default")
            self.assertIn("X", run.row(root_id)[-1])
        self.assertIn("cannot be decrypted; is das.key the one of this database?", run.after("  note"))
        self.assertNotIn("a new one was made", run.out)

    def test_a_key_that_had_to_be_made_anew_is_told(self):
        self.assertNotIn("a new one was made", self.run_script().out)
        run = self.start_without_the_key()
        self.assertEqual(run.out.count("das.key was missing beside das.db, so a new one was made"), 1)

    def test_a_secret_that_the_service_refused_is_marked(self):
        self.run_script("set sip.userName anna sip.password opensesame42")
        self.assertEqual(self.run_script("list sip.password").row("sip.password")[-1], "E")
        self.in_database("UPDATE SipBaseSettings SET UserName = ''")
        self.assertEqual(self.run_script("list sip.password").row("sip.password")[-1], "E!")


if __name__ == "__main__":
    unittest.main()
