"""What `stats` tells of callbacks, the database and the lock."""
import re
import unittest

from program import ProgramTest

HEADING = ["CALLBACK", "CALLS", "TOTAL", "LONGEST", "<0.1", "<1", "<10", "<100", "<1000", "more"]


class Stats(ProgramTest):
    def stats(self, *commands, options=()):
        run = self.run_script(*commands, "stats", options=options)
        lines = run.lines()
        first = next(i for i, line in enumerate(lines) if line.startswith("CALLBACK"))
        self.assertEqual(lines[first].split(), HEADING)
        rows = {}
        for line in lines[first + 1:]:
            found = re.match(r"(\S+(?: \S+)?) +(\d+) +(\d+\.\d\d) +(\d+\.\d\d) +(.*)$", line)
            if found:
                rows[found.group(1)] = (int(found.group(2)), [0 if cell == "." else int(cell)
                                                              for cell in found.group(5).split()])
        return run, rows

    def test_counts_callbacks_and_requests_by_name(self):
        _, before = self.stats()
        _, after = self.stats("set display.brightness 60")
        self.assertEqual(after["setBrightness"][0], before["setBrightness"][0] + 1)
        self.assertGreater(after["DataAccessServiceIfc"][0], before["DataAccessServiceIfc"][0])
        self.assertIn("validator IpAddressing", after)

    def test_each_call_stands_below_one_time(self):
        _, rows = self.stats("list")
        for name, (calls, histogram) in rows.items():
            self.assertEqual(sum(histogram), calls, name)
            self.assertEqual(len(histogram), 6, name)

    def test_the_slowest_stand_first(self):
        run, rows = self.stats("fault das slow 30", "set display.brightness 60")
        totals = [float(re.split(r"  +", line)[2]) for line in run.lines() if line.split("  ")[0] in rows]
        self.assertEqual(len(totals), len(rows))
        self.assertEqual(totals, sorted(totals, reverse=True))
        self.assertEqual(next(iter(rows)), "DataAccessServiceIfc")
        self.assertNotEqual(list(rows), sorted(rows))

    def test_tells_of_the_lock(self):
        run, _ = self.stats(options=("--slow-wait", "250"))
        self.assertIn("the lock is free\n", run.out)
        self.assertRegex(run.out, r"longest wait for it: \d+ ms(, behind .*)?; 0 waits of more than 250 ms\n")

    def test_shows_no_values(self):
        run, _ = self.stats("set sip.userName bob sip.password hunter2hunter2")
        self.assertNotIn("hunter2", run.out)


if __name__ == "__main__":
    unittest.main()
