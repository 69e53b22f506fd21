"""Where a value came from, what was refused before, and which request carried it: in the shell and by itself."""
import json
import os
import re
import shutil
import unittest

from program import ProgramTest


class Explain(ProgramTest):
    def explain(self, root_id, *commands, options=()):
        """The headline, and the events as origin, value and what became of it."""
        run = self.run_script(*commands, "explain " + root_id, options=options)
        lines = run.lines()
        first = max(i for i, line in enumerate(lines) if line.startswith((root_id + " = ", root_id + ": no setter")))
        events = [re.split(r"  +", line.strip())[1:] for line in lines[first + 1:] if re.match(r"  \d{4}-", line)]
        return lines[first], events

    def origin(self, *arguments, **named):
        head, events = self.explain(*arguments, **named)
        return re.search(r"from: ([a-z ]+), \d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z", head).group(1), events

    def request(self, number, *commands):
        """A request as `traffic` shows it."""
        out = self.run_script(*commands, "traffic 100").out
        return re.search(r"(?ms)^#%s request\n(.*?)^reply" % number, out).group(1)

    def test_default(self):
        self.assertEqual(self.origin("time.zone"), ("default", [["default", "UTC", "unchanged"]]))
        self.assertEqual(self.origin("ip.address")[1][-1], ["default", "192.168.1.20", "taken"])

    def test_alternative_default(self):
        self.assertEqual(self.origin("ip.address", options=("--interfaces", "2")),
                         ("alternative default", [["alternative default", "10.20.0.20", "taken"]]))
        self.assertEqual(self.origin("ip.nameServer")[0], "default", "with one interface")

    def test_set_with_the_request_that_carried_it(self):
        origin, events = self.origin("time.zone", "set time.zone Europe/Rome")
        self.assertEqual(origin, "set")
        number = re.fullmatch(r"taken, request (\d+)", events[-1][-1]).group(1)
        self.assertIn("<Zone>Europe/Rome</Zone>", self.request(number, "set time.zone Europe/Rome"))

    def test_database_with_the_request_that_carried_it(self):
        self.run_script("set time.zone Europe/Rome")
        origin, events = self.origin("time.zone")
        self.assertEqual(origin, "database")
        self.assertEqual(events[-1][:2], ["database", "Europe/Rome"])
        number = re.fullmatch(r"taken, request (\d+)", events[-1][-1]).group(1)
        self.assertIn('<Schema name="TimeSettings">', self.request(number))

    def test_changed_and_local_store(self):
        self.assertEqual(self.origin("phone.room", "changed phone.room 4"), ("changed", [["changed", "4", "taken"]]))
        self.assertEqual(self.origin("phone.room")[0], "local store")

    def test_reset_with_its_request(self):
        origin, events = self.origin("display.banner", "set display.banner Hi", "reset")
        self.assertEqual((origin, events[-1][:2]), ("reset", ["reset", "Ready"]))
        self.assertRegex(events[-1][-1], r"^taken, request \d+$")

    def test_reload_with_its_request(self):
        self.run_script("set display.banner Hi")
        origin, events = self.origin("display.banner", "fault das empty", "restart", "fault off", "reload")
        self.assertEqual((origin, events[-1][:2]), ("reload", ["reload", "Hi"]))
        self.assertRegex(events[-1][-1], r"^taken, request \d+$")

    def test_refusals_with_their_reasons(self):
        origin, events = self.origin("time.zone", "set time.zone Mars")
        self.assertEqual((origin, events[-1][:2]), ("default", ["set", "Mars"]))
        self.assertRegex(events[-1][-1], "^refused: must be UTC or ")
        head, events = self.explain("device.firmware", "set device.firmware 5")
        self.assertEqual((head, events), ("device.firmware: no setter took a value of it",
                                          [["set", "5", "refused: no setter available"]]))

    def test_refusal_of_a_group(self):
        origin, events = self.origin("ip.address", "set ip.address 10.1.1.5",
                                     "set ip.address 192.168.1.9 ip.netmask x")
        self.assertEqual(origin, "default")
        self.assertEqual(events[-2][:2] + [events[-2][2][:44]],
                         ["set", "10.1.1.5", "refused: group IpAddressing: the gateway 192"])
        self.assertEqual(events[-1], ["set", "192.168.1.9", "held back"])

    def test_what_is_so_already(self):
        self.assertEqual(self.origin("transport.protocol", "set transport.protocol udp")[1][-1][1:2], ["udp"])
        self.assertRegex(self.origin("transport.protocol", "set transport.protocol udp")[1][-1][-1],
                         r"^not taken again, request \d+$")

    def test_a_value_that_the_database_did_not_take(self):
        _, events = self.origin("time.zone", "fault das refused", "set time.zone Europe/Rome")
        self.assertRegex(events[-1][-1], r"^taken, request \d+: the database did not take it: refused on demand$")
        _, events = self.origin("time.zone", "fault das absent", "set time.zone Europe/Rome")
        self.assertEqual(events[-1][-1], "taken: the database was not found")

    def test_earlier_runs_are_there(self):
        self.run_script("set time.zone Mars")
        self.run_script("set time.zone Europe/Rome")
        run = self.run_script("explain time.zone")
        self.assertEqual(run.out.count("  run of "), 3)
        self.assertIn("refused: must be UTC", run.out)

    def test_secrets_are_masked_in_the_shell_and_in_the_file(self):
        origin, events = self.origin("sip.password", "set sip.userName bob sip.password hunter2hunter2")
        self.assertEqual((origin, events[-1][1]), ("set", "*****"))
        for name, content in self.files().items():
            self.assertNotIn(b"hunter2", content, name)

    def test_a_reason_that_repeats_a_secret_is_masked_in_the_file(self):
        services = os.environ["SERVICES"]
        with open(os.path.join(self.folder, "map.csv"), "w") as file:
            file.write("bell.pin,Bell,Pin,,,,setEcho,,,,,true\n")
        self.run_script("set bell.pin hunter2hunter2", options=("--map", os.path.join(self.folder, "map.csv"),
                                                                "--service", os.path.join(services, "Picky.so")))
        with open(os.path.join(self.device, "history.log")) as file:
            told = [json.loads(line) for line in file if '"item"' in line]
        self.assertEqual([(each["outcome"], each.get("reason")) for each in told][-1], ("refused", "***** is none"))

    def test_an_unknown_item(self):
        run = self.run_script("explain time.zon")
        self.assertEqual((run.code, run.remarks()[-1]),
                         (1, "refused: there is no item time.zon; did you mean time.zone?"))
        run = self.sdm("explain", "time.zon", "--device", self.device)
        self.assertEqual((run.code, run.out), (1, ""))
        self.assertIn("nothing is known of an item time.zon in ", run.err)
        self.assertIn("did you mean time.zone?", run.err)

    def test_the_subcommand_tells_the_same_and_starts_nothing(self):
        run = self.run_script("set time.zone Europe/Rome", "explain time.zone")
        before = self.files()
        alone = self.sdm("explain", "time.zone", "--device", self.device)
        self.assertEqual((alone.code, alone.err, alone.lines()), (0, "", run.lines()[-len(alone.lines()):]))
        self.assertEqual(self.files(), before)

    def test_a_recorded_run_has_the_same_history(self):
        commands = ("set time.zone Europe/Rome", "set time.zone Mars", "set ip.address 10.1.1.5",
                    "changed phone.room 4", "reset")
        told = []
        for options in ((), ("--force", "--record", os.path.join(self.folder, "transcript.jsonl"))):
            told.append([])
            for root_id in ("time.zone", "ip.address", "phone.room"):
                told[-1].append(self.explain(root_id, *commands, options=options)[1])
                shutil.rmtree(self.device)
        self.assertEqual(*told)
        self.assertEqual(told[0][2], [["changed", "4", "taken"]])

    def test_json(self):
        self.run_script("set time.zone Mars", "set time.zone Europe/Rome", "set sip.userName b sip.password hunter2")
        run = self.sdm("explain", "time.zone", "--device", self.device, "--json")
        told = json.loads(run.out)
        self.assertEqual([(each["origin"], each["outcome"]) for each in told["events"]],
                         [("default", "unchanged"), ("set", "refused"), ("set", "taken")])
        self.assertEqual(told["value"], told["events"][-1])
        self.assertEqual((told["item"], told["value"]["value"]), ("time.zone", "Europe/Rome"))
        self.assertGreater(told["value"]["request"], 0)
        self.assertIsNone(told["events"][0]["request"])

    def test_without_a_history(self):
        run = self.sdm("explain", "time.zone", "--device", self.folder)
        self.assertEqual((run.code, run.out), (3, ""))
        self.assertIn("history.log cannot be read: No such file or directory", run.err)
        self.assertEqual(self.sdm("explain").code, 2)

    def test_lines_that_are_none_are_passed_over(self):
        self.run_script("set time.zone Europe/Rome")
        with open(os.path.join(self.device, "history.log"), "ab") as file:
            file.write(b'\xff\x00nonsense\n{"item": 7}\n[]\n{"time": "2026')
        self.assertEqual(self.origin("time.zone")[0], "database")
        self.assertEqual(self.sdm("explain", "time.zone", "--device", self.device).out.count("run of "), 2)

    def test_a_history_that_cannot_be_written_is_told(self):
        self.run_script()
        os.remove(os.path.join(self.device, "history.log"))
        os.mkdir(os.path.join(self.device, "history.log"))
        run = self.run_script("set time.zone Europe/Rome", "explain time.zone")
        self.assertIn("attention of this run nothing is kept: ", run.err)
        self.assertIn("time.zone = Europe/Rome, from: set", run.out)
        self.assertEqual(run.code, 0)


if __name__ == "__main__":
    unittest.main()
