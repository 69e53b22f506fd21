"""Failures on demand: what the service answers, that nothing is half done, and that all is well afterwards."""
import json
import os
import shutil
import unittest

from program import ProgramTest

NOT_WRITTEN = "refused: the database did not take the change, so it is gone after a restart: "


class Faults(ProgramTest):
    def faulty(self, fault, *commands, level="3"):
        """The output behind the fault and its commands."""
        run = self.run_script("set display.banner Before", "fault " + fault, *commands,
                              options=("--log-level", level))
        run.out = run.out[run.out.index("fault " + fault.split(" ")[0]):]
        return run

    def stored(self, root_id):
        return self.run_script("import " + root_id).lines()[-1]

    def assert_well_again(self, fault, *commands):
        run = self.run_script("fault " + fault, *commands, "fault off", "set display.banner After sip.password hunter2 "
                              "sip.userName bob", "restart", "get display.banner", "import display.banner",
                              "import sip.password")
        self.assertEqual(run.lines()[-3:], ["display.banner = After", "display.banner is stored as After",
                                            "sip.password is stored as ***** (stored encrypted)"])

    def test_each_is_over_after_off(self):
        for fault in ("das absent", "das slow 1", "das empty", "das malformed", "das refused", "das wrong-kind",
                      "encryption fails", "store absent", "store refuses", "disk full"):
            with self.subTest(fault):
                self.assert_well_again(fault, "set display.banner Lost", "reset", "restart")

    def test_replies_that_are_none(self):
        for fault, why in (("empty", "no reason given"), ("malformed", "no reason given"),
                           ("refused", "refused on demand"), ("wrong-kind", "no reason given")):
            with self.subTest(fault):
                run = self.faulty("das " + fault, "set display.banner Lost time.zone Europe/Rome",
                                  "set display.brightness 1000")
                self.assertEqual(run.code, 1)
                self.assertEqual(run.err.count(NOT_WRITTEN + why), 2, "a request for each schema")
                self.assertEqual(run.err.count("sendDASRequests bad XML reply from DataAccessService"), 2)
                self.assertIn("refused: display.brightness: must be ", run.err)
                self.assertEqual(self.stored("display.banner"), "display.banner is stored as Before")
                self.assertEqual(self.get("time.zone"), "UTC")

    def test_what_is_no_xml_is_an_error_of_the_parser(self):
        for fault, count in (("empty", 1), ("malformed", 1), ("refused", 0), ("wrong-kind", 0)):
            run = self.faulty("das " + fault, "set display.banner Lost")
            self.assertEqual(run.err.count("parser error ["), count, fault)

    def test_a_start_without_replies_goes_on_with_defaults_and_names_the_schemas(self):
        for fault in ("empty", "malformed", "refused", "wrong-kind"):
            run = self.faulty("das " + fault, "restart", "get display.banner")
            self.assertIn("failed UserPreferences: ", run.err, fault)
            self.assertEqual(run.lines()[-1], "display.banner = Ready", fault)
            self.assertEqual(run.err.count("fault on demand: "), 9, "a request for each schema")

    def test_a_reset_that_the_database_refuses_is_told(self):
        run = self.faulty("das refused", "reset")
        self.assertEqual(run.code, 1)
        self.assertIn("setDefaultUserData bad XML reply from DataAccessService", run.err)
        self.assertIn("refused: the database did not take a default, so its own value is back after a restart: refused "
                      "on demand", run.err)
        self.assertEqual(self.get("display.banner"), "Before")

    def test_without_the_database(self):
        run = self.faulty("das absent", "set display.banner Lost", "get display.banner", "import display.banner",
                          "reset", "fault off", "get display.banner", level="2")
        self.assertIn("started anew\n", run.err)
        for line in ("importFromDAS Can't find DataAccessService", "getData(CommsService) Can't find DataAccessService",
                     "importItemFromDAS Can't find DataAccessService",
                     "setDefaultUserData Can't find DataAccessService"):
            self.assertIn(line, run.err)
        self.assertIn("refused: the database was not found, so the change is gone after a restart", run.err)
        self.assertIn("refused: nothing answers for display.banner", run.err)
        self.assertIn("refused: display.banner could not be read: the database was not found", run.err)
        self.assertEqual((run.code, run.lines()[-1]), (1, "display.banner = Lost"))
        self.assertEqual(self.get("display.banner"), "Before")

    def test_absence_counts_searches(self):
        run = self.faulty("das absent 2", "import display.banner", "import display.banner", "fault")
        self.assertIn("display.banner could not be read: the database was not found\n", run.err)
        self.assertIn("display.banner is stored as Before\nno fault is set\n", run.out)

    def test_without_the_store(self):
        run = self.faulty("store absent", "set display.banner Changed", "reset", level="2")
        self.assertIn("the local store did not register the service", run.err)
        for line in ("subscribeForObservations Can't find OCMS", "importFromOCMS Can't find OCMS",
                     "setDefaultUserData Can't find OCMS"):
            self.assertIn(line, run.err)
        self.assertIn("refused: the local store did not take the reset", run.err)
        self.assertEqual(self.get("display.banner"), "Changed")

    def test_a_store_that_refuses(self):
        run = self.faulty("store refuses", "reset", "get display.banner", "set display.banner Changed", "restart")
        self.assertIn("refused: the local store did not take the reset\n", run.err)
        self.assertIn("\ndisplay.banner = Before\n", run.out)
        self.assertIn("fault on demand: the local management store refuses a publication", run.err)
        self.assertIn("published 0 new values", run.err)

    def test_encryption_that_fails_leaves_no_plain_value(self):
        self.faulty("encryption fails 1", "set sip.userName bob sip.password hunter2hunter2")
        self.assertEqual(self.stored("sip.password"), "sip.password: the database holds nothing, or an empty text")
        for name, content in self.files().items():
            self.assertNotIn(b"hunter2", content, name)

    def test_decryption_that_fails_is_logged_and_loses_nothing(self):
        self.run_script("set sip.userName bob sip.password hunter2")
        run = self.faulty("encryption fails", "restart", "list sip.password")
        self.assertIn("decryptData failed to base64decode data item", run.err)
        self.assertNotIn("X", run.row("sip.password")[-1], "the key is fine, and so is what is stored")
        self.assertNotIn("decryptData", self.run_script("list").err)

    def test_a_full_disk(self):
        run = self.faulty("disk full", "set display.banner Lost sip.registrar a.example", "changed phone.room 4",
                          "securitylog 1", "get time.zone")
        self.assertEqual(run.err.count(NOT_WRITTEN), 2)
        self.assertIn("das.db: the disk is full, on demand", run.err)
        self.assertIn("refused: the security log could not be written: ", run.err)
        self.assertIn("ocms.db: the disk is full, on demand", run.err)
        self.assertEqual(run.lines()[-1], "time.zone = UTC")
        self.assertEqual(self.stored("display.banner"), "display.banner is stored as Before")

    def test_a_slow_database_answers_later(self):
        run = self.faulty("das slow 300 1", "set display.banner Slow", "traffic 1", "fault")
        self.assertRegex(run.out, r"reply after 3\d\d\.\d\d ms|reply after [4-9]\d\d\.\d\d ms|reply after \d{4,}\.")
        self.assertEqual(run.lines()[-1], "no fault is set")
        self.assertEqual(self.stored("display.banner"), "display.banner is stored as Slow")

    def test_shows_what_is_set(self):
        run = self.run_script("fault", "fault das slow 5 3", "fault disk full", "fault", "fault das empty",
                              "fault off", "fault")
        slow, empty, disk = ("fault das slow 5, for 3 more calls", "fault das empty, until `fault off`",
                             "fault disk full, until `fault off`")
        none = "no fault is set"
        first = run.lines().index(none)
        self.assertEqual(run.lines()[first:], [none, slow, slow, disk, slow, disk, empty, disk, none, none])
        self.assertEqual(run.code, 0)

    def test_words_that_nobody_knows(self):
        told = []
        for words, answer in (("dsa empty", "there is no fault of dsa; did you mean das?"),
                              ("das", "fault das needs one of absent, slow, empty, malformed, refused, wrong-kind"),
                              ("das gone", "there is no fault das gone; there are absent, slow, empty, "),
                              ("das slow", "the delay in milliseconds is a whole number from 1 to 3600000, not \"\""),
                              ("das slow fast", "the delay in milliseconds is a whole number from 1 to 3600000, not fast"),
                              ("das empty 0", "the number of calls is a whole number from 1 to 1000000, not 0"),
                              ("das empty 1 2", "nothing is expected behind the number of calls, but 2"),
                              ("disk full 3", "a full disk counts no calls; `fault off` makes room"),
                              ("off das", "`fault off` ends all faults and takes no more words"),
                              ("das slow 1 2 3", "usage: fault [WORD...]")):
            told.append((words, "refused: " + answer))
        run = self.run_script(*("fault " + words for words, _ in told), "fault")
        self.assertEqual((run.code, run.lines()[-1]), (1, "no fault is set"))
        for (words, answer), line in zip(told, run.remarks()[-len(told):]):
            self.assertTrue(line.startswith(answer), (words, line))


class FaultsInTranscripts(ProgramTest):
    FAULTS = ("das absent", "das slow 1", "das empty", "das malformed 2", "das refused", "das wrong-kind",
              "encryption fails", "store absent", "store refuses", "disk full")
    COMMANDS = ("set display.banner Lost time.zone Europe/Rome", "set sip.userName bob sip.password hunter2hunter2",
                "reset", "restart", "reload", "get display.banner sip.password", "fault")

    def setUp(self):
        super().setUp()
        self.tests = os.path.join(self.folder, "tests")
        os.mkdir(self.tests)

    def record(self, name, *commands):
        self.file = os.path.join(self.tests, name + ".jsonl")
        shutil.rmtree(self.device, ignore_errors=True)
        self.recorded_run = self.run_script(*commands, options=("--log-level", "3", "--record", self.file))
        with open(self.file) as file:
            return [json.loads(line) for line in file]

    def replies(self, events):
        return [event["reply"] for event in events if "reply" in event]

    def test_each_is_met_again(self):
        for number, fault in enumerate(self.FAULTS):
            self.record("%d" % number, "fault " + fault, *self.COMMANDS)
        self.record("none", *self.COMMANDS)
        run = self.sdm("test", self.tests)
        self.assertEqual((run.code, run.out.count("\nok ")), (0, len(self.FAULTS) + 1), run.out)

    def test_what_it_did_is_in_the_transcript(self):
        events = self.record("malformed", "fault das malformed 1", "set time.zone Europe/Rome", "set time.zone UTC")
        answered = self.replies(events)[-2:]
        self.assertEqual([reply.endswith("</Schema>") for reply in answered], [False, True], answered)
        met = [event["text"] for event in events if event.get("text", "").startswith("fault on demand: ")]
        self.assertEqual(len(met), 1, met)

    def test_recording_meets_none_of_the_calls(self):
        commands = ("set sip.userName bob sip.password hunter2hunter2", "set line.pin-1 47110815", "fault encryption fails 1",
                    "traffic", "set line.pin-1 47110816", "import line.pin-1", "fault")
        self.record("counted", *commands)
        recorded = self.recorded_run.lines()
        shutil.rmtree(self.device)
        alone = self.run_script(*commands, options=("--log-level", "3")).lines()
        self.assertEqual([line for line in recorded if "line.pin" in line or "fault" in line],
                         [line for line in alone if "line.pin" in line or "fault" in line])
        self.assertEqual(alone[-1], "no fault is set")

    def test_another_one_is_a_difference(self):
        for other in ("fault das empty 2", "fault das malformed 1", "fault"):
            self.record("fault", "fault das malformed 2", "set time.zone Europe/Rome", "set time.zone UTC")
            with open(self.file) as file:
                text = file.read()
            with open(self.file, "w") as file:
                file.write(text.replace('"fault das malformed 2"', '"%s"' % other))
            run = self.sdm("replay", self.file)
            self.assertEqual(run.code, 1, other)
            self.assertIn('- expected  {"reply":"<', run.out, other)

    def test_a_recording_ends_with_its_faults(self):
        self.record("a-full", "fault disk full")
        self.record("b-after", "set time.zone Europe/Rome")
        run = self.sdm("test", self.tests)
        self.assertEqual((run.code, run.out.count("\nok ")), (0, 2), run.out)


if __name__ == "__main__":
    unittest.main()
