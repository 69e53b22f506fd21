"""Comparing item maps: formats, accepted changes, git, exit codes, and files that cannot be compared."""
import json
import os
import re
import resource
import shlex
import shutil
import stat
import subprocess
import unittest
import xml.etree.ElementTree

import jsonschema

from program import SDM, ProgramTest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
OLD = "a.b,Sch,Col,,,1,setB,,,,,\nold.item,Sch,Old,,,x,setO,,,,,\na.pin,Sch,Pin,,,1234,setP,,,,,\n"
# An error, three warnings and a note.
NEW = "c.d,,,,,,setD,,,,,\na.b,Sch,Col,,,2,setB,,,,,true\na.pin,Sch,Pin,,,9876,setP,,,,,\n"
RULES = ["default-changed", "default-changed", "encryption-switched-on", "item-added", "item-removed"]
FORMATS = ("text", "json", "sarif", "markdown", "junit", "gitlab", "github")
# Bytes and words that mean something to terminals, pages, workflows and documents.
EVIL = b"a.b\x1b[2J,Sch,Col,,,`<b>@all ](x) %0A::error::\xff|,setB,,,,,\n"


class DiffTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.map("old.csv", OLD)
        self.map("new.csv", NEW)

    def map(self, name, content):
        with open(os.path.join(self.folder, name), "wb") as file:
            file.write(content if isinstance(content, bytes) else content.encode())

    def diff(self, *arguments):
        return self.sdm("diff", *arguments)

    def document(self, *arguments):
        return json.loads(self.diff("--json", *arguments).out)

    def git(self, *arguments):
        identity = {"GIT_AUTHOR_NAME": "a", "GIT_AUTHOR_EMAIL": "a@b", "GIT_COMMITTER_NAME": "a",
                    "GIT_COMMITTER_EMAIL": "a@b", "GIT_CONFIG_GLOBAL": "/dev/null", "GIT_CONFIG_NOSYSTEM": "1"}
        path = os.path.join(self.folder, ".git", "bin")
        if not os.path.exists(path):
            os.makedirs(path)
            os.symlink(SDM, os.path.join(path, "sdm"))
        path += ":" + os.environ["PATH"]
        return subprocess.run(arguments, capture_output=True, text=True, cwd=self.folder,
                              env={**os.environ, **identity, "PATH": path}, timeout=60)

    def commit(self, name, content):
        self.map(name, content)
        for command in (["git", "init", "-q"], ["git", "add", "-A"], ["git", "commit", "-q", "-m", "x"]):
            done = self.git(*command)
            self.assertEqual(done.returncode, 0, done.stderr)


class Telling(DiffTest):
    def test_text_has_the_lines_of_both_maps_and_what_follows(self):
        run = self.diff("old.csv", "new.csv")
        self.assertEqual((run.code, run.err), (1, ""))
        self.assertIn('new.csv:2:26: error: the encryption of "a.b" was off and is on (before: old.csv:1:26) '
                      "[encryption-switched-on]\n  stored value: ", run.out)
        self.assertRegex(run.out, r'(?m)^old.csv:2:1: warning: "old.item" is gone.*\[item-removed\]$')
        self.assertEqual(run.out.count("  stored value: "), run.out.count("  no stored value: "))

    def test_maps_that_mean_the_same_get_no_word(self):
        self.map("new.csv", "\n".join(reversed(OLD.splitlines())) + "\n\n")
        run = self.diff("old.csv", "new.csv")
        self.assertEqual((run.code, run.out, run.err), (0, "", ""))

    def test_json_is_as_its_schema_says(self):
        with open(os.path.join(ROOT, "docs", "diff.schema.json")) as file:
            schema = json.load(file)
        validator = jsonschema.Draft202012Validator(schema)
        validator.check_schema(schema)
        self.diff("--write-accept", "accepted.json", "old.csv", "new.csv")
        for arguments in (["old.csv", "new.csv"], ["new.csv", "old.csv"], ["old.csv", "nowhere.csv"],
                          ["--accept", "accepted.json", "old.csv", "new.csv"],
                          ["--accept", "accepted.json", "old.csv", "old.csv"]):
            validator.validate(self.document(*arguments))
        with self.assertRaises(jsonschema.ValidationError):
            validator.validate({**self.document("old.csv", "new.csv"), "more": 1})
        self.assertEqual(schema["$defs"]["rule"]["enum"],
                         [rule["id"] for rule in json.loads(self.diff("--rules", "--json").out)])

    def test_json(self):
        told = self.document("old.csv", "new.csv")
        self.assertEqual(sorted(change["rule"] for change in told["changes"]), RULES)
        self.assertEqual((told["errors"], told["warnings"], told["notes"]), (1, 3, 1))
        removed, = [change for change in told["changes"] if change["rule"] == "item-removed"]
        self.assertEqual((removed["old"], removed["new"]), ({"line": 2, "column": 1}, None))

    def test_sarif(self):
        run, = json.loads(self.diff("--format", "sarif", "old.csv", "new.csv").out)["runs"]
        self.assertEqual(sorted(result["ruleId"] for result in run["results"]), RULES)
        for result in run["results"]:
            self.assertEqual(run["tool"]["driver"]["rules"][result["ruleIndex"]]["id"], result["ruleId"])
            self.assertEqual(result["locations"][0]["physicalLocation"]["artifactLocation"]["uri"], "new.csv")

    def test_junit_fails_what_counts(self):
        for level, failures in (("error", 1), ("warning", 4), ("note", 5), ("never", 0)):
            run = self.diff("--format", "junit", "--fail-on", level, "old.csv", "new.csv")
            suite = xml.etree.ElementTree.fromstring(run.out).find("testsuite")
            self.assertEqual((suite.get("tests"), suite.get("failures")), ("5", str(failures)))
            self.assertEqual(len(suite.findall("testcase/failure")), failures)
            self.assertEqual(run.code, 1 if failures else 0)

    def test_junit_passes_a_map_without_changes(self):
        suite = xml.etree.ElementTree.fromstring(self.diff("--format", "junit", "old.csv", "old.csv").out)[0]
        self.assertEqual((suite.get("tests"), suite.get("failures"), len(suite[0])), ("1", "0", 0))

    def test_gitlab(self):
        told = json.loads(self.diff("--format", "gitlab", "old.csv", "new.csv").out)
        self.assertEqual(sorted(each["check_name"] for each in told), RULES)
        self.assertEqual(len({each["fingerprint"] for each in told}), len(told))
        self.assertEqual({each["severity"] for each in told}, {"critical", "minor", "info"})

    def test_github(self):
        lines = self.diff("--format", "github", "old.csv", "new.csv").lines()
        self.assertEqual(len(lines), 5)
        for line in lines:
            self.assertRegex(line, r"^::(error|warning|notice) file=new.csv,line=\d+,.*,title=[\w-]+::\S")

    def test_markdown(self):
        out = self.diff("--format", "markdown", "old.csv", "new.csv").out
        self.assertIn("1 error, 3 warnings, 1 note\n", out)
        self.assertIn('- **error** `the encryption of "a.b" was off and is on` [encryption-switched-on]\n', out)

    def test_failures_are_told_in_every_format(self):
        for kind in FORMATS:
            run = self.diff("--format", kind, "old.csv", "nowhere.csv")
            self.assertEqual(run.code, 3, kind)
            self.assertIn("nowhere.csv cannot be read", run.err)
            self.assertEqual("nowhere.csv" in run.out, kind != "text", kind)

    def test_nothing_hostile_comes_through(self):
        self.map("evil\x1b.csv", EVIL)
        for kind in FORMATS:
            run = self.diff("--format", kind, "old.csv", "evil\x1b.csv")
            self.assertNotIn("\x1b", run.out + run.err, kind)
            if kind in ("json", "sarif", "gitlab"):
                json.loads(run.out)
        for line in self.diff("--format", "github", "old.csv", "evil\x1b.csv").lines():
            self.assertRegex(line, "^::(error|warning|notice) file=")
        for line in self.diff("--format", "markdown", "old.csv", "evil\x1b.csv").lines():
            self.assertNotIn("<b>", re.sub(r"(`+)(?!`).*?(?<!`)\1(?!`)", "", line))
        xml.etree.ElementTree.fromstring(self.diff("--format", "junit", "old.csv", "evil\x1b.csv").out)

    def test_secrets_are_in_no_format(self):
        self.map("more.csv", NEW + "x.token,Sch,Tok,,,topsecret,setT,,,,alternatesecret,\n")
        for pair in (("old.csv", "more.csv"), ("more.csv", "old.csv")):
            for kind in FORMATS:
                run = self.diff("--format", kind, "--write-accept", "list.json", *pair)
                run2 = self.diff("--format", kind, *pair)
                with open(os.path.join(self.folder, "list.json")) as file:
                    told = run.out + run.err + run2.out + run2.err + file.read()
                for secret in ("1234", "9876", "topsecret", "alternatesecret"):
                    self.assertNotIn(secret, re.sub(r"[0-9a-f]{32}", "", told), kind)

    def test_each_rule_is_explained(self):
        for rule in json.loads(self.diff("--rules", "--json").out):
            run = self.diff("--explain", rule["id"])
            self.assertEqual(run.code, 0)
            self.assertTrue(run.out.startswith("%s (%s" % (rule["id"], rule["severity"])))
            self.assertIn(" ".join(rule["explanation"].split()), " ".join(run.out.split()))
        self.assertIn("did you mean default-changed?", self.diff("--explain", "default-change").err)


class ExitCodes(DiffTest):
    def test_the_level_decides(self):
        for level, code in (("error", 0), ("warning", 1), ("note", 1), ("never", 0)):
            self.map("warning.csv", OLD.replace("Col,,,1", "Col,,,2"))
            self.assertEqual(self.diff("--fail-on", level, "old.csv", "warning.csv").code, code)
        self.map("note.csv", OLD + "n.n,,,,,,setN,,,,,\n")
        self.assertEqual(self.diff("old.csv", "note.csv").code, 1)
        self.assertEqual(self.diff("--fail-on", "warning", "old.csv", "note.csv").code, 0)

    def test_what_cannot_be_compared_is_three(self):
        self.map("none.csv", "rootId;schema\n")
        self.map("utf16.csv", OLD.encode("utf-16"))
        os.mkdir(os.path.join(self.folder, "folder.csv"))
        os.mkfifo(os.path.join(self.folder, "pipe.csv"))
        for name in ("nowhere.csv", "none.csv", "utf16.csv", "folder.csv", "pipe.csv"):
            for pair in ((name, "new.csv"), ("old.csv", name)):
                run = self.diff("--fail-on", "never", *pair)
                self.assertEqual((run.code, run.out), (3, ""), pair)
                self.assertIn(name, run.err)

    def test_an_empty_map_can_be_compared(self):
        self.map("empty.csv", "")
        self.assertEqual(self.diff("empty.csv", "empty.csv").code, 0)
        self.assertEqual(self.diff("old.csv", "/dev/null").out.count("[item-removed]"), 3)

    def test_wrong_usage_is_two(self):
        for arguments in ([], ["old.csv"], ["a", "b", "c"], ["-", "-"], ["--against", "HEAD", "-"],
                          ["--against", "", "new.csv"], ["--against", "HEAD", "old.csv", "new.csv"],
                          ["--fail-on", "bug", "old.csv", "new.csv"], ["--format", "xml", "old.csv", "new.csv"],
                          ["--rules", "old.csv"], ["--explain", "item-added", "old.csv", "new.csv"]):
            run = self.diff(*arguments)
            self.assertEqual((run.code, run.out), (2, ""), arguments)
            self.assertIn("`sdm diff --help`", run.err)

    def test_standard_input_is_a_map_as_well(self):
        for pair in (("-", "new.csv"), ("old.csv", "-")):
            run = self.sdm("diff", *pair, script=OLD if pair[0] == "-" else NEW)
            self.assertEqual(run.out.count("["), 5, pair)

    def test_lost_output_is_no_success(self):
        with open("/dev/full", "w") as full:
            done = subprocess.run([SDM, "diff", "--fail-on", "never", "old.csv", "new.csv"], stdout=full,
                                  stderr=subprocess.PIPE, cwd=self.folder, timeout=60)
        self.assertEqual(done.returncode, 1)

    def test_check_takes_levels_as_well(self):
        self.map("noted.csv", "c.d,Sch,Name,,,1,setD,getD,,,,false\n")
        for level, code in (("error", 0), ("note", 1), ("never", 0)):
            self.assertEqual(self.sdm("check", "--fail-on", level, "noted.csv").code, code)
        self.assertEqual(self.sdm("check", "--strict", "--fail-on", "note", "noted.csv").code, 2)

    def test_check_speaks_the_same_formats(self):
        self.map("sick.csv", "a.b,Sch,Col,,, 1,setB,getB,,,,True\n")
        for kind in FORMATS:
            run = self.sdm("check", "--format", kind, "sick.csv")
            self.assertEqual(run.code, 1)
            self.assertIn("encryption-flag", run.out, kind)
            self.assertIn("blank-around-default", run.out, kind)


class Accepting(DiffTest):
    def accepted(self):
        with open(os.path.join(self.folder, "accepted.json")) as file:
            return json.load(file)

    def write(self, document):
        with open(os.path.join(self.folder, "accepted.json"), "w") as file:
            json.dump(document, file)

    def fill_in(self):
        document = self.accepted()
        for entry in document["accepted"]:
            entry["reason"] = "decided on " + entry["rule"]
        self.write(document)

    def test_what_is_listed_is_passed_over(self):
        self.assertEqual(self.diff("--write-accept", "accepted.json", "old.csv", "new.csv").code, 0)
        self.fill_in()
        run = self.diff("--accept", "accepted.json", "old.csv", "new.csv")
        self.assertEqual((run.code, run.out, run.err), (0, "", ""))
        told = self.document("--accept", "accepted.json", "old.csv", "new.csv")
        self.assertEqual((told["errors"], told["accepted"]), (0, 5))
        self.assertEqual({change["accepted"] for change in told["changes"]},
                         {"decided on " + rule for rule in RULES})

    def test_moved_lines_stay_accepted_and_other_values_do_not(self):
        self.diff("--write-accept", "accepted.json", "old.csv", "new.csv")
        self.fill_in()
        self.map("moved.csv", "\n\n" + "\n".join(reversed(NEW.splitlines())) + "\n")
        self.assertEqual(self.diff("--accept", "accepted.json", "old.csv", "moved.csv").code, 0)
        self.map("other.csv", NEW.replace("true", "").replace("Col,,,2", "Col,,,3"))
        run = self.diff("--accept", "accepted.json", "old.csv", "other.csv")
        self.assertEqual(run.code, 1)
        self.assertEqual(re.findall(r"\[([\w-]+)\]$", run.out, re.M), ["default-changed"])

    def test_a_second_change_like_an_accepted_one_is_told(self):
        twice = ",Sch,X,,,1,setB,,,,,\n"
        self.map("once.csv", OLD + twice)
        self.map("twice.csv", OLD + twice + twice)
        self.diff("--write-accept", "accepted.json", "old.csv", "once.csv")
        self.assertEqual(self.diff("--accept", "accepted.json", "old.csv", "twice.csv").out.count("[start-line-added]"), 1)
        self.diff("--write-accept", "accepted.json", "old.csv", "twice.csv")
        self.assertEqual(self.diff("--accept", "accepted.json", "old.csv", "twice.csv").code, 0)

    def test_stale_entries_are_told(self):
        self.diff("--write-accept", "accepted.json", "old.csv", "new.csv")
        run = self.diff("--accept", "accepted.json", "old.csv", "old.csv")
        self.assertEqual(run.code, 0)
        self.assertEqual(run.err.count("is not changed any more"), 5)
        self.assertEqual(len(self.document("--accept", "accepted.json", "old.csv", "old.csv")["stale"]), 5)

    def test_entries_without_a_reason_are_told(self):
        self.diff("--write-accept", "accepted.json", "old.csv", "new.csv")
        run = self.diff("--accept", "accepted.json", "old.csv", "new.csv")
        self.assertEqual((run.code, run.err), (0, "sdm: accepted.json accepts 5 changes without a reason\n"))

    def test_writing_again_keeps_reasons_and_drops_what_is_stale(self):
        self.diff("--write-accept", "accepted.json", "old.csv", "new.csv")
        self.fill_in()
        self.map("new.csv", NEW.replace("c.d,,,,,,setD,,,,,\n", "") + "e.f,,,,,,setE,,,,,\n")
        self.diff("--write-accept", "accepted.json", "old.csv", "new.csv")
        reasons = sorted(entry["reason"] for entry in self.accepted()["accepted"])
        self.assertEqual(reasons, [""] + ["decided on " + rule for rule in RULES if rule != "item-added"])

    def test_files_of_others_are_neither_believed_nor_overwritten(self):
        for content in ("", "[]", "{}", "{", '{"version": 2, "accepted": []}', '{"version": 1, "accepted": [1]}',
                        '{"version": 1, "accepted": {}}', '{"version": 1, "accepted": [{"rule": "x"}]}',
                        '{"version": 1, "accepted": [{"fingerprint": 1}]}', "[" * 100000):
            for option in ("--accept", "--write-accept"):
                self.map("accepted.json", content)
                run = self.diff(option, "accepted.json", "old.csv", "new.csv")
                self.assertEqual((run.code, run.out), (3, ""), content[:40])
                with open(os.path.join(self.folder, "accepted.json")) as file:
                    self.assertEqual(file.read(), content)

    def test_a_list_that_is_not_there_is_no_list(self):
        run = self.diff("--accept", "nowhere.json", "old.csv", "new.csv")
        self.assertEqual((run.code, run.out), (3, ""))
        self.assertEqual(self.diff("--write-accept", "no/such/folder.json", "old.csv", "new.csv").code, 3)

    def test_what_is_no_file_is_not_replaced(self):
        path = os.path.join(self.folder, "accepted.json")
        os.mkfifo(path)
        self.assertEqual(self.diff("--write-accept", "accepted.json", "old.csv", "new.csv").code, 3)
        self.assertTrue(stat.S_ISFIFO(os.stat(path).st_mode))

    def test_nothing_is_written_when_the_maps_cannot_be_compared(self):
        self.assertEqual(self.diff("--write-accept", "accepted.json", "old.csv", "nowhere.csv").code, 3)
        self.assertFalse(os.path.exists(os.path.join(self.folder, "accepted.json")))


class WithGit(DiffTest):
    def test_the_old_side_comes_from_a_commit(self):
        self.commit("map.csv", OLD)
        self.map("map.csv", NEW)
        told = self.document("--against", "HEAD", "map.csv")
        self.assertEqual(sorted(change["rule"] for change in told["changes"]), RULES)
        self.assertEqual(told["old"], "HEAD:map.csv")

    def test_names_are_handed_to_git_as_they_are(self):
        for name in ("map with blanks.csv", "$(touch x);'\".csv", "-n.csv", "a:b.csv", "deep/map.csv", "*.csv"):
            os.makedirs(os.path.join(self.folder, "deep"), exist_ok=True)
            self.commit(name, OLD)
            self.map(name, NEW)
            self.assertEqual(self.diff("--against", "HEAD", "--", name).out.count("[item-removed]"), 1, name)
        self.assertFalse(os.path.exists(os.path.join(self.folder, "x")))

    def test_what_git_does_not_have_is_three(self):
        self.commit("map.csv", OLD)
        self.map("fresh.csv", OLD)
        for revision, name in (("nowhere", "map.csv"), ("--all", "map.csv"), ("HEAD", "fresh.csv"),
                               ("HEAD:map.csv", "map.csv"), ("$(touch x)", "map.csv")):
            run = self.diff("--against=" + revision, name)
            self.assertEqual((run.code, run.out), (3, ""), revision)
            self.assertIn("cannot be read from the commit", run.err)
        self.assertIn("no name of a commit", self.diff("--against=--all", "map.csv").err)
        self.assertFalse(os.path.exists(os.path.join(self.folder, "x")))

    def test_without_git_is_three(self):
        self.commit("map.csv", OLD)
        path = os.path.join(self.folder, "bin")
        os.mkdir(path)
        for name in ("bash", "env", "qemu-arm"):  # an emulated program is started by a script
            if shutil.which(name):
                os.symlink(shutil.which(name), os.path.join(path, name))
        done = subprocess.run([SDM, "diff", "--against", "HEAD", "map.csv"], capture_output=True, text=True,
                              cwd=self.folder, env={**os.environ, "PATH": path}, timeout=60)
        self.assertEqual(done.returncode, 3)
        self.assertIn("the program git cannot be started", done.stderr)

    def test_a_content_that_is_too_large_is_three(self):
        self.commit("map.csv", OLD)
        path = os.path.join(self.folder, "large.csv")
        with open(path, "wb") as file:
            file.truncate(64 * 1024 * 1024 + 1)
        self.commit("small.csv", OLD)
        run = self.diff("--against", "HEAD", "large.csv")
        self.assertEqual(run.code, 3)
        self.assertIn("more than 64 MiB", run.err)

    def test_git_shows_changes_by_it(self):
        self.commit("map.csv", OLD)
        self.map(".gitattributes", "*.csv diff=itemmap\n")
        self.git("git", "config", "diff.itemmap.command", SDM + " diff")
        self.map("map.csv", NEW)
        shown = self.git("git", "diff")
        self.assertEqual((shown.returncode, shown.stderr), (0, ""))
        self.assertIn("b/map.csv:2:15: warning: the default", shown.stdout)
        self.git("git", "rm", "-q", "--cached", "map.csv")
        gone = self.git("git", "diff", "--cached", "map.csv")
        self.assertEqual((gone.returncode, gone.stdout.count("[item-removed]")), (0, 3), gone.stderr)

    def test_git_shows_a_file_with_another_name(self):
        self.commit("map.csv", OLD)
        self.map(".gitattributes", "*.csv diff=itemmap\n")
        self.git("git", "config", "diff.itemmap.command", SDM + " diff")
        self.git("git", "mv", "map.csv", "moved.csv")
        self.map("moved.csv", OLD.replace("Col,,,1", "Col,,,2"))
        self.git("git", "add", "moved.csv")
        shown = self.git("git", "diff", "--cached", "-M10", "HEAD", "--", "map.csv", "moved.csv")
        self.assertIn("b/moved.csv:1:15: warning: the default", shown.stdout, shown.stderr)
        self.assertIn("(before: a/map.csv:1:15)", shown.stdout)

    def hooks(self):
        with open(os.path.join(ROOT, ".pre-commit-hooks.yaml")) as file:
            text = re.sub(r">-\n {4}(.*)\n {4}(.*)\n", r"\1 \2\n", file.read())
        return {match[0]: shlex.split(match[1]) for match in re.findall(r"(?s)- id: (\S+)\n.*?entry: (.*?)\n", text)}

    def test_the_hook_stops_a_commit_that_loses_values(self):
        hook = self.hooks()["sdm-diff"]
        self.commit("CommsSettings.csv", OLD)
        self.assertEqual(self.git(*hook, "CommsSettings.csv").returncode, 0)
        self.map("CommsSettings.csv", OLD.replace("Col,,,1", "Col,,,2"))
        self.assertEqual(self.git(*hook, "CommsSettings.csv").returncode, 0)
        self.map("CommsSettings.csv", NEW)
        self.map("fresh.csv", NEW)
        stopped = self.git(*hook, "fresh.csv", "CommsSettings.csv")
        self.assertEqual(stopped.returncode, 1)
        self.assertIn("[encryption-switched-on]", stopped.stdout)

    def test_the_hook_of_check_stops_a_commit_of_errors(self):
        hook = self.hooks()["sdm-check"]
        self.map("sick.csv", "a.b,Sch,Col,,,1,setB,getB,,,,True\n")
        self.assertEqual(self.git(*hook, "sick.csv").returncode, 1)


class Maps(DiffTest):
    def test_a_hundred_thousand_lines_take_no_time(self):
        lines = ["item.%d,Sch%d,Col,Row,%d,%d,setI,getI,,,,\n" % (i, i % 50, i, i) for i in range(100000)]
        self.map("old.csv", "".join(lines))
        self.map("new.csv", "".join(reversed(lines)))
        before = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        run = self.diff("old.csv", "new.csv")
        self.assertEqual((run.code, run.out), (0, ""))
        self.assertLess(resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - before, 20)


if __name__ == "__main__":
    unittest.main()
