"""`sdm run --record`: what stands in a transcript, and what never does."""
import json
import os
import resource
import stat
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "canary"))

from marks import Mark, generator_of, random_digits, random_text
from program import SDM, ProgramTest


class Record(ProgramTest):
    def setUp(self):
        super().setUp()
        self.file = os.path.join(self.folder, "transcript.jsonl")

    def record(self, *commands, options=()):
        run = self.run_script(*commands, options=("--record", self.file, *options))
        with open(self.file) as file:
            self.text = file.read()
        self.events = [json.loads(line) for line in self.text.splitlines()]
        return run

    def of(self, kind):
        """The events of a kind, behind the start."""
        first = next(i for i, event in enumerate(self.events) if event.get("result") == "initialise")
        return [event for event in self.events[first:] if next(iter(event)) == kind]

    def test_the_header_says_what_was_recorded(self):
        self.record(options=("--interfaces", "3", "--log-level", "4"))
        header = self.events[0]
        self.assertEqual(list(header), ["transcript", "version", "service", "map", "interfaces", "logLevel"])
        self.assertEqual((header["transcript"], header["service"], header["interfaces"], header["logLevel"]),
                         (1, "CommsService", 3, 4))
        done = subprocess.run(["sha256sum", os.environ["SAMPLE_MAP"]], capture_output=True, text=True, check=True)
        self.assertEqual(header["map"], "sha256:" + done.stdout.split()[0])

    def test_a_set_is_there_from_command_to_outcome(self):
        self.record("set display.brightness 60", "set display.brightness loud", options=("--log-level", "3"))
        begin = next(i for i, event in enumerate(self.events) if "command" in event)
        taken = self.events[begin:begin + 8]
        self.assertEqual(taken[0], {"command": "set display.brightness 60"})
        self.assertEqual(taken[1], {"op": "setData", "values": {"display.brightness": "60"}})
        self.assertIn({"setter": "setBrightness", "value": "60", "accepted": True}, taken)
        request = next(event["request"] for event in taken if "request" in event)
        self.assertIn("<Brightness>60</Brightness>", request)
        self.assertIn("update_response", next(event["reply"] for event in taken if "reply" in event))
        self.assertIn({"result": "setData", "answer": True}, taken)
        self.assertEqual([event["outcome"] for event in self.of("result") if event["result"] == "command"],
                         ["done", "refused"])
        refused = [event for event in self.of("setter") if not event["accepted"]]
        self.assertEqual([event["value"] for event in refused], ["loud"])
        self.assertEqual([event["rejects"] for event in self.of("result") if "rejects" in event],
                         [[{"item": "display.brightness", "reason": refused[0]["reason"]}]])

    def test_groups_getters_store_and_log_are_there(self):
        self.record("log 5", "set ip.address 10.1.2.3 ip.netmask 255.255.0.0 ip.gateway 10.1.0.1", "get ip.address",
                    'changed phone.label "meeting room"', "reset", "restart", "set snmp.port 1161")
        self.assertIn({"validator": "validateGroup", "group": "IpAddressing", "accepted": True}, self.of("validator"))
        self.assertIn({"getter": "getIpAddress", "value": "10.1.2.3"}, self.of("getter"))
        self.assertIn({"op": "manageableDataChanged", "values": {"phone.label": "meeting room"}}, self.of("op"))
        self.assertIn("publishData", [event["store"] for event in self.of("store")])
        self.assertTrue(any("SnmpSettings" in event["securitylog"] for event in self.of("securitylog")))
        self.assertTrue(any("trySetData" in event["text"] for event in self.of("log")))
        self.assertEqual(self.events[-1], {"result": "run", "commands": 7})

    def test_two_recordings_of_the_same_are_equal(self):
        commands = ("log 6", "list", "set sip.userName anna sip.password opensesame42", "restart", "traffic", "stats",
                    "securitylog", "set display.brightness 60", "reset")
        texts = []
        for name in ("one", "two"):
            self.device = os.path.join(self.folder, name)
            self.record(*commands)
            texts.append(self.text)
        self.assertEqual(*texts)
        self.assertNotIn(self.folder, texts[0])

    def test_comments_and_empty_lines_are_no_commands(self):
        self.record("# only words", "", "   ", "get time.zone")
        self.assertEqual([event["command"] for event in self.of("command")], ["get time.zone"])

    def test_a_secret_has_one_name_wherever_it_stands(self):
        self.record("log 6", "set sip.userName anna sip.password opensesame42", "set snmp.privacyKey opensesame42",
                    "set snmp.authenticationKey othersesame42", "get sip.password", "import sip.password", "restart")
        self.assertEqual(self.of("command")[1], {"command": "set sip.userName anna sip.password secret#2"})
        self.assertEqual(self.of("command")[2], {"command": "set snmp.privacyKey secret#2"})
        self.assertEqual(self.of("command")[3], {"command": "set snmp.authenticationKey secret#3"})
        self.assertIn({"setter": "setSipPassword", "value": "secret#2", "accepted": True}, self.of("setter"))
        self.assertTrue(any("<Password>secret#2</Password>" in event["request"] for event in self.of("request")))
        self.assertTrue(any("<Password>secret#2</Password>" in event["reply"] for event in self.of("reply")))
        self.assertIn({"result": "importItemFromDAS", "value": "secret#2"}, self.of("result"))
        self.assertTrue(any("<Password>secret#2</Password>" in event["text"] for event in self.of("log")))

    def test_a_value_beside_an_id_that_nobody_knows_is_masked_and_replayed(self):
        self.record("log 6", "set sip.pasword opensesame42", "set sip.pasword xyz", "set sip.pasword open sesame",
                    "changed sip.passwort hunter22", "sett sip.pasword hunter22", "hunter33 sip.pasword", "hunter44",
                    "set display.brightness 60 nosuch open", "set display.brightnes loud", "set display.brightness loud",
                    "set sip.userName anna sip.password opensesame42")
        self.assertEqual([event["command"] for event in self.of("command")[1:]],
                         ["set sip.pasword secret#2", "set sip.pasword secret#3", "set sip.pasword secret#4 secret#5",
                          "changed sip.passwort secret#6", "sett secret#7 secret#6", "secret#8 secret#7", "secret#9",
                          "set display.brightness 60 nosuch secret#4", "set display.brightnes secret#10",
                          "set display.brightness loud", "set sip.userName anna sip.password secret#2"])
        for value in ("opensesame42", "xyz", "sesame", "hunter"):
            self.assertNotIn(value, self.text)
        self.assertEqual(self.sdm("replay", self.file).code, 0)

    def test_a_value_that_looks_like_the_name_of_a_secret_gets_one(self):
        self.record("set phone.label secret#1", "changed phone.label secret#1")
        self.assertEqual([event["command"] for event in self.of("command")],
                         ["set phone.label secret#2", "changed phone.label secret#2"])

    def test_marked_secrets_are_nowhere(self):
        generator = generator_of(4711)
        password, key, word = (random_text(generator, 16) for _ in range(3))
        pin = random_digits(generator, 8)
        long_pin = random_digits(generator, 9)
        badge = random_text(generator, 20)
        with open(os.environ["SAMPLE_MAP"]) as file:
            text = file.read()
        map_file = os.path.join(self.folder, "Map.csv")
        with open(map_file, "w") as file:
            file.write(text.replace("\nphone.label,", "\nvpn.sharedSecret,") + "door.opener,Doors,Opener,,,,,,,,,true\n")
        self.record("log 6", "set sip.userName anna sip.password " + password, "set feature.unlockPin " + pin,
                    "set line.pin-3 " + long_pin, "set snmp.authenticationKey '%s'" % key, "set door.opener " + key,
                    "changed vpn.sharedSecret " + badge, "get sip.password line.pin-2", "get sip.password " + password,
                    "set sip.password %s %s %s" % (password, word, key), "sip.password " + word, 'set sip.password "' + word,
                    "set display.brightness " + password, "list " + password, "show sip.password",
                    "import sip.password", "list", "traffic 100", "securitylog 100", "reset", "reload", "restart",
                    "show vpn.sharedSecret", options=("--map", map_file))
        content = self.text.encode()
        self.assertIn(b"secret#5", content)
        for value in (password, key, word, pin, long_pin, badge):
            self.assertIsNone(Mark("", value).found_in(content))
        for cell in ("Password", "UnlockPin", "AuthenticationKey", "Opener"):
            self.assertNotRegex(self.text, r"<%s>(?!secret#\d+<)" % cell)

    def test_a_recording_needs_a_new_device(self):
        self.run_script("set display.brightness 60")
        run = self.run_script("get time.zone", options=("--record", self.file))
        self.assertEqual(run.code, 3)
        self.assertIn("a recording begins with a new device", run.err)

    def test_the_file_is_its_owners_alone_and_a_folder_is_refused(self):
        self.record("get time.zone")
        self.assertEqual(stat.S_IMODE(os.stat(self.file).st_mode), 0o600)
        run = self.run_script("get time.zone", options=("--record", self.folder))
        self.assertEqual(run.code, 3)
        self.assertIn("the transcript %s cannot be written: " % self.folder, run.err)

    def test_a_run_that_does_not_start_leaves_an_existing_transcript_alone(self):
        self.record("get time.zone")
        for options in (("--service", "nosuch.so"), ("--map", "nosuch.csv"), ()):
            run = self.run_script("get time.zone", options=("--record", self.file, "--force", *options))
            self.assertEqual(run.code, 3, run.err)
            self.assertEqual(os.listdir(self.folder).count("transcript.jsonl.part"), 0)
            with open(self.file) as file:
                self.assertEqual(file.read(), self.text)

    def test_a_transcript_is_overwritten_by_force_alone(self):
        self.record("get time.zone")
        self.device = os.path.join(self.folder, "other")
        run = self.run_script("get ip.address", options=("--record", self.file))
        self.assertEqual((run.code, run.out), (3, ""))
        self.assertIn("transcript.jsonl cannot be written: it is there already; --force overwrites it", run.err)
        self.assertFalse(os.path.exists(self.device), "nothing was brought up")
        with open(self.file) as file:
            self.assertEqual(file.read(), self.text)
        self.record("get ip.address", options=("--force",))
        self.assertEqual(self.of("command"), [{"command": "get ip.address"}])
        self.assertEqual(self.sdm("run", "--device", self.device, "--force").code, 2)

    def test_a_run_that_is_cut_off_leaves_its_part_and_the_transcript_before(self):
        self.record("get time.zone")
        self.device = os.path.join(self.folder, "other")
        with subprocess.Popen([SDM, "run", "--device", self.device, "--record", self.file, "--force"],
                              stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE) as process:
            process.stderr.readline()
            process.kill()
        with open(self.file) as file:
            self.assertEqual(file.read(), self.text)
        self.assertGreater(os.path.getsize(self.file + ".part"), 0)
        self.device = os.path.join(self.folder, "third")
        run = self.run_script(options=("--record", self.file + ".new"))
        self.assertEqual(run.code, 0)
        os.rename(self.file + ".part", self.file + ".new.part")
        run = self.run_script(options=("--record", self.file + ".new"))
        self.assertEqual(run.code, 3)

    def test_a_full_disk_is_told_and_the_run_goes_on(self):
        run = self.run_script("get time.zone", options=("--record", "/dev/full"))
        self.assertEqual((run.code, run.after("time.zone = ")), (1, "UTC"))
        self.assertIn("the transcript /dev/full cannot be written any more, so its end is missing: No space left", run.err)

    def test_a_file_that_may_not_grow_is_told_and_cut_off(self):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (500000, 500000))
        script = "log 6\n" + "list\n" * 120
        done = subprocess.run([SDM, "run", "--device", self.device, "--record", self.file], input=script.encode(),
                              capture_output=True, timeout=100, preexec_fn=limit)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"cannot be written any more", done.stderr)
        self.assertEqual(self.sdm("replay", self.file).code, 3)


if __name__ == "__main__":
    unittest.main()
