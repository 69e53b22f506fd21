"""The history in a device's folder: what goes in, what stays when there is much, and what is told of the rest."""
import json
import os
import stat
import unittest

from program import ProgramTest

MEBIBYTE = 1024 * 1024


class History(ProgramTest):
    def setUp(self):
        super().setUp()
        self.history = os.path.join(self.device, "history.log")

    def lines(self):
        with open(self.history) as file:
            return [json.loads(line) for line in file if line.strip()]

    def size(self):
        return os.path.getsize(self.history)

    def told(self, root_id, *options):
        run = self.sdm("explain", root_id, "--device", self.device, "--json", *options)
        self.assertEqual(run.code, 0, run.err)
        return json.loads(run.out)

    def event(self, number, root_id="time.zone", **more):
        """A request of an earlier run, as it stands in the file."""
        return {"time": "2020-01-01T00:00:%02d.%03dZ" % (number // 1000 % 60, number % 1000),
                "run": "2020-01-01T00:00:00.000Z", "item": root_id, "origin": "set", "outcome": "taken",
                "value": "v%d" % number, **more}

    def write(self, events):
        with open(self.history, "w") as file:
            for event in events:
                file.write(json.dumps(event, separators=(",", ":")) + "\n")

    def test_an_idle_start_adds_one_short_line(self):
        self.run_script("set time.zone Europe/Rome", "changed phone.room 4")
        self.run_script()
        for options in ((), ()):
            lines, size = self.lines(), self.size()
            self.run_script(options=options)
            self.assertEqual(self.lines()[:-1], lines)
            self.assertEqual(sorted(self.lines()[-1]), ["before", "digest", "run", "start", "time"])
            self.assertLess(self.size() - size, 200)

    def test_a_restart_in_a_run_adds_one_short_line_once_it_was_told(self):
        self.run_script("restart", "restart")
        lines = self.lines()
        self.assertTrue(lines[-1]["again"])
        self.assertEqual(len([line for line in lines if line.get("start") == lines[-1]["start"]]), 1)

    def test_a_start_writes_what_changed_and_nothing_else(self):
        self.run_script()
        before = len(self.lines())
        self.run_script("set time.zone Europe/Rome")
        self.run_script()
        added = self.lines()[before:]
        self.assertEqual([line.get("item") for line in added], [None, "time.zone", "time.zone", "time.zone", None])
        self.assertEqual([line.get("origin") for line in added], [None, "set", "default", "database", None])

    def test_a_start_with_other_values_is_told_again(self):
        self.run_script()
        self.run_script(options=("--interfaces", "2"))
        self.run_script()
        origins = [event["origin"] for event in self.told("ip.address")["events"]]
        self.assertEqual(origins, ["default", "alternative default", "default"])

    def test_starts_that_were_the_same_are_told_by_their_number(self):
        self.run_script("set time.zone Europe/Rome")
        for _ in range(4):
            self.run_script()
        run = self.run_script("explain time.zone", "traffic 100")
        events = self.told("time.zone")["events"]
        self.assertEqual([each["origin"] for each in events], ["default", "set"] + 2 * ["default", "database"])
        self.assertEqual([each.get("sameStartsBefore") for each in events], 4 * [None] + [3, None])
        self.assertIn("\n  the same at 3 starts in between\n", run.out)
        self.assertEqual(events[-1]["run"], self.lines()[-1]["run"])
        self.assertGreater(events[-1]["time"], events[-3]["time"])

    def test_a_value_that_came_again_names_the_request_of_this_start(self):
        self.run_script("set time.zone Europe/Rome")
        self.run_script("restart")
        run = self.run_script("restart", "restart", "explain time.zone", "traffic 100")
        number = run.after("time.zone = Europe/Rome, from: database").rpartition(" ")[2]
        request = run.out.partition("#%s request" % number)[2].partition("\n#")[0]
        self.assertIn('<Schema name="TimeSettings">', request)
        self.assertNotIn("#%d request" % (int(number) + 20), run.out, "the last start's, not an earlier one's")
        self.assertGreater(int(number), 20)
        events = [line for line in run.lines() if "  database  " in line]
        self.assertTrue(events[-1].endswith("  taken, request " + number), events)
        self.assertEqual(self.told("time.zone")["events"][-1]["request"], int(number), "to who reads the file alone")

    def test_an_item_that_gets_nothing_any_more_has_no_value(self):
        self.run_script("changed phone.room 4")
        self.run_script()
        self.assertEqual(self.told("phone.room")["value"]["value"], "4")
        self.run_script(options=("--service", os.environ["SAMPLE"], "--map", self.map_without("phone.room")))
        told = self.told("phone.room")
        self.assertEqual((told["value"], told["events"][-1]["outcome"]), (None, "nothing given"))
        self.run_script(options=("--service", os.environ["SAMPLE"], "--map", self.map_without("phone.room")))
        self.assertEqual(len(self.told("phone.room")["events"]), len(told["events"]), "told once")

    def map_without(self, root_id):
        path = os.path.join(self.folder, "map.csv")
        with open(os.environ["SAMPLE_MAP"]) as source, open(path, "w") as file:
            file.writelines(line for line in source if not line.startswith(root_id + ","))
        return path

    def test_a_value_of_the_local_store_lasts_through_a_restart(self):
        self.run_script("changed phone.room 4")
        run = self.run_script("restart", "explain phone.room")
        self.assertIn("phone.room = 4, from: local store, ", run.out)
        self.assertNotIn("nothing given", run.out)

    def test_what_an_earlier_run_gave_counts_no_more(self):
        self.run_script()
        self.write([self.event(1, "device.firmware"), self.event(2), *self.lines()])
        self.run_script()
        self.assertIsNone(self.told("device.firmware")["value"])
        self.assertEqual(self.told("time.zone")["value"]["origin"], "default")

    def test_a_file_that_grew_keeps_the_last_events_of_each_item_and_tells_how_many_it_dropped(self):
        self.run_script()
        many = [self.event(i) for i in range(20000)]
        self.write([self.event(1, "ip.netmask"), *many, self.event(2, "gone.item"), *self.lines()])
        self.assertGreater(self.size(), 2 * MEBIBYTE)
        self.run_script()
        self.assertLess(self.size(), MEBIBYTE)
        events = self.told("time.zone")["events"]
        self.assertEqual([each["value"] for each in events],
                         ["v%d" % i for i in range(19992, 20000)] + ["UTC", "UTC"])
        self.assertEqual(self.told("time.zone")["dropped"], {"events": 19992, "until": many[19991]["time"]})
        for root_id in ("ip.netmask", "gone.item"):
            self.assertEqual(self.told(root_id)["events"][0]["origin"], "set")
            self.assertNotIn("dropped", self.told(root_id))
        run = self.sdm("explain", "time.zone", "--device", self.device)
        self.assertIn("\n  19992 older events were dropped, the last of " + many[19991]["time"] + "\n", run.out)

    def test_a_file_that_grew_during_a_run_is_made_small_there(self):
        self.run_script()
        self.write([*self.lines(), *(self.event(i) for i in range(20000))])
        run = self.run_script("set time.zone Europe/Rome", "set time.zone UTC", "explain time.zone")
        self.assertLess(self.size(), MEBIBYTE)
        self.assertRegex(run.out, r"\n  199\d\d older events were dropped")
        self.assertIn("time.zone = UTC, from: set, ", run.out)
        self.assertNotIn("history.log.new", " ".join(self.files()))

    def test_what_was_dropped_of_items_that_are_gone_is_told_when_they_are_asked_for(self):
        self.run_script()
        self.write([*(self.event(i, "gone.item%05d" % i) for i in range(20000)), *self.lines()])
        self.run_script()
        self.assertLess(self.size(), 1.1 * MEBIBYTE)
        run = self.sdm("explain", "gone.item00001", "--device", self.device)
        self.assertEqual(run.code, 1)
        self.assertRegex(run.err, r"where \d+ older events were dropped, the last of 2020-")
        self.assertEqual(self.told("gone.item19999")["events"][0]["value"], "v19999")

    def test_counts_of_what_was_dropped_add_up(self):
        self.run_script()
        for _ in range(2):
            self.write([*self.lines(), *(self.event(i) for i in range(20000))])
            self.run_script()
        told = self.told("time.zone")
        self.assertEqual(told["dropped"]["events"] + sum(each["origin"] == "set" for each in told["events"]), 40000)

    def test_a_long_value_is_cut_short_and_says_so(self):
        self.run_script("set display.banner " + 5000 * "\u00e4")
        value = self.told("display.banner")["events"][-1]["value"]
        self.assertEqual(value, 2048 * "\u00e4" + "... (10000 bytes)")

    def test_a_new_event_begins_a_line_of_its_own(self):
        self.run_script()
        with open(self.history, "a") as file:
            file.write('{"time": "2026')
        self.run_script()
        with open(self.history) as file:
            lines = file.read().split("\n")
        self.assertIn('{"time": "2026', lines)
        self.assertNotIn("", lines[:-1], "no empty line where none is needed")
        self.assertEqual(json.loads(lines[-2])["start"], 2)

    def test_is_made_for_its_owner_alone(self):
        before = os.umask(0)
        self.addCleanup(os.umask, before)
        self.run_script()
        self.assertEqual(stat.S_IMODE(os.stat(self.history).st_mode), 0o600)
        self.write([self.event(i) for i in range(25000)])
        self.run_script()
        self.assertEqual(stat.S_IMODE(os.stat(self.history).st_mode), 0o600, "after it was made small")

    def test_hostile_lines_and_files_end_themselves_only(self):
        self.run_script()
        for content in (b'{"item":' + 60000 * b"[", b'{"start":' + 60000 * b'{"a":', 3 * MEBIBYTE * b"x",
                        b'{"start":1}\n{"dropped":7}\n{"dropped":{"a":"b"},"item":"","outcome":""}\n'):
            with open(self.history, "ab") as file:
                file.write(content + b"\n")
            self.assertEqual(self.run_script("explain time.zone").code, 0)
            self.assertEqual(self.sdm("explain", "time.zone", "--device", self.device).code, 0)
        os.remove(self.history)
        os.mkfifo(self.history)
        self.assertIn("attention of this run nothing is kept", self.run_script("explain time.zone").err)
        self.assertEqual(self.sdm("explain", "time.zone", "--device", self.device).code, 3)

    def test_no_text_of_the_file_reaches_the_terminal_as_it_is(self):
        self.run_script()
        for field in ("time", "run", "origin", "outcome", "value", "reason"):
            for hostile in ("\x1b[31m", "\u009b31m", "a\nb", "\x07"):
                self.write([self.event(1), {**self.event(2), "reason": "r", "run": "2030-01-01", field: hostile}])
                out = self.sdm("explain", "time.zone", "--device", self.device).out
                self.assertEqual([c for c in out if c != "\n" and (ord(c) < 32 or 127 <= ord(c) < 160)], [], field)
                self.assertNotIn("a\nb", out)

    def test_of_what_the_file_does_not_take_the_newest_is_known(self):
        self.run_script()
        os.remove(self.history)
        os.mkdir(self.history)
        sets = ["set display.banner " + 2000 * "x" + str(i) for i in range(600)]
        out = self.run_script(*sets, "explain --json display.banner").out
        told = json.loads(out[out.index("{"):])
        self.assertEqual(told["value"]["origin"], "default", "what the start gave is never dropped")
        self.assertEqual(told["events"][-1]["value"][2000:], "599")
        self.assertGreater(told["dropped"]["events"], 100)
        self.assertEqual(told["dropped"]["events"] + len(told["events"]), 601)


if __name__ == "__main__":
    unittest.main()
