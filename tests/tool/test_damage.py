"""Stored values that cannot be used: what a start tells of them."""
import os
import shutil
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
        self.assertRegex(run.err, r"(?m)^  failed +1 schema, ")
        self.assertEqual(run.err.count("\n  failed UserPreferences: "), 2, "at the start and at the restart")
        self.assertIn("the database holds another value, but the schema could not be read: ", run.out)
        self.assertNotIn("which the service refused", run.out)
        self.assertEqual(run.row("display.brightness")[-1][-1], "!")
        self.assertEqual(run.lines()[-1], "time.zone = Europe/Rome")

    def test_an_import_that_fails_is_refused(self):
        self.run_script("set display.banner Hello")
        self.in_database("UPDATE UserPreferences SET Banner = ?", "a\x01b")
        run = self.run_script("import display.banner")
        self.assertEqual(run.code, 1)
        self.assertIn("refused: display.banner could not be read: ", run.err)

    def test_a_value_that_the_service_refused_is_told_as_such(self):
        self.run_script("set display.brightness 44")
        self.in_database("UPDATE UserPreferences SET Brightness = '1000'")
        run = self.run_script("show display.brightness")
        self.assertIn("the database holds another value, which the service refused", run.out)
        self.assertNotIn("failed UserPreferences", run.err)

    def test_a_database_without_values_is_no_failure(self):
        self.assertNotIn("\n  failed", self.run_script("restart").err)

    def start_without_the_key(self):
        self.run_script("set sip.userName anna sip.password opensesame42", "set feature.unlockPin 73591246")
        os.remove(os.path.join(self.device, "das.key"))
        return self.run_script("list", "show sip.password")

    def test_secrets_that_cannot_be_decrypted_are_told(self):
        self.assertNotIn("undecryptable", self.run_script("set line.pin-1 1234", "restart").err)
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
        self.assertEqual(run.err.count("das.key was missing beside das.db, so a new one was made"), 1)

    def put(self, name, content):
        with open(os.path.join(self.device, name), "wb") as file:
            file.write(content)

    def content(self, name):
        with open(os.path.join(self.device, name), "rb") as file:
            return file.read()

    def test_a_corrupt_database_is_told_and_kept_and_the_service_starts_with_defaults(self):
        self.run_script("set display.brightness 44", "changed phone.room 4.12")
        for name, damaged in (("das.db", b"first damage " * 500), ("das.db", b"second damage " * 500),
                              ("ocms.db", b"another damage " * 500)):
            self.put(name, damaged)
            number = 2 if damaged.startswith(b"second") else 1
            run = self.run_script("get display.brightness", "set display.contrast 30", "get phone.room")
            self.assertEqual(run.code, 0)
            self.assertIn("display.brightness = 80", run.lines())
            told = run.after("  attention")
            for part in (name, "file is not a database", "kept as", "%s.damaged-%d" % (name, number), "put a backup there"):
                self.assertIn(part, told)
            self.assertEqual(self.content("%s.damaged-%d" % (name, number)), damaged)
            self.assertNotIn("attention", self.run_script().err)
        self.assertIn(b"first damage", self.content("das.db.damaged-1"))
        self.assertEqual(self.get("display.contrast"), "30")
        self.assertEqual(self.get("phone.room"), '""')

    def test_a_damaged_key_is_told_and_kept_and_its_values_stay(self):
        self.run_script("set sip.userName anna sip.password opensesame42")
        key = self.content("das.key")
        self.put("das.key", key[:20])
        run = self.run_script("list sip.password", "set feature.unlockPin 73591246")
        self.assertIn("  refused group SipCredentials: ", run.err)
        self.assertEqual(run.code, 1)
        self.assertIn("a key has 32 bytes, not 20; it is kept as", run.after("  attention"))
        self.assertEqual(run.row("sip.password")[3], "default")
        self.assertEqual(self.content("das.key.damaged-1"), key[:20])
        self.put("das.key", key)
        run = self.run_script("list sip.password")
        self.assertEqual(run.row("sip.password")[3], "database", "what no key opened stayed until it was set again")

    def test_a_wrong_key_opens_nothing_and_changes_nothing(self):
        self.run_script("set sip.userName anna sip.password opensesame42", "set snmp.readCommunity private42")
        key = self.content("das.key")
        self.put("das.key", b"w" * 32)
        run = self.run_script("list", "set snmp.readCommunity other4242")
        self.assertEqual(run.after("  undecryptable")[0], "2")
        self.put("das.key", key)
        run = self.run_script("list")
        self.assertEqual(run.row("sip.password")[3], "database")
        self.assertEqual(run.after("  undecryptable")[0], "1", "that one was overwritten on purpose")

    def test_a_map_of_the_service_that_cannot_be_read_is_told_and_the_device_goes_on_with_its_own(self):
        service = shutil.copy(os.environ["SAMPLE"], self.folder)
        name = shutil.copy(os.environ["SAMPLE_MAP"], self.folder)
        self.run_script("set display.brightness 44", options=("--service", service))
        open(name, "w").close()
        run = self.run_script("get display.brightness", options=("--service", service))
        self.assertEqual(run.code, 0)
        self.assertIn("display.brightness = 44", run.lines())
        for part in (name, "holds no item", "--map", "its own copy", os.path.join(self.device, "CommsSettings.csv")):
            self.assertIn(part, run.after("  attention"))

    def test_a_map_that_was_asked_for_and_cannot_be_used_ends_the_start(self):
        self.run_script("set display.brightness 44")
        before = self.content("CommsSettings.csv")
        empty = os.path.join(self.folder, "empty.csv")
        open(empty, "w").close()
        pipe = os.path.join(self.folder, "pipe")
        os.mkfifo(pipe)
        for name, why in ((os.path.join(self.folder, "gone.csv"), "No such file"), (empty, "it holds no item"),
                          ("/dev/zero", "it is no regular file"), (pipe, "it is no regular file")):
            run = self.run_script("get display.brightness", options=("--map", name))
            self.assertEqual((run.code, run.out), (3, ""))
            self.assertIn("the item map %s cannot be read: %s" % (name, why), run.err)
        self.assertEqual(self.content("CommsSettings.csv"), before)

    def test_a_damaged_copy_of_the_map_is_kept_aside(self):
        self.run_script("set display.brightness 44")
        for number in (1, 2):
            self.put("CommsSettings.csv", b"damage %d" % number)
            run = self.run_script("get display.brightness")
            self.assertIn("display.brightness = 44", run.lines())
            self.assertIn("CommsSettings.csv.damaged-%d" % number, run.after("  attention"))
        self.assertEqual(self.content("CommsSettings.csv.damaged-1"), b"damage 1")
        self.assertEqual(self.content("CommsSettings.csv.damaged-2"), b"damage 2")

    def test_a_schema_that_is_gone_does_not_keep_the_service_from_starting(self):
        self.run_script("set display.banner Hello")
        self.in_database("ALTER TABLE SnmpSettings RENAME TO Elsewhere")
        run = self.run_script("list", "get display.banner", "set snmp.readCommunity private42")
        self.assertIn("failed SnmpSettings", run.err)
        self.assertIn("display.banner = Hello", run.lines())
        self.assertIn("the database did not take the change", run.err)

    def test_a_secret_that_the_service_refused_is_marked(self):
        self.run_script("set sip.userName anna sip.password opensesame42")
        self.assertEqual(self.run_script("list sip.password").row("sip.password")[-1], "E")
        self.in_database("UPDATE SipBaseSettings SET UserName = ''")
        self.assertEqual(self.run_script("list sip.password").row("sip.password")[-1], "E!")


if __name__ == "__main__":
    unittest.main()
