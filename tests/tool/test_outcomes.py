"""Done is what was done: outcomes come from what happened, and whatever was printed as refused is an exit code."""
import json
import os
import sqlite3
import stat
import subprocess
import unittest

from program import SDM, ProgramTest, Run

SERVICES = os.environ["SERVICES"]
SCHEMAS = 150
NOBODY = 65534


class Refusals(ProgramTest):
    def test_a_value_that_the_validator_does_not_give_to_be_stored_is_told(self):
        path = os.path.join(self.folder, "map.csv")
        with open(path, "w") as file:
            file.write("bell.upper,Bell,Upper,,,A,setUpper,getUpper,,Pair,,\n")
        run = self.run_script("set bell.upper B",
                              options=("--map", path, "--service", os.path.join(SERVICES, "Picky.so")))
        self.assertEqual(run.remarks()[-1], "refused: bell.upper: the validator did not give it to be stored, so it is gone "
                         "after a restart")
        self.assertEqual(run.code, 1)

    def test_a_refusal_by_any_schema_is_an_exit_code(self):
        for calls in (1, 2):
            run = self.run_script("fault das refused %d" % calls, "set snmp.contact x sip.domain y.example.com")
            self.assertEqual((run.code, run.err.count("refused: the database did not take")), (1, calls), run.err)

    def test_a_refusal_names_its_schema_beside_others(self):
        run = self.run_script("fault das refused 1", "set snmp.contact x sip.domain y.example.com")
        self.assertIn(": refused on demand (schema SipBaseSettings)\n", run.err)

    def test_a_refusal_by_any_schema_is_the_outcome_in_a_transcript(self):
        file = os.path.join(self.folder, "transcript.jsonl")
        self.run_script("fault das refused 1", "set snmp.contact x sip.domain y.example.com",
                        options=("--record", file))
        with open(file) as lines:
            outcomes = [json.loads(line).get("outcome") for line in lines if '"result":"command"' in line]
        self.assertEqual(outcomes, ["done", "refused"])
        self.assertEqual(self.sdm("replay", file).code, 0)

    def test_commands_that_read_tell_what_could_not_be_read(self):
        self.run_script("set display.banner Hello")
        for command in ("restart", "reset", "reload", "import display.banner", "get sip.password"):
            with self.subTest(command):
                run = self.run_script("fault das refused 1", command)
                self.assertEqual(run.code, 1, run.out)
                self.assertIn("refused on demand", run.err)

    def test_a_restart_that_a_value_is_refused_in_is_no_success(self):
        self.run_script("set time.zone Europe/Rome")
        with open(os.path.join(self.device, "CommsSettings.csv")) as file:
            lines = file.read().replace("Zone,,,UTC,setTimeZone,getTimeZone", "Zone,,,UTC,setDhcp,getDhcp")
        path = os.path.join(self.folder, "changed.csv")
        with open(path, "w") as file:
            file.write(lines)
        run = self.run_script("restart", options=("--map", path))
        self.assertEqual(run.code, 1, run.out)

    def test_a_restart_that_the_store_refuses_is_told(self):
        run = self.run_script("set time.zone Europe/Rome", "fault store refuses", "restart")
        self.assertEqual(run.remarks()[-1], "refused: the local store refused, so it does not have what changed")
        self.assertEqual(run.code, 1)

    def test_a_group_that_was_not_judged_is_no_lost_database(self):
        run = self.run_script("set ip.address 192.168.1.20 ip.gateway x")
        self.assertIn("ip.address keeps its value, because its group was not accepted\n", run.err)
        self.assertNotIn("database", run.err[run.err.index("ip.address keeps"):])
        self.assertEqual(run.code, 1)


class FirstStarts(ProgramTest):
    def store_zone(self, value):
        self.run_script("set time.zone Europe/Rome")
        database = sqlite3.connect(os.path.join(self.device, "das.db"))
        with database:
            database.execute("UPDATE TimeSettings SET Zone = ?", (value,))
        database.close()

    def test_what_a_start_prints_as_refused_is_an_exit_code_of_a_script(self):
        self.store_zone("Mars")
        for commands in ((), ("get display.banner",)):
            run = self.run_script(*commands)
            self.assertIn("  refused time.zone: must be UTC", run.err)
            self.assertEqual(run.code, 1)
        self.run_script("set time.zone UTC")
        self.assertEqual(self.run_script().code, 0)

    def test_a_schema_that_a_start_cannot_read_is_an_exit_code_of_a_script(self):
        self.store_zone("a\x1b")
        for options in ((), ("--quiet",)):
            run = self.run_script("get time.zone", options=options)
            self.assertIn("  failed TimeSettings: the database holds a value that XML cannot carry\n", run.err)
            self.assertEqual(run.code, 1)


class ManySchemas(ProgramTest):
    """More than the exchanges that are remembered for `traffic`."""

    def setUp(self):
        super().setUp()
        self.map = os.path.join(self.folder, "map.csv")
        with open(self.map, "w") as file:
            for i in range(SCHEMAS):
                file.write("many.i%03d,Schema%03d,Value,,,A,setUpper,getUpper,user,,,\n" % (i, i))

    def run_many(self, *commands):
        return self.run_script(*commands, options=("--map", self.map, "--service",
                                                   os.path.join(SERVICES, "Picky.so")))

    def test_a_set_tells_of_the_first_schema(self):
        values = " ".join("many.i%03d B" % i for i in range(SCHEMAS))
        run = self.run_many("fault das refused 1", "set " + values, "explain many.i000")
        self.assertIn("refused on demand (schema Schema000)\n", run.err)
        self.assertIn("the database did not take it: refused on demand", run.lines()[-1])
        self.assertEqual(run.code, 1)

    def test_a_start_tells_of_the_first_schema(self):
        run = self.run_many("fault das refused 1", "restart")
        self.assertIn("failed Schema000: refused on demand\n", run.err)
        self.assertEqual(run.code, 1)

    def test_a_reset_tells_of_the_first_schema(self):
        run = self.run_many("set many.i149 B", "fault das refused 1", "reset")
        self.assertIn("refused: the database did not take a default", run.err)
        self.assertEqual(run.code, 1)


class WithoutAFile(ProgramTest):
    def run_without(self, name, *commands):
        """As an ordinary user to whom everything but this file of the device belongs."""
        path = os.path.join(self.device, name)
        script = "".join(command + "\n" for command in commands).encode()
        options = {}
        if os.geteuid() == 0:
            options = {"user": NOBODY, "group": NOBODY, "extra_groups": []}
            os.chmod(self.folder, 0o755)
            for folder, _, files in os.walk(self.device):
                for each in [folder] + [os.path.join(folder, file) for file in files]:
                    os.chown(each, NOBODY, NOBODY)
            os.chown(path, 0, 0)
        else:
            os.chmod(path, 0)
        try:
            done = subprocess.run([SDM, "run", "--device", self.device], input=script, capture_output=True,
                                  cwd=self.device, timeout=60, **options)
        except PermissionError:
            self.skipTest("no other user can start the program here")
        os.chmod(path, stat.S_IRUSR | stat.S_IWUSR)
        return Run(done)


class SecretsWithoutKey(WithoutAFile):
    SET = "set sip.userName user22 sip.password passw22passw22"
    WHY = "the value of column 'Password' could not be encrypted, so what is stored stays: "

    def setUp(self):
        super().setUp()
        self.run_script("set sip.userName user11 sip.password passw11passw11")

    def test_a_set_is_refused_and_says_why(self):
        run = self.run_without("das.key", self.SET, "securitylog 1")
        self.assertEqual(run.code, 1)
        self.assertIn(self.WHY + "there is no key: ", run.err)
        self.assertIn("das.key: the key cannot be read: Permission denied; let the user of this program read it",
                      run.err)
        self.assertIn("failed  SipBaseSettings set Password", run.lines()[-1])
        self.assertIn("a value is not encrypted: there is no key", run.err)

    def test_the_old_secret_stays(self):
        before = self.cell()
        self.run_without("das.key", self.SET, "reset", "reload", "restart")
        self.assertEqual(self.cell(), before)
        self.assertEqual(self.run_script("list sip.").row("sip.password")[-1], "E", "the service has it again")

    def cell(self):
        with sqlite3.connect(os.path.join(self.device, "das.db")) as database:
            return database.execute("SELECT UserName, Password FROM SipBaseSettings").fetchone()

    def test_encryption_that_fails_on_demand_leaves_the_old_secret(self):
        before = self.cell()
        run = self.run_script("fault encryption fails", self.SET, "reload", "reset")
        self.assertIn(self.WHY + "encryption fails on demand", run.err)
        self.assertEqual((run.code, self.cell()), (1, before))

    def test_a_text_that_was_not_decrypted_is_not_encrypted_as_if_it_were_the_value(self):
        self.run_script("set sip.userName user11 sip.password short1")
        before = self.cell()
        run = self.run_script("fault encryption fails", "restart", "fault off", "set sip.userName user33 sip.password " +
                              before[1])
        self.assertIn("it is no value, but the encrypted text of one that could not be decrypted", run.err)
        self.assertEqual((run.code, self.cell()), (1, before))

    def test_an_empty_value_is_a_value(self):
        run = self.run_script('set sip.userName "" sip.password ""', "import sip.password")
        self.assertEqual(run.lines()[-1], "sip.password is stored as ***** (stored encrypted)")
        self.assertEqual(run.code, 0)

    def test_list_show_and_explain_have_one_answer(self):
        # What could not be decrypted is handed to the setter as it is, and that of passwords refuses a long text.
        for password, origin in (("short1", "database"), ("long11" * 8, "default")):
            self.run_script("set sip.userName user11 sip.password " + password)
            run = self.run_without("das.key", "list sip.password", "show sip.password", "explain sip.password")
            self.assertEqual(run.row("sip.password")[3], origin)
            self.assertEqual(run.after("  from"), origin)
            self.assertIn("from: %s, " % origin, run.after("sip.password = "))


class RecordsThatNobodyTakes(WithoutAFile):
    def test_the_notice_says_what_becomes_of_changes(self):
        self.run_script("set snmp.contact before")
        run = self.run_without("security.log", "set snmp.contact abc")
        self.assertIn("until then changes that need a record of it are made without one", run.err)
        self.assertIn("what the database took stays there without them", run.remarks()[-1])
        self.assertEqual((run.code, self.get("snmp.contact")), (1, "abc"))


class RecordsThatAreLost(ProgramTest):
    def setUp(self):
        super().setUp()
        os.mkdir(self.device)
        os.symlink("/dev/full", os.path.join(self.device, "security.log"))

    def test_a_change_that_stays_without_its_record_is_told_as_that(self):
        run = self.run_script("set snmp.contact abc sip.domain y.example.com")
        self.assertIn("  records missing: 2 of 2; what the database took stays there without them\n", run.err)
        self.assertEqual(run.code, 1)
        self.assertEqual(self.get("snmp.contact"), "abc")

    def test_a_change_that_was_not_made_is_told_as_that(self):
        run = self.run_script("fault das refused", "set snmp.contact abc")
        self.assertIn("  records missing: 1 of 1; the database took nothing\n", run.err)
        self.assertEqual(run.code, 1)


if __name__ == "__main__":
    unittest.main()
