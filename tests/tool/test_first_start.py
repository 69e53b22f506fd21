"""A new device: what the start tells, and what can be read."""
import os
import unittest

from program import ProgramTest


class FirstStart(ProgramTest):
    def test_tells_what_it_did(self):
        run = self.run_script()
        self.assertEqual((run.code, run.out), (0, ""))
        self.assertIn("CommsService is up on " + self.device, run.remarks()[0])
        self.assertEqual(run.after("  items"), "101, 14 of them on the device only")
        self.assertEqual(run.after("  schemas"), "10")
        self.assertEqual(run.after("  imported"), "0 from the database, 0 from the local store")
        self.assertEqual(run.after("  refused"), "0")
        self.assertEqual(run.after("  groups"), "0 failed, 3 judged")
        self.assertRegex(run.after("  time"), r"^\d+\.\d ms$")

    def test_warns_when_line_ends_turn_encryption_off(self):
        self.run_script()
        with open(os.path.join(self.device, "CommsSettings.csv")) as file:
            lines = file.read().splitlines()
        path = os.path.join(self.folder, "changed.csv")
        def start(text):
            with open(path, "w", newline="") as file:
                file.write(text)
            return self.run_script(options=("--map", path, "--quiet")).err
        self.assertEqual(start("\n".join(lines) + "\n"), "")
        warning = start("\n".join(lines) + "\r\n".join([""] + lines[-3:]) + "\n")
        self.assertEqual(len(warning.splitlines()), 1, warning)
        for part in (path, "line %d (3 such lines)" % len(lines), "CR LF", "unencrypted"):
            self.assertIn(part, warning)
        self.assertIn("column 12 is neither empty nor true; ", start("\n".join(lines) + "\nx.y,S,C,,,,,,,,,yes\n"))

    def test_counts_and_lists_what_a_map_names_twice_or_nobody_answers(self):
        path = os.path.join(self.folder, "odd.csv")
        with open(path, "w") as file:
            file.write("a.twice,Odd,A,,,1,,,,,,\na.twice,Odd,B,,,2,,,,,,\na.nothing,Odd,,,,x,,,,,,\n")
        run = self.run_script("list", options=("--map", path))
        self.assertEqual(run.after("  items"), "2, 0 of them on the device only")
        self.assertEqual([run.row("a.nothing")[i] for i in (1, 3)], ["?", "nobody"])

    def test_lists_every_item_with_its_default(self):
        run = self.run_script("list")
        self.assertEqual(run.row("ip.address"),
                         ["ip.address", "192.168.1.20", "192.168.1.20", "default", "IpAddressing"])
        self.assertEqual(run.row("display.banner"), ["display.banner", "Ready", "Ready", "default", "U"])
        self.assertEqual(run.row("sip.password"),
                         ["sip.password", "*****", "*****", "default", "SipCredentials", "E"])
        self.assertEqual(run.row("key.function-3"), ["key.function-3", "none", "none", "built", "in", "L"])

    def test_lists_what_begins_with_a_prefix_in_straight_columns(self):
        run = self.run_script("list line.label")
        table = [line for line in run.lines() if line.startswith("line.") or line.startswith("ITEM")]
        self.assertEqual(len(table), 4)
        self.assertEqual(len({line.index(word) for line, word in zip(table, ["VALUE", '""', '""', '""'])}), 1)

    def test_takes_alternative_defaults_with_two_to_four_interfaces(self):
        for count, value, origin in (("1", "192.168.1.20", "default"), ("2", "10.20.0.20", "alternative"),
                                     ("4", "10.20.0.20", "alternative"), ("5", "192.168.1.20", "default")):
            run = self.run_script("list ip.address", options=("--interfaces", count))
            self.assertEqual(run.row("ip.address")[1], value, count)
            self.assertEqual(run.row("ip.address")[3], origin, count)
            self.assertEqual(run.after("  groups"), "0 failed, 3 judged")

    def test_shows_everything_about_one_item(self):
        run = self.run_script("show ip.address")
        for name, value in (("value", "192.168.1.20"), ("from", "default"), ("alternative", "10.20.0.20"),
                            ("kept in", "the database, schema NetworkSettings, column IpAddress"),
                            ("group", "IpAddressing: ip.address, ip.netmask, ip.gateway"),
                            ("setter", "setIpAddress"), ("getter", "getIpAddress")):
            self.assertEqual(run.after("  " + name + " "), value)

    def test_gets_several_values(self):
        run = self.run_script("get time.zone line.label-2 phone.kioskMode")
        self.assertEqual(run.lines()[-3:], ["time.zone = UTC", 'line.label-2 = ""', "phone.kioskMode = false"])

    def test_suggests_for_unknown_words(self):
        for command, hint in (("lsit", "did you mean list?"), ("get tmie.zone", "did you mean time.zone?"),
                              ("show protocol", "did you mean transport.protocol?"),
                              ("set ip.adress 10.0.0.1", "did you mean ip.address"), ("help sho", "did you mean show?")):
            run = self.run_script(command)
            self.assertEqual(run.code, 1, command)
            self.assertIn(hint, run.err)

    def test_takes_only_whole_command_names(self):
        run = self.run_script("li", "li\\st", "LIST")
        self.assertEqual(run.err.count("there is no command"), 3)

    def test_refuses_wrong_arguments_with_the_usage(self):
        for command in ("get", "show", "show a b", "set", "set ip.address", "changed phone.room", "import", "quit now",
                        "traffic few", "log 7", "log -1", 'get "open'):
            run = self.run_script(command)
            self.assertEqual((run.code, run.err.count("refused:")), (1, 1), command)

    def test_passes_over_comments_and_empty_lines_and_stops_at_quit(self):
        run = self.run_script("# nonsense", "", "   ", "get time.zone\r", "quit", "nonsense")
        self.assertEqual(run.code, 0)
        self.assertEqual(run.lines()[-1], "time.zone = UTC")

    def test_carries_out_a_last_line_without_end(self):
        run = self.sdm("run", "--device", self.device, script="get time.zone")
        self.assertEqual(run.lines()[-1], "time.zone = UTC")


if __name__ == "__main__":
    unittest.main()
