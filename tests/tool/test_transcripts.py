"""`sdm test`: all transcripts of a folder, in three forms, and what never ran."""
import json
import os
import shutil
import unittest
import xml.etree.ElementTree

from program import ProgramTest

SERVICES = os.environ["SERVICES"]
MAP = ("lamp.level,Lamp,Level,,,7,setLevel,getLevel,,,,\nlamp.key,Lamp,Key,,,,setKey,,,,,true\n"
       "lamp.other,Lamp,Other,,,1,setLevel,,,Light,,\n")


def service(name):
    return os.path.join(SERVICES, name + ".so")


class Transcripts(ProgramTest):
    def setUp(self):
        super().setUp()
        self.map = os.path.join(self.folder, "Lamp.csv")
        self.tests = os.path.join(self.folder, "tests")
        os.mkdir(self.tests)
        with open(self.map, "w") as file:
            file.write(MAP)

    def record(self, name, *commands):
        shutil.rmtree(self.device, ignore_errors=True)
        self.run_script(*commands, options=("--service", service("Lamp"), "--map", self.map,
                                            "--record", os.path.join(self.tests, name)))

    def run_tests(self, name, *options):
        return self.sdm("test", self.tests, "--service", service(name), "--map", self.map, *options)

    def record_two(self):
        self.record("b-bright.jsonl", "set lamp.level 42", "get lamp.level")
        self.record("a-read.jsonl", "get lamp.level")

    def test_tap_tells_each_by_its_name_in_order(self):
        self.record_two()
        with open(os.path.join(self.tests, "notes.txt"), "w"):
            pass
        run = self.run_tests("Lamp")
        self.assertEqual(run.lines()[:4], ["TAP version 13", "1..2", "ok 1 - a-read.jsonl", "ok 2 - b-bright.jsonl"])
        self.assertEqual((run.code, run.err), (0, ""))

    def test_tap_tells_the_first_difference(self):
        self.record_two()
        run = self.run_tests("DimLamp")
        self.assertEqual(run.code, 1)
        self.assertEqual(run.lines()[2:5], ["ok 1 - a-read.jsonl", "not ok 2 - b-bright.jsonl", "  ---"])
        self.assertEqual(json.loads(json.loads(run.after("  actual: "))), {"getter": "getLevel", "value": "41"})
        self.assertEqual(json.loads(json.loads(run.after("  expected: "))), {"getter": "getLevel", "value": "42"})
        self.assertIn("  ...", run.lines())

    def test_a_malformed_transcript_fails_and_the_others_run(self):
        self.record_two()
        path = os.path.join(self.tests, "aa#odd.jsonl")
        with open(path, "w") as file:
            file.write("odd\n")
        run = self.run_tests("Lamp")
        self.assertEqual(run.code, 1)
        self.assertIn("not ok 2 - aa\\#odd.jsonl", run.lines())
        self.assertEqual(json.loads(run.after("  message: ")),
                         "the transcript %s, line 1: this is no JSON, from byte 1 on" % path)
        self.assertIn("ok 3 - b-bright.jsonl", run.lines())

    def test_junit_is_xml_with_the_same(self):
        self.record_two()
        with open(os.path.join(self.tests, "odd.jsonl"), "w") as file:
            file.write("odd\n")
        run = self.run_tests("DimLamp", "--format", "junit")
        suite = xml.etree.ElementTree.fromstring(run.out).find("testsuite")
        self.assertEqual((run.code, suite.get("tests"), suite.get("failures"), suite.get("errors")), (1, "3", "1", "1"))
        cases = {case.get("name"): case for case in suite.findall("testcase")}
        self.assertIsNone(cases["a-read.jsonl"].find("failure"))
        self.assertIn("after the command", cases["b-bright.jsonl"].find("failure").get("message"))
        self.assertIn('+ {"getter":"getLevel","value":"41"}', cases["b-bright.jsonl"].find("failure").text)
        self.assertIn("line 1", cases["odd.jsonl"].find("error").get("message"))
        self.assertIn("# getters: 1 of 1 ran", suite.find("system-out").text)

    def test_coverage_lists_what_never_ran(self):
        self.record_two()
        self.assertEqual(self.run_tests("Lamp", "--coverage").lines()[4:],
                         ["# setters: 1 of 3 ran", "#   never ran: setKey", "#   never ran: setUnused",
                          "# getters: 1 of 1 ran", "# groups: 0 of 1 ran", "#   never ran: Light",
                          "# items: 2 of 3 ran", "#   never ran: lamp.key"])
        self.assertEqual(self.run_tests("Lamp").lines()[4:],
                         ["# setters: 1 of 3 ran", "# getters: 1 of 1 ran", "# groups: 0 of 1 ran",
                          "# items: 2 of 3 ran"])

    def test_a_start_covers_nothing(self):
        self.record("start.jsonl", "restart")
        told = json.loads(self.run_tests("Lamp", "--format", "json").out)
        self.assertEqual(told["coverage"]["setters"], {"all": 3, "neverRan": ["setKey", "setLevel", "setUnused"]})
        self.assertEqual(told["coverage"]["items"]["neverRan"], ["lamp.key", "lamp.level", "lamp.other"])

    def test_json_tells_results_and_coverage(self):
        self.record_two()
        told = json.loads(self.run_tests("DimLamp", "--format", "json").out)
        self.assertEqual([(test["name"], test["passed"]) for test in told["tests"]],
                         [("a-read.jsonl", True), ("b-bright.jsonl", False)])
        self.assertEqual(told["tests"][1]["difference"]["command"], "get lamp.level")
        self.assertEqual(told["coverage"]["getters"], {"all": 1, "neverRan": []})

    def test_a_folder_without_transcripts_is_an_error(self):
        run = self.run_tests("Lamp")
        self.assertEqual((run.code, run.out), (3, ""))
        self.assertIn("has no transcript, that is no file *.jsonl; sdm run --record makes one", run.err)
        run = self.sdm("test", os.path.join(self.folder, "nowhere"))
        self.assertEqual(run.code, 3)
        self.assertIn("nowhere cannot be read: No such file or directory", run.err)

    def test_a_device_that_cannot_be_brought_up_is_one_failed_test(self):
        self.record_two()
        with open(os.path.join(self.folder, "no-lamp-once"), "w"):
            pass
        run = self.run_tests("OnceLamp")
        self.assertEqual((run.code, run.err), (1, ""))
        self.assertIn("not ok 1 - a-read.jsonl", run.lines())
        self.assertIn("no lamp is wired", run.after("  message: "))
        self.assertIn("ok 2 - b-bright.jsonl", run.lines())
        self.assertNotIn("Bail out!", run.out)

    def test_a_service_that_cannot_be_loaded_fails_each_and_is_no_result(self):
        self.record_two()
        with open(os.path.join(self.tests, "odd.jsonl"), "w") as file:
            file.write("odd\n")
        run = self.run_tests("NoLamp")
        self.assertEqual([line for line in run.lines() if line.startswith("not ok")],
                         ["not ok 1 - a-read.jsonl", "not ok 2 - b-bright.jsonl", "not ok 3 - odd.jsonl"])
        self.assertTrue(run.after("Bail out! the service "), run.out)
        self.assertIn("cannot be loaded: No such file or directory", run.err)
        self.assertEqual(run.code, 3)
        told = self.run_tests("NoLamp", "--json")
        self.assertEqual((told.code, [test["passed"] for test in json.loads(told.out)["tests"]]), (3, [False] * 3))


if __name__ == "__main__":
    unittest.main()
