"""Marked secrets are set in every way there is; then all that was shown, logged or stored is searched for them."""
import base64
import csv
import json
import os
import re
import resource
import select
import shutil
import signal
import sqlite3
import subprocess
import time
import unittest

from marks import Mark, generator_of, random_digits, random_text
import terminals
from program import SDM, ProgramTest

SEED = int(os.environ.get("CANARY_SEED", time.time_ns() % 1000000000))
SAMPLE = os.environ["SAMPLE_MAP"]

# Beyond the sample's: encrypted items whose names give nothing away, in schemas with and without rows, and items that
# are no part of the database and look secret.
MORE_ITEMS = """door.opener,DoorSettings,Opener,,,,setAuthenticationKey,,,,,true
door.spare,DoorSettings,Spare,,,,,,,,,true
door.opener-1,DoorRows,Opener,Door,1,,setPrivacyKey,,,,,true
door.opener-2,DoorRows,Opener,Door,2,,setReadCommunity,,,,,true
vpn.passphrase,,,,,,,,,,,
"""

# Items that are the service's under other names: now they look secret, or the map says that they are.
OTHER_NAMES = {"phone.label,": "vpn.sharedSecret,", "key.target-1,": "vpn.accessToken-1,"}
MARKED = {"phone.assetNumber,,,,,,setAssetNumber,getAssetNumber,,,,":
          "vpn.badge,,,,,,setAssetNumber,getAssetNumber,,,,true"}

# Lines of the log that show values of items in the local store as they are, with the level from which they do.
EXCEPTIONS = {
    4: r'manageableDataChanged "%s" = "%s"',
    5: r'importFromOCMS got "%s" from ocms for tag \'%s\'',
}


class Canary(ProgramTest):
    def setUp(self):
        super().setUp()
        generator = generator_of(SEED)
        self.map = os.path.join(self.folder, "Map.csv")
        with open(SAMPLE) as sample, open(self.map, "w") as file:
            text = sample.read() + MORE_ITEMS
            for before, after in {**OTHER_NAMES, **MARKED}.items():
                self.assertIn("\n" + before, text)
                text = text.replace("\n" + before, "\n" + after)
            file.write(text)
        self.stored, self.local = [], []
        with open(self.map) as file:
            for line in csv.reader(file):
                secret = line[11] == "true" or re.search("(?i)secret|token|passphrase|password", line[0])
                if secret and line[1]:
                    self.stored.append(Mark(line[0], self.value_for(generator, line[6])))
                elif secret:
                    self.local.append(Mark(line[0], self.value_for(generator, line[6])))
        self.home = os.path.join(self.folder, "home")
        os.mkdir(self.home)

    @staticmethod
    def value_for(generator, setter):
        if "Pin" in setter:
            return random_digits(generator, 8)
        return random_digits(generator, 9) if setter == "setKeyTarget" else random_text(generator, 24)

    def sdm(self, *arguments, **how):
        run = super().sdm(*arguments, **how)
        self.seen = getattr(self, "seen", b"") + (run.out + run.err).encode()
        return run

    def commands(self):
        """Everything that can be done with a secret, done well and badly."""
        pair = "sip.userName anna sip.password %s" % next(m.value for m in self.stored if m.root_id == "sip.password")
        commands = ["set " + pair] + ["set %s %s" % (m.root_id, m.value) for m in self.stored]
        commands += ["set " + pair + " " + " ".join("%s %s" % (m.root_id, m.value) for m in self.stored
                                                  if m.root_id != "sip.password")]
        commands += ["changed %s %s" % (m.root_id, m.value) for m in self.local]
        for mark in self.stored + self.local:
            for verb in ("get", "show", "import", "list", "explain"):
                commands.append("%s %s" % (verb, mark.root_id))
            commands += ["set %s %s" % (mark.root_id, mark.value * 20), "set %s %s and more" % (mark.root_id, mark.value),
                         "get %s %s" % (mark.root_id, mark.value), "changed %s %s" % (mark.root_id, mark.value),
                         "set %s %s\x01" % (mark.root_id, mark.value), 'set %s "%s' % (mark.root_id, mark.value),
                         'set %s %s sip.userName ""' % (mark.root_id, mark.value)]
        return commands + ["set " + pair, "list", "reset", "reload", "restart", "list", "history", "traffic 1000",
                           "securitylog 1000", "help"]

    def run_all(self, level):
        return self.run_script(*self.commands(), options=("--map", self.map, "--log-level", str(level)))

    def assert_nowhere(self, marks, content, place):
        for mark in marks:
            form = mark.found_in(content)
            self.assertIsNone(form, "%s is in %s as %r (CANARY_SEED=%d): %r" % (
                mark.root_id, place, form, SEED, form and content[max(0, content.find(form) - 120):][:240]))

    def all_files(self):
        found = dict(self.files())
        for folder, _, names in os.walk(self.home):
            for name in names:
                with open(os.path.join(folder, name), "rb") as file:
                    found[os.path.join(folder, name)] = file.read()
        return found

    def assert_files_clean(self):
        """Of all files only the local store may hold a secret as it is, and only one of its own items'."""
        names = []
        for path, content in self.all_files().items():
            names.append(os.path.basename(path))
            self.assert_nowhere(self.stored, content, path)
            if os.path.basename(path).split("-")[0] != "ocms.db" and "device" != os.path.basename(path).split(".")[0]:
                self.assert_nowhere(self.local, content, path)
        return names

    def without_exceptions(self, text):
        """The text without the lines that may show values of the local store; these are counted by level."""
        counts = {level: 0 for level in EXCEPTIONS}
        kept = []
        for line in text.splitlines():
            level = next((level for level, form in EXCEPTIONS.items() for mark in self.local
                          if re.search(r" %d ServiceDataManager \S+ %s$" % (level, self.exception(level, form, mark)),
                                       line)), None)
            if level is None:
                kept.append(line)
            else:
                counts[level] += 1
        return "\n".join(kept).encode(), counts

    @staticmethod
    def exception(level, form, mark):
        values = (re.escape(mark.root_id), "(%s)+" % mark.value)
        return form % (values if level == 4 else values[::-1])

    def log_files(self):
        return "".join(content.decode(errors="replace") for path, content in sorted(self.files().items())
                       if os.path.basename(path).startswith("device."))

    def test_nothing_shows_logs_or_stores_a_secret_at_any_level(self):
        for level in range(7):
            run = self.run_all(level)
            self.assertIn("sip.password = *****", run.out)
            again = self.run_script("list", "restart", "traffic 1000",
                                    options=("--map", self.map, "--log-level", str(level)))
            self.assert_nowhere(self.stored + self.local, (run.out + again.out).encode(), "the output at level %d" % level)
            for place, text in (("standard error", run.err + again.err), ("the log", self.log_files())):
                cleaned, counts = self.without_exceptions(text)
                self.assert_nowhere(self.stored + self.local, cleaned, "%s at level %d" % (place, level))
                for since, count in counts.items():
                    self.assertEqual(count > 0, level >= since, "lines of level %d in %s at level %d" % (since, place, level))
            self.assertIn("das.db", self.assert_files_clean())
            for name in os.listdir(os.path.join(self.device, "log")):
                os.remove(os.path.join(self.device, "log", name))

    def test_what_fails_does_not_tell_a_secret(self):
        self.run_all(0)
        self.seen = b""
        connection = sqlite3.connect(os.path.join(self.device, "das.db"))
        connection.execute("ALTER TABLE SnmpSettings RENAME TO Elsewhere")
        connection.execute("CREATE TRIGGER refuses BEFORE UPDATE ON SipBaseSettings BEGIN SELECT RAISE(ABORT, 'no'); END")
        connection.execute("UPDATE SipLines SET Pin = ?", (base64.b64encode(b"x" * 60).decode(),))
        connection.commit()
        connection.close()
        os.remove(os.path.join(self.device, "das.key"))
        run = self.run_all(6)
        self.assertIn("the database did not take the change", run.err)
        self.assertIn("undecryptable", run.err)
        cleaned, _ = self.without_exceptions(self.seen.decode())
        self.assert_nowhere(self.stored + self.local, cleaned, "what was told of failures")
        self.assert_files_clean()

    def record(self, commands, level):
        """What a transcript of these commands holds."""
        path = os.path.join(self.folder, "transcript.jsonl")
        shutil.rmtree(self.device, ignore_errors=True)
        self.run_script(*commands, options=("--map", self.map, "--log-level", str(level), "--record", path))
        with open(path, "rb") as file:
            return file.read()

    def assert_recorded(self, transcript, kinds):
        """It is whole, and has something of everything in which a secret could be."""
        events = [json.loads(line) for line in transcript.splitlines()]
        self.assertEqual(next(iter(events[-1].items())), ("result", "run"))
        self.assertLessEqual(kinds, {next(iter(event)) for event in events})
        self.assertGreater(transcript.count(b"secret#"), 300)

    def test_a_transcript_holds_no_secret_at_any_level(self):
        for level in (0, 2, 4, 6):
            transcript = self.record(self.commands(), level)
            self.assert_recorded(transcript, {"command", "op", "result", "request", "reply", "setter", "validator",
                                              "store", "securitylog"} | ({"log"} if level > 0 else set()))
            self.assert_nowhere(self.stored + self.local, transcript, "the transcript at level %d" % level)
            self.assert_files_clean()

    def test_a_transcript_of_failures_holds_no_secret(self):
        for fault in ("das malformed", "das refused", "das absent", "encryption fails", "store refuses", "disk full"):
            transcript = self.record(["fault " + fault, *self.commands()], 6)
            self.assert_recorded(transcript, {"command", "setter", "log"})
            self.assert_nowhere(self.stored + self.local, transcript, "the transcript with " + fault)

    def test_an_abort_leaves_no_secret_in_the_files(self):
        resource.setrlimit(resource.RLIMIT_CORE, (0, resource.getrlimit(resource.RLIMIT_CORE)[1]))
        self.run_script("quit", options=("--map", self.map))
        process = subprocess.Popen([SDM, "run", "--device", self.device, "--map", self.map, "--log-level", "6"],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, cwd=self.folder)
        process.stdin.write("\n".join(self.commands() + ["get time.zone", ""]).encode())
        process.stdin.flush()
        said = b""
        while b"time.zone = UTC\n" not in said[-200:]:
            piece = os.read(process.stdout.fileno(), 65536)
            self.assertTrue(piece, "it ended by itself")
            said += piece
        process.send_signal(signal.SIGABRT)
        process.communicate(timeout=20)
        self.assertEqual(process.returncode, -signal.SIGABRT)
        self.assertIn("das.db-wal", self.assert_files_clean())
        cleaned, _ = self.without_exceptions(said.decode())
        self.assert_nowhere(self.stored + self.local, cleaned, "what was said before the abort")

    def test_a_terminal_shows_and_keeps_no_secret_that_is_asked_for(self):
        pid, terminal = terminals.fork()
        if pid == 0:
            os.environ.update({"TERM": "xterm", "HOME": self.home})
            os.chdir(self.home)
            os.execv(SDM, ["sdm", "run", "--device", self.device, "--map", self.map])
        screen, place = b"", 0

        def until(text):
            nonlocal screen, place
            end = time.monotonic() + 20
            while text not in screen[place:]:
                ready, _, _ = select.select([terminal], [], [], max(0, end - time.monotonic()))
                self.assertTrue(ready, "waited for %r, saw %r" % (text, screen[place:]))
                screen += os.read(terminal, 65536)
            place = screen.index(text, place) + len(text)

        until(b"sdm> ")
        for mark in self.stored:
            first = "set sip.userName anna %s\r" if mark.root_id == "sip.password" else "set %s\r"
            os.write(terminal, (first % mark.root_id).encode())
            until(b"not shown")
            os.write(terminal, mark.value.encode() + b"\r")
            until(b"sdm> ")
        for command in (b"list\r", b"traffic 100\r", b"securitylog 100\r", b"\x1b[A\x1b[A\x1b[A\x1b[A\r"):
            os.write(terminal, command)
            until(b"sdm> ")
        os.write(terminal, b"quit\r")
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]), 0)
        os.close(terminal)
        for root_id in (b"sip.password", b"door.opener", b"line.pin-2"):
            self.assertIn(root_id + b" = *****", screen)
        self.assert_nowhere(self.stored, screen, "the terminal")
        self.assert_files_clean()


class Search(unittest.TestCase):
    """The search itself finds what it is to find."""

    def test_finds_every_form_of_a_mark(self):
        value = random_text(generator_of(SEED), 24)
        mark = Mark("x", value)
        for content in (value.encode(), value[5:13].encode(), value.encode().hex().encode(), value.encode("utf-16-le"),
                        base64.b64encode(value.encode()), base64.b64encode(b"a" + value.encode()),
                        base64.b64encode(b"ab" + value.encode()), value[::-1].encode(),
                        "".join("&#%d;" % ord(c) for c in value).encode()):
            self.assertIsNotNone(mark.found_in(b"before " + content + b" behind"), content)
        self.assertIsNone(mark.found_in(value[:7].encode() + b" " + value[7:14].encode()))


if __name__ == "__main__":
    unittest.main()
