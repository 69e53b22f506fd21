"""What a script reads: one JSON document, for commands and subcommands."""
import json
import os
import unittest

from program import ProgramTest

SERVICES = os.environ["SERVICES"]


class Json(ProgramTest):
    def document(self, *commands):
        """What the last command prints as JSON, and all that came before it."""
        run = self.run_script(*commands)
        begin = ("\n" + run.out).index("\n{\n")
        return json.loads(run.out[begin:]), run

    def test_list(self):
        told, run = self.document("set sip.password hunter2hunter2 sip.userName anna", "lock time.zone", "list --json")
        items = {each["item"]: each for each in told["items"]}
        self.assertEqual(items["sip.password"],
                         {"item": "sip.password", "value": "*****", "default": "*****", "from": "set",
                          "group": "SipCredentials", "encrypted": True, "userData": False, "local": False,
                          "locked": False, "undecryptable": False, "differsFromDatabase": False})
        self.assertEqual((items["time.zone"]["value"], items["time.zone"]["from"], items["time.zone"]["group"]),
                         ("UTC", "default", None))
        self.assertTrue(items["time.zone"]["locked"])
        self.assertEqual(run.code, 0)
        self.assertNotIn("hunter2", run.out)
        rows = self.run_script("list").lines()
        self.assertEqual([each["item"] for each in told["items"]],
                         [line.split()[0] for line in rows[rows.index(next(
                             line for line in rows if line.startswith("ITEM "))) + 1:-1]])

    def test_list_of_some(self):
        told, _ = self.document("list --json time.")
        self.assertTrue(told["items"])
        self.assertEqual([each for each in told["items"] if not each["item"].startswith("time.")], [])

    def test_get(self):
        told, run = self.document("get --json time.zone sip.password")
        self.assertEqual((told, run.code), ({"time.zone": "UTC", "sip.password": "*****"}, 0))

    def test_explain(self):
        told, _ = self.document("set time.zone Europe/Rome", "explain --json time.zone")
        self.assertEqual((told["item"], told["value"]["value"], told["value"]["origin"]),
                         ("time.zone", "Europe/Rome", "set"))
        self.assertEqual(told, json.loads(self.sdm("explain", "--json", "time.zone").out))

    def test_wrong_usage(self):
        for command, usage in (("list a b", "list [--json] [--changed] [PART]"), ("explain a b", "explain [--json] ID"),
                               ("explain --json", "explain [--json] ID")):
            run = self.run_script(command)
            self.assertEqual((run.code, run.remarks()[-1]), (1, "refused: usage: " + usage))

    def test_check(self):
        for arguments in ((os.environ["SAMPLE_MAP"],), ("--rules",), ("--explain", "group-of-one")):
            run = self.sdm("check", "--json", *arguments)
            self.assertEqual(run.out, self.sdm("check", "--format", "json", *arguments).out)
            json.loads(run.out)
        self.assertEqual(json.loads(run.out)["id"], "group-of-one")

    def test_test(self):
        self.run_script("get time.zone", options=("--record", "one.jsonl"))
        told = json.loads(self.sdm("test", "--json", ".").out)
        self.assertEqual([(each["name"], each["passed"]) for each in told["tests"]], [("one.jsonl", True)])

    def test_the_word_is_recorded_beside_a_secret(self):
        self.run_script("explain --json sip.password", "get --json sip.password", "list --json sip.password",
                        options=("--record", "one.jsonl"))
        with open(os.path.join(self.folder, "one.jsonl")) as file:
            commands = [line["command"] for line in map(json.loads, file) if "command" in line]
        self.assertEqual(commands, ["explain --json sip.password", "get --json sip.password",
                                    "list --json sip.password"])
        self.assertEqual(self.sdm("replay", "one.jsonl").code, 0)


if __name__ == "__main__":
    unittest.main()
