"""`sdm replay`: says that all is as it was, or what differs first."""
import json
import os
import shutil
import unittest

from program import ProgramTest

SERVICES = os.environ["SERVICES"]
MAP = "lamp.level,Lamp,Level,,,7,setLevel,getLevel,,,,\nlamp.key,Lamp,Key,,,,setKey,,,,,true\n"


def service(name):
    return os.path.join(SERVICES, name + ".so")


class Replay(ProgramTest):
    def setUp(self):
        super().setUp()
        self.file = os.path.join(self.folder, "transcript.jsonl")
        self.map = os.path.join(self.folder, "Lamp.csv")
        with open(self.map, "w") as file:
            file.write(MAP)

    def record(self, *commands, options=()):
        self.run_script(*commands, options=("--record", self.file, *options))

    def record_lamp(self, *commands):
        self.record(*commands, options=("--service", service("Lamp"), "--map", self.map))

    def replay(self, *options):
        return self.sdm("replay", *options, self.file)

    def replay_lamp(self, name, *options):
        return self.replay("--service", service(name), "--map", self.map, *options)

    def lines(self):
        with open(self.file) as file:
            return file.read().splitlines()

    def write(self, lines, end="\n"):
        with open(self.file, "w") as file:
            file.write("\n".join(lines) + end)

    def test_the_same_service_does_the_same(self):
        self.record("log 6", "list", "set display.brightness 60", "set display.brightness loud", "restart", "reset",
                    "changed phone.label \"meeting room\"", "lock time.zone", "set 'a \"b", "nonsense", "get nothing",
                    "set time.zone \"Etc/\\\\\"", "quit")
        run = self.replay()
        self.assertEqual((run.code, run.out, run.err), (0, self.file + ": as recorded, 13 commands\n", ""))

    def test_the_settings_of_the_run_come_back(self):
        self.record("get ip.address", options=("--interfaces", "3", "--log-level", "5"))
        self.assertEqual(self.replay().code, 0)

    def test_a_changed_service_is_caught_with_place_and_context(self):
        self.record_lamp("set lamp.level 5", "set lamp.level 42", "get lamp.level")
        run = self.replay_lamp("DimLamp")
        self.assertEqual(run.code, 1)
        lines = self.lines()
        place = max(i for i, line in enumerate(lines) if line == '{"getter":"getLevel","value":"42"}')
        first = next(i for i, line in enumerate(lines) if line == '{"getter":"getLevel","value":"42"}')
        self.assertLessEqual(first, place)
        self.assertEqual(run.lines()[0][:len(self.file) + 40].split(":")[1], str(first + 1), run.out)
        self.assertIn('- expected  {"getter":"getLevel","value":"42"}', run.out)
        self.assertIn('+ actual    {"getter":"getLevel","value":"41"}', run.out)
        for line in lines[first - 3:first]:
            self.assertIn("    " + line, run.lines())
        self.assertEqual(self.replay_lamp("Lamp").code, 0)

    def test_json_tells_the_same(self):
        self.record_lamp("set lamp.level 42", "get lamp.level")
        told = json.loads(self.replay_lamp("DimLamp", "--json").out)
        self.assertFalse(told["same"])
        self.assertEqual(json.loads(told["difference"]["expected"])["value"], "42")
        self.assertEqual(self.lines()[told["difference"]["line"] - 1], told["difference"]["expected"])
        self.assertEqual(json.loads(self.replay_lamp("Lamp", "--json").out),
                         {"file": self.file, "same": True, "commands": 2, "notes": []})

    def test_a_service_that_ends_the_process_is_told(self):
        self.record_lamp("set lamp.level 42")
        run = self.replay_lamp("DyingLamp")
        self.assertEqual(run.code, 1)
        self.assertIn("+ actual    the service was ended by a signal (Aborted)", run.out)
        self.assertIn("after the command set lamp.level 42", run.out)
        run = self.replay_lamp("LeavingLamp")
        self.assertEqual(run.code, 1)
        self.assertIn("+ actual    the service ended the process", run.out)

    def test_a_service_that_never_comes_back_is_ended(self):
        self.record_lamp("set lamp.level 42")
        run = self.replay_lamp("StuckLamp", "--timeout", "5")
        self.assertEqual(run.code, 1)
        self.assertIn("+ actual    the service did not come back within 5 s", run.out)

    def test_another_map_is_told_beside_the_difference(self):
        self.record_lamp("get lamp.level")
        with open(self.map, "w") as file:
            file.write(MAP.replace(",7,", ",8,"))
        run = self.replay_lamp("Lamp")
        self.assertEqual(run.code, 1)
        self.assertIn("at the start", run.out)
        self.assertIn("note recorded with the item map sha256:", run.out)

    def test_another_service_is_told(self):
        self.record("get time.zone")
        self.assertIn("note recorded with the service CommsService, this is Lamp; name another one "
                      "with --service\n", self.replay_lamp("Lamp").out)

    def test_secrets_are_replaced_by_stand_ins(self):
        self.record("set sip.userName anna sip.password opensesame42", "set feature.unlockPin 12345",
                    "set line.pin-3 735912468", "set sip.password short1", "set sip.password tiny",
                    "get sip.password opensesame42", "set sip.userName \"\" sip.password opensesame42",
                    "set sip.password \"\" sip.userName \"\"", "set sip.password \"two words\"", "restart")
        self.assertEqual(self.replay().code, 0, self.replay().out)

    def test_a_stand_in_that_the_service_refuses_gives_way_to_another(self):
        self.record_lamp("set lamp.key abcdefghijklmnopqrstuvwx", "set lamp.level 5", "set lamp.key tooshort")
        run = self.replay_lamp("Lamp")
        self.assertEqual(run.code, 0, run.out)

    def test_a_secret_that_no_stand_in_can_replace_is_a_difference(self):
        self.record_lamp("set lamp.key abcdefghijklmnopqrstuvwx")
        self.write([line.replace('"value":"secret#2","accepted":true',
                                 '"value":"secret#2","accepted":true,"reason":"no other"') for line in self.lines()])
        run = self.replay_lamp("Lamp")
        self.assertEqual(run.code, 1)
        self.assertIn("after the command set lamp.key secret#2", run.out)

    def test_the_working_folder_and_device_stay_as_they_are(self):
        self.record("set display.brightness 60")
        before = self.files()
        self.replay()
        self.assertEqual(self.files(), before)
        self.assertEqual(sorted(os.listdir(self.folder)), ["Lamp.csv", "device", "transcript.jsonl"])

    def assert_malformed(self, line, reason):
        run = self.replay()
        place = self.file + (", line %d: " % line if line else " cannot be read: ")
        self.assertEqual((run.code, run.out, run.err), (3, "", "sdm: the transcript %s%s\n" % (place, reason)))

    def test_a_malformed_line_is_named_with_its_reason(self):
        self.record("get time.zone")
        good = self.lines()
        for line, reason in (("{", "this is no JSON, from byte 2 on"),
                             ("[1]", "this is no event, that is an object of JSON"),
                             ("{}", "this is no event, that is an object of JSON"),
                             ('{"dance":"tango"}', "there are no events of the kind dance"),
                             ('{"command":5}', "an event of the kind command needs a text"),
                             ('{"setter":"setZone","value":"x"}', 'an event of the kind setter needs "accepted"'),
                             ('{"result":"run","commands":1}',
                              "the number of commands is not that of the transcript, so a part of it is missing")):
            self.write(good[:4] + [line] + good[4:])
            self.assert_malformed(5, reason)

    def test_a_malformed_header_is_named_with_its_reason(self):
        self.record("get time.zone")
        good = self.lines()
        header = json.loads(good[0])
        for change, reason in (({"transcript": 2}, "the transcript has form 2, this program knows form 1"),
                               ({"transcript": "x"}, "this is no header of a transcript"),
                               ({"map": 5}, 'the header has no text "map"'),
                               ({"interfaces": 65}, 'the header has no number "interfaces" from 0 to 64'),
                               ({"logLevel": -1}, 'the header has no number "logLevel" from 0 to 6')):
            self.write([json.dumps({**header, **change})] + good[1:])
            self.assert_malformed(1, reason)

    def test_a_transcript_that_was_cut_off_is_none(self):
        self.record("get time.zone")
        good = self.lines()
        self.write(good[:-1])
        self.assert_malformed(len(good) - 1, "the end is missing, so the recording was cut off")
        self.write(good[:-1] + [good[-1][:-3]], end="")
        self.assert_malformed(len(good), "the line is cut off")
        self.write(good + good[-2:])
        self.assert_malformed(len(good) + 1, "nothing may stand behind the end of the run")
        self.write([], end="")
        self.assert_malformed(None, "it is empty")

    def test_what_is_missing_is_told(self):
        self.assert_malformed(None, "No such file or directory")
        self.record("get time.zone")
        run = self.replay("--service", "nowhere.so")
        self.assertEqual(run.code, 3)
        self.assertIn("nowhere.so cannot be loaded: No such file or directory", run.err)
        self.assertEqual(self.sdm("replay").code, 2)
        self.assertEqual(self.replay("--timeout", "0").code, 2)

    def test_more_than_was_recorded_is_a_difference(self):
        self.record_lamp("get lamp.level")
        lines = self.lines()
        at = max(i for i, line in enumerate(lines) if line.startswith('{"getter"'))
        self.write(lines[:at] + lines[at + 1:])
        run = self.replay_lamp("Lamp")
        self.assertEqual(run.code, 1)
        self.assertIn(":%d: " % (at + 1), run.out)
        self.assertIn('+ actual    {"getter":"getLevel","value":"7"}', run.out)


if __name__ == "__main__":
    unittest.main()
