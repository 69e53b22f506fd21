"""Each page lists the commands, arguments, options and exit codes of the help text, in the same words and order."""
import json
import os
import re
import shutil
import subprocess
import unittest

PROGRAM = os.environ["SDM"]


def plain(text):
    """A line of the page without its macros and escapes."""
    text = re.sub(r"\bFl \\?-?", lambda match: "--" if match.group(0).endswith("-") else "-", text)
    text = re.sub(r"\bOo (.*?) Oc\b", r"[\1]", text)
    text = re.sub(r"\bOp Ar (.*)$", r"[\1]", text)
    text = re.sub(r"\b(Cm|Ar|It|Ev|Pa)\b ?", "", text)
    return text.replace(" ,", ",").strip()


def page_lists(name):
    """What the page's lists are of, by the title of the part: pairs of a term and the text behind it."""
    lists, title = {}, ""
    with open(os.path.join(os.environ["PAGES"], name)) as page:
        for line in page.read().splitlines():
            if line.startswith((".Sh ", ".Ss ")):
                title = line[4:].capitalize()
            elif line.startswith(".It "):
                lists.setdefault(title, []).append([plain(line[4:]), ""])
            elif line.startswith(".El"):
                title = ""
            elif title in lists:
                lists[title][-1][1] += " " + plain(line.lstrip("."))
    return lists


def help_lists(*arguments):
    """The same of the help text, which sets a term apart from its text by two blanks or a line end."""
    text = subprocess.run([PROGRAM, *arguments, "--help"], capture_output=True, text=True, check=True).stdout
    lists, title = {}, ""
    for line in re.sub(r"\n {20,}", "  ", text).splitlines():
        if re.match(r"^\S.*:$", line):
            title = line[:-1].capitalize()
        elif title and re.match(r"^  \S", line):
            lists.setdefault(title, []).append(re.split(r" {2,}", line.strip(), maxsplit=1))
        elif not line:
            title = ""
    return lists


def words(text):
    return re.findall(r"\w+", text.lower())


class Pages(unittest.TestCase):
    @unittest.skipUnless(shutil.which("groff"), "groff is not installed, which shows the pages")
    def test_each_page_is_headed_and_footed_as_one_of_this_product(self):
        for name in sorted(os.listdir(os.environ["PAGES"])):
            shown = subprocess.run(["groff", "-mdoc", "-Tascii", "-P-c", os.path.join(os.environ["PAGES"], name)],
                                   capture_output=True, text=True, check=True)
            lines = [line for line in shown.stdout.splitlines() if line]
            title = "%s(1)" % name[:-2].upper()
            self.assertEqual(re.split(" {2,}", lines[0]), [title, "User's Reference Manual", title])
            self.assertEqual(re.split(" {2,}", lines[-1])[0], "ServiceDataManager")
            self.assertEqual(shown.stderr, "", name)

    def assert_same(self, page, told, name=lambda term: term):
        self.assertEqual([term for term, _ in page], [name(term) for term, _ in told])
        for (term, written), (_, said) in zip(page, told):
            self.assertEqual(words(written)[:len(words(said))], words(said), term)

    def test_page_of_the_program(self):
        page, told = page_lists("sdm.1"), help_lists()
        self.assert_same(page["Commands"], told["Subcommands"])
        self.assertEqual([term for term, _ in page["Options"]],
                         [term.replace(",", ", ") for term, _ in told["Options"]])
        self.assert_same(page["Exit status"], told["Exit codes"])

    def test_page_of_run(self):
        page, told = page_lists("sdm-run.1"), help_lists("run")
        self.assert_same(page["Commands"], told["Commands"])
        self.assertEqual([re.sub(r" .*", "", term) if "," not in term else term for term, _ in page["Options"]],
                         [re.sub(r"[ :=].*", "", term).replace(",", ", ") for term, _ in told["Options"]])
        self.assert_same(page["Exit status"], told["Exit codes"])

    def test_page_of_check(self):
        page, told = page_lists("sdm-check.1"), help_lists("check")
        self.assertEqual([re.sub(r" .*", "", term) if "," not in term else term for term, _ in page["Options"]],
                         [re.sub(r"[ :=].*", "", term).replace(",", ", ") for term, _ in told["Options"]])
        for (term, written), (_, said) in zip(page["Options"], told["Options"]):
            self.assertEqual(words(written)[:len(words(said))], words(said), term)
        self.assertEqual([(term, words(written)) for term, written in page["Exit status"]],
                         [(term, words(said)) for term, said in told["Exit codes"]])

    def test_page_of_check_lists_every_rule(self):
        listed = subprocess.run([PROGRAM, "check", "--rules"], capture_output=True, text=True, check=True).stdout
        rules = [re.split(r" {2,}", line, maxsplit=2) for line in listed.splitlines()]
        page = page_lists("sdm-check.1")["Rules"]
        self.assertEqual([(term, words(written)) for term, written in page],
                         [(name, words(summary)) for name, _, summary in rules])

    def test_reference_of_the_item_map_tells_and_links_every_rule(self):
        listed = subprocess.run([PROGRAM, "check", "--rules", "--format", "json"], capture_output=True, check=True)
        with open(os.path.join(os.environ["PAGES"], "..", "itemmap.md")) as file:
            text, table = file.read().split("## The rules\n")
        rows = re.findall(r'<a id="([\w-]+)"></a>`([\w-]+)` \| (\w+) \| (\w*) \| (.*) \|\n', table)
        self.assertEqual(rows, [(rule["id"], rule["id"], rule["severity"], "yes" if rule["fixable"] else "",
                                 rule["summary"]) for rule in json.loads(listed.stdout)])
        self.assertEqual(set(re.findall(r"\[`([\w-]+)`\]\(#\1\)", text)), {row[0] for row in rows})

    def test_page_of_diff(self):
        self.assert_page_of("diff")

    def test_pages_of_diff_list_every_rule(self):
        listed = subprocess.run([PROGRAM, "diff", "--rules", "--json"], capture_output=True, check=True)
        rules = json.loads(listed.stdout)
        page = page_lists("sdm-diff.1")["Rules"]
        self.assertEqual([(term, words(written)) for term, written in page],
                         [(rule["id"], words(rule["summary"])) for rule in rules])
        with open(os.path.join(os.environ["PAGES"], "..", "diff.md")) as file:
            rows = re.findall(r'<a id="([\w-]+)"></a>`\1` \| (\w+) \| `?([\w-]*)`? \| (.*) \| (.*) \| (.*) \|\n',
                              file.read())
        self.assertEqual(rows, [(rule["id"], rule["severity"], "" if rule["mirror"] == rule["id"] else rule["mirror"],
                                 rule["summary"], rule["stored"], rule["notStored"]) for rule in rules])

    def test_page_of_new(self):
        self.assert_page_of("new")

    def test_page_of_explain(self):
        self.assert_page_of("explain")

    def test_page_of_groups(self):
        self.assert_page_of("groups")

    def assert_page_of(self, name):
        page, told = page_lists("sdm-%s.1" % name), help_lists(name)
        self.assertEqual([re.sub(r" .*", "", term) if "," not in term else term for term, _ in page["Options"]],
                         [re.sub(r"[ :=].*", "", term).replace(",", ", ") for term, _ in told["Options"]])
        self.assert_same(page["Exit status"], told["Exit codes"])

    def test_pages_of_replay_and_test(self):
        for name in ("replay", "test"):
            page, told = page_lists("sdm-%s.1" % name), help_lists(name)
            self.assertEqual([re.sub(r" .*", "", term) if "," not in term else term for term, _ in page["Options"]],
                             [re.sub(r"[ :=].*", "", term).replace(",", ", ") for term, _ in told["Options"]])
            for (term, written), (_, said) in zip(page["Options"], told["Options"]):
                self.assertEqual(words(written)[:len(words(said))], words(said), term)
            self.assert_same(page["Exit status"], told["Exit codes"])


if __name__ == "__main__":
    unittest.main()
