"""Groups of a service, and whether the order of a request matters to them."""
import json
import os
import unittest

from program import ProgramTest

RANGE = ("range.low,Range,Low,,,1,setLow,,,Range,,\n"
         "range.high,Range,High,,,9,setHigh,,,Range,,\n")


class Groups(ProgramTest):
    def setUp(self):
        super().setUp()
        self.map = os.path.join(self.folder, "Range.csv")
        with open(self.map, "w") as file:
            file.write(RANGE)

    def in_order(self, *arguments):
        return self.sdm("groups", "--service", os.path.join(os.environ["SERVICES"], "InOrder.so"), "--map", self.map,
                        *arguments)

    def test_lists_groups_with_their_members(self):
        run = self.sdm("groups")
        self.assertEqual((run.code, run.err, run.lines()),
                         (0, "", ["RtpPorts: transport.rtpFirstPort, transport.rtpLastPort",
                                  "SipCredentials: sip.userName, sip.password",
                                  "IpAddressing: ip.address, ip.netmask, ip.gateway"]))
        self.assertEqual(json.loads(self.sdm("groups", "--json", "SipCredentials").out),
                         {"groups": [{"group": "SipCredentials", "items": ["sip.userName", "sip.password"]}]})

    def test_no_order_matters_to_the_defaults_of_the_sample(self):
        run = self.sdm("groups", "--permute")
        self.assertEqual((run.code, run.err, run.lines()),
                         (0, "", ["RtpPorts: 2 items, 1 change in 2 orders: no order matters",
                                  "SipCredentials: 2 items, 1 change in 2 orders: no order matters",
                                  "IpAddressing: 3 items, 8 changes in 6 orders: no order matters"]))

    def test_finds_an_order_that_matters(self):
        run = self.in_order("--permute", "--set", "range.low=20", "--set", "range.high=30")
        self.assertEqual(run.code, 1)
        self.assertEqual(run.lines()[:2], ["Range: 2 items, 4 changes in 2 orders: the order matters to 1",
                                           "  set range.low 20 range.high 9"])
        low, high = run.out.index("order: range.low, range.high"), run.out.index("order: range.high, range.low")
        self.assertIn("range.high refused: is below 20\n", run.out[low:high])
        self.assertIn("range.high refused: (nothing)\n", run.out[high:])
        self.assertIn("range.high stored: 9\n", run.out[high:])

    def test_a_refusal_by_the_database_is_an_outcome(self):
        run = self.in_order("--permute", "--set", "range.low=20", "--set", "range.high=66")
        self.assertEqual((run.code, run.err), (1, ""))
        self.assertIn("      database Range: refused on demand\n", run.out)
        told = json.loads(self.in_order("--permute", "--json", "--set", "range.high=66").out)["groups"][0]["differences"]
        self.assertEqual([each["change"] for each in told], [{"range.low": "1", "range.high": "66"}])
        self.assertEqual([(each["order"][0], each["outcome"]["result"], each["outcome"].get("database Range"))
                          for each in told[0]["outcomes"]],
                         [("range.low", "done", None), ("range.high", "refused", "refused on demand")])

    def test_json_tells_each_outcome(self):
        self.assertEqual(self.in_order("--permute").code, 0)
        run = self.in_order("--permute", "--json", "--set", "range.low=20")
        outcomes = json.loads(run.out)["groups"][0]["differences"][0]["outcomes"]
        self.assertEqual([each["order"] for each in outcomes],
                         [["range.low", "range.high"], ["range.high", "range.low"]])
        self.assertEqual(outcomes[0]["outcome"]["range.high refused"], "is below 20")
        self.assertEqual(outcomes[1]["outcome"]["range.low live"], "20")

    def test_finds_that_the_reason_of_a_group_depends_on_the_last_item(self):
        run = self.sdm("groups", "--permute", "IpAddressing", "--set", "ip.netmask=x", "--set",
                       "ip.gateway=10.20.0.9")
        self.assertEqual(run.code, 1)
        self.assertIn("because the value of ip.netmask was refused\n", run.out)
        self.assertNotIn(" live: ", run.out, "values are the same in each order")
        self.assertNotIn(" stored: ", run.out)

    def test_secrets_are_masked(self):
        run = self.sdm("groups", "--permute", "SipCredentials", "--json", "--set", "sip.password=hunter2hunter2",
                       "--set", "sip.userName=bad name")
        self.assertNotIn("hunter2", run.out + run.err)

    def of_lamp(self, service, *arguments):
        """Of a lamp that does not like 42, and whose setter of keys is indifferent to it."""
        lamp = os.path.join(self.folder, "Lamp.csv")
        with open(lamp, "w") as file:
            file.write("lamp.level,Lamp,Level,,,1,setLevel,getLevel,,Lamp,,\n"
                       "lamp.hue,Lamp,Hue,,,,setKey,,,Lamp,,\n")
        return self.sdm("groups", "--service", os.path.join(os.environ["SERVICES"], service + ".so"), "--map", lamp,
                        "--permute", *arguments)

    def test_a_service_that_ends_its_process_is_told_and_the_rest_is_tried(self):
        run = self.of_lamp("DyingLamp", "--set", "lamp.level=42", "--set", "lamp.level=7")
        self.assertEqual((run.code, run.err), (1, ""))
        self.assertEqual(run.lines(), ["Lamp: 2 items, 3 changes in 2 orders: 1 of them end the service",
                                       "  set lamp.level 42 lamp.hue \"\"",
                                       "    2 orders, such as lamp.level, lamp.hue",
                                       "      crash: the service was ended by a signal (Aborted)"])
        told = json.loads(self.of_lamp("DyingLamp", "--set", "lamp.level=42", "--json").out)["groups"][0]
        self.assertEqual(told["differences"], [])
        self.assertEqual([each["change"] for each in told["crashes"]], [{"lamp.level": "42", "lamp.hue": ""}])

    def test_a_service_that_leaves_is_told_as_well(self):
        run = self.of_lamp("LeavingLamp", "--set", "lamp.level=42")
        self.assertIn("crash: the service ended the process with exit code 0\n", run.out)
        self.assertEqual(run.code, 1)

    def test_a_service_that_does_not_come_back_is_not_waited_for(self):
        run = self.of_lamp("StuckLamp", "--set", "lamp.level=42", "--timeout", "1")
        self.assertIn("crash: the service did not come back within 1 s\n", run.out)
        self.assertEqual(run.code, 1)

    def test_what_the_service_prints_is_not_among_the_results(self):
        self.assertEqual(json.loads(self.of_lamp("TalkingLamp", "--json").out)["groups"][0]["crashes"], [])

    def test_a_service_that_does_not_start_is_not_tried(self):
        with open(self.map, "w") as file:
            file.write("lamp.level,Lamp,Level,,,42,setLevel,getLevel,,Lamp,,\n"
                       "lamp.hue,Lamp,Hue,,,,setKey,,,Lamp,,\n")
        run = self.sdm("groups", "--service", os.path.join(os.environ["SERVICES"], "DyingLamp.so"), "--map", self.map,
                       "--permute")
        self.assertEqual((run.code, run.out, run.err),
                         (3, "", "sdm: the service does not start: the service was ended by a signal (Aborted)\n"))

    def test_leaves_nothing_behind(self):
        temporary = os.path.join(self.folder, "tmp")
        os.mkdir(temporary)
        os.environ["TMPDIR"] = temporary
        self.addCleanup(os.environ.pop, "TMPDIR")
        before = sorted(os.listdir(self.folder))
        self.assertEqual(self.in_order("--permute").code, 0)
        self.assertEqual((os.listdir(temporary), sorted(os.listdir(self.folder))), ([], before))

    def test_wrong_usage(self):
        for arguments, why in ((("Rnage",), "there is no group Rnage; did you mean Range?"),
                               (("--permute", "--set", "range.low"), "--set takes ID=VALUE"),
                               (("--permute", "--set", "nobody=1"), "nobody is none")):
            run = self.in_order(*arguments)
            self.assertEqual((run.code, run.out), (2, ""))
            self.assertIn(why, run.err)

    def test_what_keeps_it_from_trying(self):
        self.assertEqual(self.sdm("groups", "--service", "/nowhere.so").code, 3)
        self.assertEqual(self.in_order("--map", "/nowhere.csv").code, 2, "two maps")
        self.assertEqual(self.sdm("groups", "--map", "/nowhere.csv").code, 3)


if __name__ == "__main__":
    unittest.main()
