"""Which service and which map a device folder belongs to."""
import json
import os
import shutil
import unittest

from program import ProgramTest

SERVICES = os.environ["SERVICES"]
LAMP_MAP = "lamp.level,Lamp,Level,,,7,setLevel,getLevel,,,,\n"
VOLUME_MAP = "phone.volume,Audio,Volume,,,5,setVolume,,,,,\n"


def service(name):
    return os.path.join(SERVICES, name + ".so")


class Ownership(ProgramTest):
    def map(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w") as file:
            file.write(text)
        return path

    def lamp(self, text=LAMP_MAP, name="Lamp", options=(), commands=()):
        return self.run_script(*commands, options=("--service", service(name), "--map", self.map("Lamp.csv", text),
                                                   *options))

    def content(self, name):
        with open(os.path.join(self.device, name)) as file:
            return file.read()

    def test_the_folder_remembers_its_service_and_map(self):
        self.lamp()
        self.assertEqual(json.loads(self.content("service.json")),
                         {"service": "Lamp", "file": service("Lamp"), "map": os.path.join(self.folder, "Lamp.csv")})

    def test_another_service_is_refused_with_a_way_out_and_changes_nothing(self):
        self.run_script("set display.brightness 44")
        before = self.files()
        run = self.lamp()
        self.assertEqual((run.code, run.out), (3, ""))
        for part in ("belongs to the service CommsService", "not to Lamp", "--device", "--service", "--take-over"):
            self.assertIn(part, run.err)
        self.assertEqual(self.files(), before)
        self.assertEqual(self.get("display.brightness"), "44")

    def test_another_service_takes_the_folder_over_when_it_is_told_to(self):
        self.run_script()
        before = self.content("CommsSettings.csv")
        self.assertEqual(self.lamp(options=("--take-over",)).code, 0)
        self.assertEqual(self.content("CommsSettings.csv"), LAMP_MAP)
        self.assertEqual(self.content("CommsSettings.csv.previous"), before)
        self.assertEqual(self.lamp().code, 0)
        self.assertEqual(self.run_script().code, 3)

    def test_a_moved_service_of_the_same_name_is_the_same(self):
        self.lamp()
        moved = shutil.copy(service("Lamp"), self.folder)
        run = self.run_script("get lamp.level", options=("--service", moved, "--map", self.map("Lamp.csv", LAMP_MAP)))
        self.assertEqual((run.code, run.lines()[-1]), (0, "lamp.level = 7"))

    def test_another_map_is_told_and_the_one_before_is_kept(self):
        self.assertNotIn("\n  map ", self.lamp().err)
        self.assertNotIn("\n  map ", self.lamp().err)
        changed = LAMP_MAP.replace(",7,", ",8,")
        run = self.lamp(changed)
        kept = os.path.join(self.device, "CommsSettings.csv.previous")
        self.assertEqual(run.after("  map"), "%s took the place of the device's earlier one, which is kept as %s"
                         % (os.path.join(self.folder, "Lamp.csv"), kept))
        self.assertEqual(self.content("CommsSettings.csv.previous"), LAMP_MAP)
        self.assertEqual(self.content("CommsSettings.csv"), changed)

    def test_a_start_that_fails_leaves_the_map_as_it_was(self):
        run = self.run_script(options=("--service", service("ThrowingSetter"), "--map", self.map("a.csv", LAMP_MAP)))
        self.assertEqual(run.code, 0)
        run = self.run_script(options=("--service", service("ThrowingSetter"), "--map", self.map("b.csv", VOLUME_MAP)))
        self.assertEqual(run.code, 3)
        self.assertIn("failed at its start: the amplifier is off", run.err)
        self.assertEqual(self.content("CommsSettings.csv"), LAMP_MAP)
        self.assertEqual(sorted(name for name in os.listdir(self.device) if name.startswith(("Comms", "starting"))),
                         ["CommsSettings.csv"])

    def test_a_start_that_crashes_leaves_the_map_as_it_was(self):
        self.lamp(name="LeavingLamp")
        before = self.content("CommsSettings.csv")
        self.lamp(LAMP_MAP.replace(",7,", ",42,"), name="LeavingLamp")
        self.assertEqual(self.content("CommsSettings.csv"), before)
        self.assertEqual(self.lamp(name="LeavingLamp").code, 0)
        self.assertFalse(os.path.exists(os.path.join(self.device, "starting")))

    def test_a_damaged_note_of_the_owner_is_told_and_written_anew(self):
        self.lamp()
        for damage in ("[" * 60000, "{}", "", '{"service": 7}'):
            with open(os.path.join(self.device, "service.json"), "w") as file:
                file.write(damage)
            run = self.lamp()
            self.assertEqual(run.code, 0)
            self.assertIn("service.json, which tells whose folder this is, cannot be read", run.after("  attention"))
            self.assertNotIn("attention", self.lamp().err)


if __name__ == "__main__":
    unittest.main()
