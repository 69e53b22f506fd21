"""Services of others: loaded from their shared objects, with all that can be wrong with those."""
import os
import shutil
import unittest

from program import ProgramTest

SERVICES = os.environ["SERVICES"]
MAP = ("bell.volume,Bell,Volume,,,5,setVolume,getVolume,,,7,\n"
       "bell.loudness,Bell,Loudness,,,4,setLoudness,getVolume,,,,\n"
       "bell.code,Bell,Code,,,12,setCode,,,Code,,true\n"
       "bell.codeLength,Bell,CodeLength,,,2,setCodeLength,,,Code,,\n")


def service(name):
    return os.path.join(SERVICES, name + ".so")


class Services(ProgramTest):
    def setUp(self):
        super().setUp()
        self.map = os.path.join(self.folder, "Bell.csv")
        with open(self.map, "w") as file:
            file.write(MAP)

    def run_service(self, path, *commands, options=None):
        options = ("--map", self.map) if options is None else options
        return self.run_script(*commands, options=("--service", path, *options))

    def assert_not_loaded(self, path, *parts):
        run = self.run_service(path)
        self.assertEqual((run.code, run.out, len(run.err.splitlines())), (3, "", 1), run.err)
        for part in ("the service %s cannot be loaded: " % os.path.abspath(path), *parts):
            self.assertIn(part, run.err)
        self.assertFalse(os.path.exists(self.device))

    def test_a_service_of_ones_own_runs(self):
        run = self.run_service(service("Doorbell"), "get bell.volume", "set bell.volume 3", "set bell.volume loud",
                               "get bell.volume")
        self.assertEqual(run.remarks()[0], "Doorbell is up on " + self.device)
        self.assertIn("refused: bell.volume: must be one digit", run.remarks())
        self.assertEqual([line for line in run.lines() if line.startswith("bell.volume = ")],
                         ["bell.volume = 4", "bell.volume = 3", "bell.volume = 3"])
        self.assertEqual(run.code, 1)

    def test_what_it_took_is_there_at_its_next_start(self):
        self.run_service(service("Doorbell"), "set bell.loudness 9")
        self.assertEqual(self.run_service(service("Doorbell"), "get bell.volume").after("bell.volume = "), "9")

    def test_its_validator_judges_its_groups(self):
        run = self.run_service(service("Doorbell"), "set bell.code 123", "set bell.code 123 bell.codeLength 3",
                               "set bell.codeLength 5")
        self.assertEqual(run.err.count("refused: group Code: the code has another length"), 2)
        self.assertEqual(run.lines().count("bell.codeLength = 3"), 1)
        self.assertEqual(run.code, 1)

    def test_nothing_pending_outlives_its_request(self):
        # With its last member refused, the manager neither judges nor clears the group.
        run = self.run_service(service("Doorbell"), "set bell.code 123 bell.codeLength many", "set bell.codeLength 2")
        self.assertIn("bell.codeLength = 2", run.lines())
        self.assertNotIn("refused: group", run.err)

    def test_its_wishes_for_the_database_are_met(self):
        self.run_service(service("Doorbell"))
        with open(os.path.join(self.device, "das.db"), "rb") as file:
            self.assertIn(b'Rung', file.read())

    def test_callbacks_that_it_lacks_are_counted(self):
        with open(self.map, "a") as file:
            file.write("bell.tune,Bell,Tune,,,a,setTune,getTune,,,,\n")
        self.assertIn("1 item names callbacks that the service does not have",
                      self.run_service(service("Doorbell")).err)

    def test_without_a_map_it_says_so(self):
        run = self.run_service(service("Doorbell"), options=())
        self.assertEqual(run.code, 3)
        self.assertIn("brings no item map; name one with --map", run.err)

    def test_the_sample_is_loaded_in_the_same_way(self):
        sample = os.environ["SAMPLE"]
        run = self.run_service(sample, "get time.zone", options=())
        self.assertEqual((run.after("time.zone = "), run.code), ("UTC", 0))
        shutil.copy(sample, self.folder)
        run = self.run_service(os.path.join(self.folder, "commsservice.so"), options=())
        self.assertEqual(run.code, 3)
        self.assertIn("the item map of the service", run.err)
        self.assertIn(os.path.join(self.folder, "CommsSettings.csv"), run.err)

    def test_a_missing_file_is_named(self):
        self.assert_not_loaded(os.path.join(self.folder, "nowhere.so"), "No such file or directory")

    def test_a_name_without_folder_is_one_of_the_current_folder(self):
        shutil.copy(service("Doorbell"), self.folder)
        self.assertEqual(self.run_service("Doorbell.so", "get bell.volume").code, 0)

    def test_a_folder_is_no_service(self):
        self.assert_not_loaded(self.folder, "it is a folder")

    def test_a_text_is_no_service(self):
        self.assert_not_loaded(self.map, "it is not a shared object")

    def test_a_part_of_a_shared_object_is_no_service(self):
        for size in (0, 10, 2000):
            path = os.path.join(self.folder, "part%d.so" % size)
            shutil.copy(service("Doorbell"), path)
            os.truncate(path, size)
            self.assert_not_loaded(path)

    def patched(self, offset, content):
        path = os.path.join(self.folder, "patched.so")
        shutil.copy(service("Doorbell"), path)
        with open(path, "r+b") as file:
            file.seek(offset)
            file.write(content)
        return path

    def test_another_architecture_is_named(self):
        self.assert_not_loaded(self.patched(18, b"\xb7\x00"), "it is built for 64-bit ARM, this program for ")

    def test_an_object_that_cannot_be_shared_is_no_service(self):
        self.assert_not_loaded(self.patched(16, b"\x01\x00"), "it is not a shared object")

    def test_a_missing_entry_point_is_told(self):
        self.assert_not_loaded(service("Empty"), "no entry point sdmService", "SDM_SERVICE in loadable/Service.h")

    def test_another_version_is_told(self):
        self.assert_not_loaded(service("OtherVersion"), "built for version 2", "this program for version 1")

    def test_an_unresolved_symbol_is_named(self):
        self.assert_not_loaded(service("Unresolved"), "undefined symbol", "ringTheBell")

    def test_an_entry_point_or_factory_without_a_service_is_told(self):
        self.assert_not_loaded(service("NullEntry"), "its entry point sdmService answers null")
        self.assert_not_loaded(service("NullService"), "its factory answers null")

    def test_what_a_service_throws_is_told(self):
        self.assert_not_loaded(service("ThrowingService"), "its factory failed: no bell is wired")
        self.assert_not_loaded(service("ThrowingName"), "its name failed: the name plate is missing")

    def test_a_service_needs_a_name(self):
        self.assert_not_loaded(service("Nameless"), "its name is empty")

    def test_a_service_that_fails_at_its_start_is_named(self):
        for name, reason in (("ThrowingCallbacks", "the table of callbacks is empty"),
                             ("ThrowingSetter", "the amplifier is off")):
            run = self.run_service(service(name))
            self.assertEqual(run.code, 3)
            self.assertIn("the service %s failed at its start: %s\n" % (service(name), reason), run.err)


if __name__ == "__main__":
    unittest.main()
