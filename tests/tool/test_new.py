"""Skeletons of services: what is written where, and what is refused."""
import os
import unittest

from program import ProgramTest

MAP = ("bell.volume,Bell,Volume,,,5,setVolume,getVolume,,,,\n"
       "bell.code,Bell,Code,,,,setCode,,,,,true\n")


class New(ProgramTest):
    def setUp(self):
        super().setUp()
        self.map = self.write("Bell.csv", MAP)

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", newline="") as file:
            file.write(text)
        return path

    def read(self, *path):
        with open(os.path.join(self.folder, *path)) as file:
            return file.read()

    def new(self, *arguments, map_file=None):
        return self.sdm("new", *arguments, "--map", map_file or self.map)

    def assert_refused(self, run, *parts, code=1):
        self.assertEqual((run.code, run.out), (code, ""), run.err)
        for part in parts:
            self.assertIn(part, run.err)
        self.assertEqual([name for name in os.listdir(self.folder) if "." not in name], [])

    def test_a_project_is_written_to_a_folder_of_its_name(self):
        run = self.new("door-bell")
        self.assertEqual((run.code, run.err), (0, ""))
        self.assertEqual(run.lines()[0], "made %s: 23 files for 2 items" % os.path.join(self.folder, "door-bell"))
        self.assertEqual(self.read("door-bell", "door-bell.csv"), MAP)
        settings = self.read("door-bell", "src", "Settings.h")
        self.assertIn("namespace doorbell\n", settings)
        self.assertIn("  int volume = 5;\n  Secret code;\n", settings)
        self.assertIn("class DoorBellService : public loadable::Service", self.read("door-bell", "src", "Service.cpp"))
        self.assertEqual(sorted(os.listdir(self.folder)), ["Bell.csv", "door-bell"])

    def test_nothing_is_left_to_be_filled_in(self):
        self.new("door-bell")
        for folder, _, names in os.walk(os.path.join(self.folder, "door-bell")):
            for name in names:
                self.assertNotRegex(self.read(folder, name), r"@\w+@", name)

    def test_the_folder_can_be_named(self):
        self.assertEqual(self.new("bell", "--into", "deep/er/service/").code, 0)
        self.assertIn("setVolume", self.read("deep", "er", "service", "src", "Callbacks.cpp"))

    def test_an_empty_folder_is_taken(self):
        os.mkdir(os.path.join(self.folder, "bell"))
        self.assertEqual(self.new("bell").code, 0)
        self.assertEqual(os.stat(os.path.join(self.folder, "bell")).st_mode & 0o777, 0o755)

    def test_nothing_is_overwritten(self):
        os.mkdir(os.path.join(self.folder, "bell.d"))
        kept = self.write("bell.d/kept", "mine")
        self.assert_refused(self.new("bell", "--into", "bell.d"), "bell.d is there and not empty", "--into")
        self.assertEqual(os.listdir(os.path.dirname(kept)), ["kept"])
        for taken in (self.map, self.link("to.nowhere", "nowhere.d"), self.link("to.folder", "empty.d")):
            self.assert_refused(self.new("bell", "--into", taken), "is there and not empty")
        self.assertEqual(self.read("Bell.csv"), MAP)

    def link(self, name, target):
        path = os.path.join(self.folder, name)
        if target == "empty.d":
            os.mkdir(os.path.join(self.folder, target))
        os.symlink(target, path)
        return path

    def test_what_the_check_calls_an_error_is_refused(self):
        for line, rule in (("bell.a,Bell,A,,,1,set,get,,,\n", "too-few-columns"),
                           ("bell.a;Bell;A;;;1;set;get;;;;\n", "too-few-columns"),
                           ("bell.a,Bell,A,,,1,,,,,,true\r\n", "carriage-return"),
                           ("bell.a,Bell,A,,,%s,,,,,,\n" % ("x" * 500), "line-too-long"),
                           ("bell.a,Bell,A,,,\0,,,,,,\n", "nul-byte")):
            path = self.write("unfit.csv", MAP + line)
            self.assertEqual(self.sdm("check", path).code, 1)
            self.assert_refused(self.new("bell", map_file=path), path + ":3:", ": error: ", "[%s]" % rule)

    def test_errors_can_be_passed_over(self):
        path = self.write("unfit.csv", MAP + "too few columns\n")
        run = self.new("bell", "--despite-errors", map_file=path)
        self.assertEqual((run.code, run.lines()[0][-11:]), (0, "for 2 items"))
        self.assertIn("[too-few-columns]", run.err)

    def test_of_many_errors_ten_are_told(self):
        path = self.write("unfit.csv", MAP + "too few columns\n" * 25)
        run = self.new("bell", map_file=path)
        self.assert_refused(run, "unfit.csv:12:", "and 15 more errors")
        self.assertNotIn("unfit.csv:13:", run.err)

    def test_what_the_check_lets_pass_is_taken(self):
        for number, text in enumerate((MAP, "# a bell\n\n" + MAP, "# a bell that can be heard\n" + MAP,
                                       MAP.split("\n")[0] + "\r\n")):
            path = self.write("fit.csv", text)
            self.assertEqual(self.sdm("check", path).code, 0, text)
            self.assertEqual(self.new("bell", "--into", "bell%d" % number, map_file=path).code, 0, text)

    def test_warnings_are_counted(self):
        run = self.new("bell", map_file=self.write("fit.csv", "# a bell that can be heard\n" + MAP))
        self.assertRegex(run.err, "^sdm: `sdm check` has 1 warning for .*/fit.csv\n$")

    def test_a_map_that_cannot_be_read_is_named(self):
        self.assert_refused(self.new("bell", map_file="nowhere.csv"), "nowhere.csv", "No such file", code=3)

    def test_a_map_without_items_is_refused(self):
        self.assert_refused(self.new("bell", map_file=self.write("empty.csv", "")), "empty.csv", "holds no item")

    def test_a_folder_that_cannot_be_made_is_named(self):
        run = self.new("bell", "--into", os.path.join(self.map, "bell"))
        self.assert_refused(run, os.path.join(self.map, "bell"), code=3)

    def test_names_that_are_none_are_wrong_usage(self):
        for name in ("2bell", "be ll", "bell/er", "..", "", "glocke\u00e4", "b" * 65):
            self.assert_refused(self.new(name), "has a letter first", code=2)
        self.assert_refused(self.sdm("new", "bell"), "--map", "sdm new --help", code=2)
        self.assert_refused(self.sdm("new", "--map", self.map), "NAME", code=2)

    def test_names_that_mean_something_to_the_language_are_taken(self):
        for name in ("new", "std", "test", "class"):
            self.assertEqual(self.new(name).code, 0)
            self.assertIn("namespace %s\n" % (name if name == "test" else name + "service"),
                          self.read(name, "src", "Settings.h"))


if __name__ == "__main__":
    unittest.main()
