"""Checking item maps: how findings are told, what is mended, exit codes, and files that cannot be read."""
import json
import os
import resource
import stat
import subprocess
import unittest

import terminals
from program import SDM, ProgramTest

SOUND = "a.b,Sch,Col,,,1,setB,getB,,,,\n"
# One error, one warning and one note, the first of which can be mended.
MIXED = ("sip.pin,Sch,Pin,,,,setPin,,,,,True\n"
         "a.b,Sch,Col,,, 1,setB,getB,,,,\n"
         "c.d,Sch,Name,,,1,setD,getD,,,,false\n")
WARNING = "a.b,Sch,Col,,,1,setB,getB,,Group,,\n"


class CheckTest(ProgramTest):
    def map(self, content, name="map.csv"):
        path = os.path.join(self.folder, name)
        with open(path, "wb") as file:
            file.write(content if isinstance(content, bytes) else content.encode())
        return path

    def content(self, name="map.csv"):
        with open(os.path.join(self.folder, name), "rb") as file:
            return file.read().decode()

    def rules(self):
        return json.loads(self.sdm("check", "--rules", "--format", "json").out)


class Telling(CheckTest):
    def test_a_pipe_gets_a_line_a_finding(self):
        self.map(MIXED)
        run = self.sdm("check", "map.csv")
        self.assertEqual(run.err, "")
        self.assertEqual(run.lines(), [
            'map.csv:1:31: error: "True" does not turn encryption on, only "true" does: the value is stored in plain '
            'text [encryption-flag]',
            'map.csv:2:15: warning: blanks belong to the default, which is " 1" [blank-around-default]',
            'map.csv:3:31: note: the value is not encrypted, as it would not be with an empty column '
            '[encryption-denied]'])

    def test_a_sound_map_gets_no_word(self):
        self.map(SOUND)
        run = self.sdm("check", "map.csv")
        self.assertEqual((run.code, run.out, run.err), (0, "", ""))

    def test_bytes_that_move_a_cursor_are_escaped(self):
        self.map(b"a.b,Sch,Col,,, \x1b[2J,setB,getB,,,,\n", "evil\x1b.csv")
        run = self.sdm("check", "evil\x1b.csv")
        self.assertEqual(run.code, 1)
        self.assertNotIn("\x1b", run.out)

    def on_terminal(self, *arguments, **environment):
        parent, child = terminals.open_pair()
        process = subprocess.Popen([SDM, "check", *arguments], stdout=child, stderr=child, stdin=child,
                                   cwd=self.folder, env={**os.environ, "TERM": "xterm", **environment})
        os.close(child)
        shown = b""
        while True:
            try:
                piece = os.read(parent, 4096)
            except OSError:
                break
            if not piece:
                break
            shown += piece
        os.close(parent)
        process.wait()
        return shown.decode().replace("\r\n", "\n")

    def test_a_terminal_shows_the_line_with_a_mark_below(self):
        self.map(MIXED)
        shown = self.on_terminal("map.csv", NO_COLOR="1")
        self.assertIn("  1 | sip.pin,Sch,Pin,,,,setPin,,,,,True\n"
                      "    |                               ^~~~\n", shown)
        self.assertIn("3 items: 1 error, 1 warning, 1 note", shown)
        self.assertIn("--fix mends 2 of these", shown)
        self.assertNotIn("\x1b", shown)

    def test_a_terminal_shows_colours(self):
        self.map(MIXED)
        self.assertIn("\x1b[31merror:\x1b[0m", self.on_terminal("map.csv", NO_COLOR=""))

    def test_a_terminal_shows_the_other_place_of_a_finding(self):
        self.map(SOUND + SOUND.replace("Col", "Other"))
        shown = self.on_terminal("map.csv", NO_COLOR="1")
        self.assertIn("map.csv:2:1: error: the root id", shown)
        self.assertIn("  map.csv:1:1: the item that is out of reach\n  1 | a.b,", shown)

    def test_a_long_line_is_shown_in_part(self):
        self.map("long.item,Sch,Col,,," + "x" * 300 + " ,setB,getB,,,,\n")
        shown = self.on_terminal("map.csv", NO_COLOR="1")
        self.assertIn("long.item,Sch,Col,,,xxx", shown)
        self.assertTrue(all(len(line) < 160 for line in shown.splitlines()), shown)


class WithAService(CheckTest):
    SERVICE = os.path.join(os.environ["SERVICES"], "Picky.so")
    # What it registers besides is no matter here.
    QUIET = ("--ignore", "unused-setter", "--ignore", "unused-getter")

    def check(self, *arguments, service=SERVICE, **named):
        return self.sdm("check", "--service", service, *self.QUIET, *arguments, **named)

    def test_findings_stand_at_their_columns(self):
        self.map("bell.digit,Bell,Digit,,,loud,setDigit,getDigit,,,77,\n"
                 "bell.tune,Bell,Tune,,,a,setTune,getUpper,,,,\n"
                 "bell.first,Bell,First,,,1,setFirst,,,Pair,,\n"
                 "bell.second,Bell,Second,,,2,setSecond,,,Pair,,\n")
        run = self.check("map.csv")
        self.assertEqual((run.code, run.err), (1, ""))
        self.assertEqual(run.lines(), [
            "map.csv:1:25: error: its setter setDigit refuses the default loud: must be one digit [default-refused]",
            "map.csv:1:50: error: its setter setDigit refuses the alternative default 77: must be one digit "
            "[alternative-refused]",
            "map.csv:2:25: error: the service registers no setter setTune [unresolved-setter]",
            "map.csv:3:38: error: the validator refuses the defaults of its group Pair: they differ "
            "[group-default-refused]"])

    def test_they_stand_among_those_of_the_map_in_its_order(self):
        self.map("bell.digit,Bell,Digit,,,loud,setDigit,getDigit,,Single,,\n" + "short\n"
                 + "bell.upper,Bell,Upper,,,ding,setUpper,getUpper,,,,\n")
        rules = [line[line.rindex("[") + 1:-1] for line in self.check("map.csv").lines()]
        self.assertEqual(rules, ["default-refused", "group-of-one", "line-passed-over", "default-differs"])

    def test_what_is_about_the_service_stands_at_the_beginning(self):
        self.map("bell.digit,Bell,Digit,,,5,setDigit,getDigit,,,,\n")
        run = self.sdm("check", "--service", self.SERVICE, "map.csv")
        self.assertEqual(run.code, 0)
        self.assertIn("map.csv:1:1: warning: no item names the setter setUpper [unused-setter]", run.lines())
        self.assertEqual(self.sdm("check", "--strict", "--service", self.SERVICE, "map.csv").code, 1)

    def test_a_sound_service_gets_no_word(self):
        self.map("bell.digit,Bell,Digit,,,5,setDigit,getDigit,,,7,\n")
        run = self.check("map.csv")
        self.assertEqual((run.code, run.out, run.err), (0, "", ""))

    def test_the_sample_has_nothing_but_notes(self):
        run = self.sdm("check", "--strict", "--service", os.environ["SAMPLE"], os.environ["SAMPLE_MAP"])
        self.assertEqual((run.code, run.err), (0, ""))

    def test_of_two_items_with_one_root_id_the_last_is_tried(self):
        self.map("bell.digit,Bell,Other,,,5,setDigit,getDigit,,,,\nbell.digit,Bell,Digit,,,x,setDigit,getDigit,,,,\n")
        self.assertIn("map.csv:2:25: error: its setter setDigit refuses the default x", self.check("map.csv").out)

    def test_a_map_from_a_pipe_is_tried_as_well(self):
        run = self.check("-", script="bell.digit,Bell,Digit,,,loud,setDigit,getDigit,,,,\n")
        self.assertEqual(run.code, 1)
        self.assertIn(":1:25: error: its setter setDigit refuses", run.out)

    def test_what_fix_left_is_tried(self):
        self.map("bell.digit,Bell,Digit,,,5,setDigit ,getDigit,,,,\n")
        self.assertIn("[unresolved-setter]", self.check("map.csv").out)
        run = self.check("--fix", "map.csv")
        self.assertEqual((run.code, [line.split(":")[3] for line in run.lines()]), (0, [" mended"]))

    def test_secrets_are_masked(self):
        self.map("bell.pin,Bell,Upper,,,hunter2,setUpper,getUpper,,,,true\n")
        run = self.check("map.csv")
        self.assertIn("[default-differs]", run.out)
        self.assertNotIn("unter2", run.out.replace("HUNTER2", "hunter2"))

    def test_programs_get_them_too(self):
        self.map("bell.digit,Bell,Digit,,,loud,setDigit,getDigit,,,,\n")
        found = json.loads(self.check("--format", "json", "map.csv").out)["maps"][0]["findings"]
        self.assertEqual([(each["rule"], each["startColumn"], each["endColumn"]) for each in found],
                         [("default-refused", 25, 29)])
        told = json.loads(self.check("--format", "sarif", "map.csv").out)["runs"][0]
        result, = told["results"]
        self.assertEqual(told["tool"]["driver"]["rules"][result["ruleIndex"]]["id"], "default-refused")

    def test_a_service_that_crashes_is_a_finding(self):
        self.map("bell.a,Bell,A,,,1,setCrash,,,,crash,\n")
        run = self.check("map.csv")
        self.assertEqual((run.code, run.err), (1, ""))
        self.assertRegex(run.out, r"map.csv:1:1: error: the service .* when its setter setCrash got .* \[crash\]")

    def test_a_service_that_cannot_be_loaded(self):
        self.map(SOUND)
        run = self.check("map.csv", service="no-such.so")
        self.assertEqual((run.code, run.out), (3, ""))
        self.assertIn("no-such.so", run.err)

    def test_its_rules_are_explained(self):
        for rule in self.rules()[-19:]:
            run = self.sdm("check", "--explain", rule["id"])
            self.assertEqual((run.code, run.lines()[2]), (0, rule["summary"]))
        self.assertEqual(self.rules()[-1]["id"], "hang")


class ExitCodes(CheckTest):
    def test_errors_are_one(self):
        self.map(MIXED)
        self.assertEqual(self.sdm("check", "map.csv").code, 1)

    def test_warnings_are_one_with_strict_alone(self):
        self.map(WARNING)
        self.assertEqual(self.sdm("check", "map.csv").code, 0)
        self.assertEqual(self.sdm("check", "--strict", "map.csv").code, 1)

    def test_notes_never_count(self):
        self.map("c.d,Sch,Name,,,1,setD,getD,,,,\n")
        self.assertEqual(self.sdm("check", "--strict", "map.csv").code, 0)

    def test_ignored_rules_do_not_count(self):
        self.map(WARNING)
        self.assertEqual(self.sdm("check", "--strict", "--ignore", "group-of-one", "map.csv").code, 0)
        run = self.sdm("check", "--ignore", "group-of-one", "--ignore", "no-items", "map.csv")
        self.assertEqual((run.code, run.out), (0, ""))

    def test_wrong_usage_is_two(self):
        self.map(SOUND)
        for arguments in ([], ["--format", "xml", "map.csv"], ["--ignore", "nonsense", "map.csv"],
                          ["--explain", "carriage-retrun"], ["--nonsense", "map.csv"]):
            run = self.sdm("check", *arguments)
            self.assertEqual((run.code, run.out), (2, ""), arguments)
        self.assertIn("did you mean carriage-return?", self.sdm("check", "--explain", "carriage-retrun").err)

    def test_a_file_that_cannot_be_read_is_three_and_the_others_are_checked(self):
        self.map(MIXED)
        run = self.sdm("check", "nowhere.csv", "map.csv", ".")
        self.assertEqual(run.code, 3)
        self.assertEqual(len(run.lines()), 3)
        self.assertEqual(run.err, "sdm: the item map nowhere.csv cannot be read: No such file or directory\n"
                                  "sdm: the item map . cannot be read: Is a directory\n")

    def test_a_file_that_is_too_large_is_three(self):
        with open(self.map(SOUND), "a") as file:
            file.truncate(0x4000001)
        run = self.sdm("check", "map.csv")
        self.assertEqual((run.code, run.out), (3, ""))
        self.assertIn("more than 64 MiB", run.err)

    def test_lost_output_is_no_success(self):
        self.map(SOUND)
        with open("/dev/full", "w") as full:
            done = subprocess.run([SDM, "check", "--format", "json", "map.csv"], cwd=self.folder, stdout=full,
                                  stderr=subprocess.PIPE, timeout=60)
        self.assertEqual(done.returncode, 1)

    def test_standard_input_is_a_map_as_well(self):
        run = self.sdm("check", "-", script=MIXED)
        self.assertEqual(run.code, 1)
        self.assertTrue(run.lines()[0].startswith("-:1:31: error:"), run.out)


class Mending(CheckTest):
    def test_what_is_mended_and_what_is_left_are_told(self):
        self.map(MIXED)
        run = self.sdm("check", "--fix", "map.csv")
        self.assertEqual(self.content(), MIXED.replace("True", "true").replace("false", ""))
        self.assertEqual([line.split(" ")[1] for line in run.lines()], ["mended:", "mended:", "warning:"])
        self.assertEqual(run.code, 0)

    def test_a_map_without_need_is_left_alone(self):
        path = self.map(WARNING)
        before = os.stat(path)
        self.sdm("check", "--fix", "map.csv")
        after = os.stat(path)
        self.assertEqual((after.st_ino, after.st_mtime_ns), (before.st_ino, before.st_mtime_ns))

    def test_ignored_rules_mend_nothing(self):
        self.map(MIXED)
        self.sdm("check", "--fix", "--ignore", "encryption-flag", "--ignore", "encryption-denied", "map.csv")
        self.assertEqual(self.content(), MIXED)

    def test_permissions_and_links_stay(self):
        path = self.map(MIXED)
        os.chmod(path, 0o640)
        os.symlink("map.csv", os.path.join(self.folder, "link.csv"))
        self.assertEqual(self.sdm("check", "--fix", "link.csv").code, 0)
        self.assertTrue(os.path.islink(os.path.join(self.folder, "link.csv")))
        self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o640)
        self.assertIn("true", self.content())

    def test_a_file_that_cannot_be_replaced_stays_as_it_was(self):
        self.map(MIXED)
        # A file of one block at most, which the map beside it has no room in.
        big = MIXED + "".join("x%d.y,Sch,C%d,,,1,setX,getX,,,,\n" % (i, i) for i in range(200))
        self.map(big)
        done = subprocess.run(["bash", "-c", "ulimit -f 1; exec \"$0\" check --fix map.csv", SDM], cwd=self.folder,
                              capture_output=True, timeout=60)
        self.assertEqual(done.returncode, 3, done.stderr)
        self.assertIn(b"cannot be mended", done.stderr)
        self.assertEqual(self.content(), big)
        self.assertEqual(os.listdir(self.folder), ["map.csv"])

    def test_standard_input_cannot_be_mended(self):
        run = self.sdm("check", "--fix", "-", script=MIXED)
        self.assertEqual(run.code, 2)
        self.assertIn("--fix mends files, and - is none", run.err)


class Documents(CheckTest):
    def test_json(self):
        self.map(MIXED)
        run = self.sdm("check", "--format", "json", "map.csv", "nowhere.csv")
        told = json.loads(run.out)
        self.assertEqual((told["errors"], told["warnings"], told["notes"], run.code), (1, 1, 1, 3))
        self.assertEqual(told["maps"][1]["failure"],
                         "the item map nowhere.csv cannot be read: No such file or directory")
        self.assertEqual(told["maps"][0]["items"], 3)
        first = told["maps"][0]["findings"][0]
        self.assertIn("does not turn encryption on", first.pop("text"))
        self.assertEqual(first, {"rule": "encryption-flag", "severity": "error", "startLine": 1, "startColumn": 31,
                                 "endLine": 1, "endColumn": 35, "fixable": True, "related": []})

    def test_json_tells_what_was_mended(self):
        self.map(MIXED)
        told = json.loads(self.sdm("check", "--fix", "--format", "json", "map.csv").out)["maps"][0]
        self.assertEqual([mended["rule"] for mended in told["mended"]], ["encryption-flag", "encryption-denied"])
        self.assertEqual([finding["rule"] for finding in told["findings"]], ["blank-around-default"])

    def assert_region(self, region):
        for key in ("startLine", "startColumn", "endLine", "endColumn"):
            self.assertGreaterEqual(region[key], 1)
        self.assertLessEqual((region["startLine"], region["startColumn"]), (region["endLine"], region["endColumn"]))

    def assert_location(self, location, uri):
        self.assertEqual(location["physicalLocation"]["artifactLocation"]["uri"], uri)
        self.assert_region(location["physicalLocation"]["region"])

    def assert_result(self, result, rules, uri):
        self.assertEqual(rules[result["ruleIndex"]]["id"], result["ruleId"])
        self.assertIn(result["level"], ("error", "warning", "note"))
        self.assertTrue(result["message"]["text"])
        self.assertEqual(len(result["locations"]), 1)
        self.assert_location(result["locations"][0], uri)
        for related in result.get("relatedLocations", []):
            self.assert_location(related, uri)
            self.assertTrue(related["message"]["text"])
        for fix in result.get("fixes", []):
            for change in fix["artifactChanges"]:
                self.assertEqual(change["artifactLocation"]["uri"], uri)
                self.assertTrue(change["replacements"])
                for replacement in change["replacements"]:
                    self.assert_region(replacement["deletedRegion"])

    def test_sarif_has_what_it_requires(self):
        self.map(MIXED + SOUND.replace("Col", "Third"), "a map.csv")
        run = self.sdm("check", "--format", "sarif", "a map.csv")
        told = json.loads(run.out)
        self.assertEqual((told["version"], len(told["runs"]), run.code), ("2.1.0", 1, 1))
        self.assertRegex(told["$schema"], r"sarif-schema-2\.1\.0\.json$")
        driver = told["runs"][0]["tool"]["driver"]
        self.assertEqual(driver["name"], "sdm check")
        self.assertEqual([rule["id"] for rule in driver["rules"]], [rule["id"] for rule in self.rules()])
        for rule in driver["rules"]:
            self.assertTrue(rule["shortDescription"]["text"] and rule["fullDescription"]["text"])
            self.assertIn(rule["defaultConfiguration"]["level"], ("error", "warning", "note"))
        results = told["runs"][0]["results"]
        self.assertEqual([result["ruleId"] for result in results],
                         ["encryption-flag", "blank-around-default", "encryption-denied", "duplicate-root-id"])
        for result in results:
            self.assert_result(result, driver["rules"], "a%20map.csv")
        self.assertEqual(len(results[3]["relatedLocations"]), 1)
        self.assertEqual(results[0]["fixes"][0]["artifactChanges"][0]["replacements"][0]["insertedContent"]["text"],
                         "true")
        self.assertTrue(told["runs"][0]["invocations"][0]["executionSuccessful"])

    def test_sarif_tells_of_files_that_cannot_be_read(self):
        told = json.loads(self.sdm("check", "--format", "sarif", "nowhere.csv").out)
        invocation = told["runs"][0]["invocations"][0]
        self.assertFalse(invocation["executionSuccessful"])
        self.assertIn("nowhere.csv", invocation["toolExecutionNotifications"][0]["message"]["text"])
        self.assertEqual(told["runs"][0]["results"], [])

    def test_documents_stay_documents_whatever_is_in_the_map(self):
        self.map(b"a\xff\x01\"\\,S\xe4,C,,,\x1b ,s ,g,,,,true\r\n")
        for form in ("json", "sarif"):
            json.loads(self.sdm("check", "--format", form, "map.csv").out)


class Explaining(CheckTest):
    def test_each_rule_is_explained(self):
        rules = self.rules()
        self.assertGreater(len(rules), 50)
        for rule in rules:
            run = self.sdm("check", "--explain", rule["id"])
            self.assertEqual((run.code, run.err), (0, ""))
            self.assertTrue(run.out.startswith("%s (%s" % (rule["id"], rule["severity"])))
            self.assertEqual("--fix)" in run.lines()[0], rule["fixable"])
            self.assertIn(" ".join(rule["explanation"].split()), " ".join(run.out.split()))
            self.assertTrue(all(len(line) <= 100 for line in run.lines()))

    def test_without_a_rule_all_are_listed(self):
        listed = self.sdm("check", "--explain")
        self.assertEqual(listed.out, self.sdm("check", "--rules").out)
        self.assertEqual([line.split(" ")[0] for line in listed.lines()], [rule["id"] for rule in self.rules()])


class Maps(CheckTest):
    def test_the_maps_of_the_examples_are_sound(self):
        root = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "examples")
        for name in ("commsservice", "minimal"):
            run = self.sdm("check", "--strict", os.path.join(root, name, "CommsSettings.csv"))
            self.assertEqual((run.code, run.out), (0, ""), name)

    def test_a_hundred_thousand_lines_take_no_time(self):
        self.map("".join("sip.item%d,Schema%d,Column%d,Row,%d,%d,setItem%d,getItem%d,,,,\n" %
                         (i, i % 50, i, i % 7, i, i, i) for i in range(100000)))
        before = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        run = self.sdm("check", "map.csv")
        self.assertEqual((run.code, run.out), (0, ""))
        # Well below a second of it when built as it is installed; builds for tests are slower, and emulated ones more so.
        self.assertLess(resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - before, 30)


class ShiftedColumns(ProgramTest):
    def test_are_left_by_fix_which_says_so(self):
        path = os.path.join(self.folder, "map.csv")
        lines = "a.one,S,One,,,x,y,setA ,,,,,true\na.two,S,Two,,,\"x,y\",setB ,,,,,\na.three,S,Three,,,x,setC ,,,,,\n"
        with open(path, "w") as file:
            file.write(lines)
        run = self.sdm("check", "--fix", "--ignore", "too-many-columns", path)
        with open(path) as file:
            self.assertEqual(file.read(), lines.replace("setC ", "setC"))
        self.assertIn("--fix leaves it, since the columns of this line are shifted", run.out)


class Usage(ProgramTest):
    def test_is_refused_in_words_of_the_program(self):
        for arguments, answer in ((["check", "--rules", "x"], "--rules lists rules and takes no map, but x"),
                                  (["check", "--format", "2", "x"], "2 is none of github, gitlab, json, junit, markdown, sarif, text"),
                                  (["check", "--format", "xml", "x"], "xml is none of github, gitlab, json, junit, markdown, sarif, text"),
                                  (["check", "--format", "jsn", "x"], "; did you mean json?"),
                                  (["test", "--format", "1", "x"], "1 is none of json, junit, tap"),
                                  (["groups", "--set", "a=b"], "--set is for use with --permute alone"),
                                  (["run", "--force"], "--force is for use with --record alone"),
                                  (["run", "--log-level", "9"], "--log-level: 9 is no whole number from 0 to 6"),
                                  (["run", "--interfaces", "x"], "--interfaces: x is no whole number from 0 to 64"),
                                  (["run", "--slow-wait", "1s"], "--slow-wait: 1s is no whole number from 0 to 3600000"),
                                  (["groups", "--timeout", "0"], "--timeout: 0 is no whole number from 1 to 86400"),
                                  (["replay", "--timeout", "", "x"], '--timeout: "" is no whole number from 1 to 86400'),
                                  (["run", "--interfaces"], "--interfaces needs a value"),
                                  (["run", "--map", "a", "--map", "b"], "--map is given more than once"),
                                  (["run", "--quiet=no"], "--quiet takes no value"),
                                  (["explain", "--json=x", "a"], "--json takes no value"),
                                  (["new"], "NAME is missing"), (["new", "bell"], "--map is missing"),
                                  ([], "a subcommand is missing")):
            run = self.sdm(*arguments)
            self.assertEqual((run.code, run.out), (2, ""), arguments)
            self.assertIn("sdm: " + answer if answer[0] == "-" else answer, run.err)
            self.assertNotRegex(run.err, r"[{}]|->|FAILED|require|INT|onvert")


if __name__ == "__main__":
    unittest.main()
