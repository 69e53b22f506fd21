"""Starting again: the service within the program, the program on its folder, and after a kill."""
import os
import subprocess
import time
import unittest

from program import SDM, ProgramTest


class Restarts(ProgramTest):
    def test_the_program_finds_its_values_again(self):
        self.run_script("set time.zone Europe/Rome line.label-3 Door")
        run = self.run_script("list")
        self.assertEqual(run.after("  imported"), "2 from the database, 0 from the local store")
        self.assertEqual(run.row("time.zone")[1:4], ["Europe/Rome", "UTC", "database"])
        self.assertEqual(run.row("line.label-3")[1], "Door")

    def test_restart_publishes_what_is_not_at_its_default(self):
        self.run_script("set time.zone Europe/Rome")
        run = self.run_script("restart", "restart", "get time.zone")
        self.assertEqual(run.code, 0)
        published = [line for line in run.remarks() if line.startswith("  published")]
        self.assertEqual(published, ["  published 1 new value in the local store",
                                     "  published 0 new values in the local store"])
        self.assertEqual(run.lines()[-1], "time.zone = Europe/Rome")

    def test_a_stored_value_that_no_longer_fits_is_told_at_the_start(self):
        self.run_script("set vlan.priority 6 ip.address 192.168.1.7")
        with open(os.path.join(self.device, "CommsSettings.csv")) as file:
            lines = file.read().splitlines()
        # The same column now belongs to a setting of another kind.
        changed = [line.replace("setVlanPriority,getVlanPriority", "setDhcp,getDhcp") for line in lines]
        path = os.path.join(self.folder, "changed.csv")
        with open(path, "w") as file:
            file.write("\n".join(changed) + "\n")
        run = self.run_script("list vlan.priority", options=("--map", path))
        self.assertEqual(run.after("  refused"), "2")
        self.assertIn("must be true or false", run.err)
        self.assertEqual(run.row("vlan.priority")[-1], "!")

    def test_a_stored_group_that_no_longer_agrees_is_told_at_the_start(self):
        self.run_script("set ip.address 10.1.1.5 ip.netmask 255.255.0.0 ip.gateway 10.1.0.1")
        with open(os.path.join(self.device, "CommsSettings.csv")) as file:
            text = file.read().replace("IpNetmask,,,255.255.255.0", "IpOtherMask,,,255.255.255.0")
        path = os.path.join(self.folder, "changed.csv")
        with open(path, "w") as file:
            file.write(text)
        run = self.run_script("get ip.address", options=("--map", path))
        self.assertEqual(run.after("  groups"), "1 failed, 4 judged")
        self.assertIn("refused group IpAddressing: the gateway 10.1.0.1 is not in the network", run.err)
        self.assertEqual(run.lines()[-1], "ip.address = 192.168.1.20")

    def test_what_was_answered_is_there_after_a_kill(self):
        for number in range(5):
            program = subprocess.Popen([SDM, "run", "--device", self.device], stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
            label = "Desk%d" % number
            program.stdin.write(("set line.label-1 %s\nchanged phone.room %s\n" % (label, label)).encode())
            program.stdin.flush()
            for line in program.stdout:
                if line.startswith(b"phone.room ="):
                    break
            program.kill()
            program.wait()
            program.stdin.close()
            program.stdout.close()
            run = self.run_script("get line.label-1 phone.room")
            self.assertEqual(run.lines()[-2:], ["line.label-1 = " + label, "phone.room = " + label])

    def test_a_kill_in_the_middle_leaves_no_half_request(self):
        for delay in (0.0, 0.002, 0.004, 0.008, 0.015, 0.03, 0.06):
            program = subprocess.Popen([SDM, "run", "--device", self.device], stdin=subprocess.PIPE,
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            commands = "".join("set transport.rtpFirstPort %d transport.rtpLastPort %d\n" % (n, n + 1)
                               for n in range(2000, 2400))
            program.stdin.write(commands.encode())
            program.stdin.flush()
            time.sleep(delay)
            program.kill()
            program.wait()
            program.stdin.close()
            run = self.run_script("get transport.rtpFirstPort transport.rtpLastPort")
            self.assertEqual(run.after("  groups").split()[0], "0")
            first = int(run.after("transport.rtpFirstPort = "))
            last = int(run.after("transport.rtpLastPort = "))
            self.assertTrue(last == first + 1 or (first, last) == (16384, 16482), (first, last))


if __name__ == "__main__":
    unittest.main()
