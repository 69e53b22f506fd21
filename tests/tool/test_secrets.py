"""A secret that was set is nowhere to be seen: not on the screen, not in a log, not in a file."""
import unittest

from program import ProgramTest

SECRETS = ("opensesame42", "735912468", "communityXY", "authXkeyXauthX")


class Secrets(ProgramTest):
    def setUp(self):
        super().setUp()
        self.everything = self.run_script(
            "log 6", "set sip.userName anna sip.password opensesame42",
            "set feature.unlockPin 73591246 line.pin-2 73591246 snmp.readCommunity communityXY",
            "set snmp.authenticationKey authXkeyXauthX", "set sip.password short", "set sip.password opensesame42",
            'set sip.userName "" sip.password opensesame42', "set line.pin-3 735912468", "set sip.password open opensesame42 now",
            "get sip.password line.pin-2", "show sip.password", "list", "import sip.password", "import line.pin-2",
            "traffic 100", "securitylog 100", "reset", "reload", "restart", "list", "traffic 100")

    def assert_hidden(self, text):
        for secret in SECRETS + ("73591246",):
            self.assertNotIn(secret, text)

    def test_never_show_on_the_screen(self):
        self.assertIn("sip.password = *****", self.everything.out)
        self.assertIn("<Password>*****</Password>", self.everything.out)
        self.assertIn("SipBaseSettings set Password(***)", self.everything.out)
        self.assert_hidden(self.everything.out)

    def test_never_show_in_log_lines_of_the_highest_level(self):
        self.assertIn("setData", self.everything.err)
        self.assert_hidden(self.everything.err)

    def test_are_in_no_file_of_the_device(self):
        files = self.files()
        for name in ("das.db", "ocms.db", "security.log", "device.log"):
            self.assertTrue(any(path.endswith(name) for path in files), name)
        for path, content in files.items():
            for secret in SECRETS + ("73591246",):
                self.assertNotIn(secret.encode(), content, path)

    def test_hide_their_encrypted_form_as_well(self):
        for name in ("Password", "Pin", "UnlockPin", "ReadCommunity", "AuthenticationKey"):
            self.assertNotRegex(self.everything.out, r"<%s>[^*<]" % name)

    def test_are_refused_without_being_told(self):
        self.assertIn("refused: sip.password: must have 6 to 64 characters, or empty", self.everything.err)
        self.assertIn("refused: line.pin-3: must be 4 to 8 digits, or empty", self.everything.err)

    def test_are_not_sent_in_pieces_when_the_quotes_are_forgotten(self):
        self.assertIn("a secret with blanks stands in", self.everything.err)

    def test_are_not_echoed_when_get_was_typed_for_set(self):
        run = self.run_script("get sip.password opensesame42")
        self.assertEqual(run.code, 1)
        self.assertNotIn("opensesame42", run.out + run.err)

    def test_work_after_a_restart_of_the_program(self):
        run = self.run_script("set sip.password opensesame42", "show sip.password")
        self.assertIn("sip.password = *****  (unchanged)", run.out)
        self.assertEqual(run.after("  value"), "*****")


if __name__ == "__main__":
    unittest.main()
