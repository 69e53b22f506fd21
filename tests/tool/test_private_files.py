"""What the program keeps is its owner's alone, whatever the umask says and whatever was there before."""
import os
import stat
import unittest

from program import ProgramTest


class PrivateFiles(ProgramTest):
    def modes(self):
        """Files and folders that others may use."""
        found = {}
        for folder, folders, names in os.walk(self.folder):
            for name in folders + names:
                path = os.path.join(folder, name)
                found[os.path.relpath(path, self.folder)] = stat.S_IMODE(os.stat(path).st_mode)
        return {path: mode for path, mode in found.items() if mode & 0o077 or not mode & 0o600}

    def test_everything_in_a_device_folder_is_its_owners_alone(self):
        for mask in (0o000, 0o022, 0o777):
            self.device = os.path.join(self.folder, "%03o" % mask, "device")
            before = os.umask(mask)
            try:
                run = self.run_script("set sip.userName bob sip.password hunter2hunter2", "set time.zone Europe/Rome",
                                      options=("--record", os.path.join(self.folder, "%03o.jsonl" % mask)))
            finally:
                os.umask(before)
            self.assertEqual((run.code, self.modes()), (0, {}), run.out + run.err)

    def test_files_found_open_are_closed_and_told(self):
        self.run_script("set time.zone Europe/Rome")
        names = sorted(os.path.basename(path) for path in self.files() if not path.endswith(("lock", "device.log")))
        self.assertIn("CommsSettings.csv", names)
        for name in names:
            os.chmod(os.path.join(self.device, name), 0o644)
        run = self.run_script()
        self.assertEqual((run.code, self.modes()), (0, {}))
        told = [line for line in run.remarks() if "attention" in line and "open to others until now, closed to them: " in line]
        listed = ", ".join(line.partition("closed to them: ")[2].partition(";")[0] for line in told).split(", ")
        self.assertEqual(sorted(listed), names)
        self.assertNotIn("open to others", self.run_script().err)

    def test_a_folder_that_is_open_is_told_and_left(self):
        os.mkdir(self.device)
        os.chmod(self.device, 0o777)
        run = self.run_script()
        self.assertRegex(run.err, r"attention .*the folder is open to others, its mode is 0777, so they can put files")
        self.assertEqual(self.modes(), {"device": 0o777})


if __name__ == "__main__":
    unittest.main()
