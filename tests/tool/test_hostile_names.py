"""Names, values and texts from elsewhere that would steer a terminal: none of them reaches it as it is, wherever said."""
import os
import re
import subprocess
import unittest

from program import SDM, ProgramTest

# An escape sequence, a bell, DEL, a raw control of the upper half, the same as UTF-8, a mark of writing direction.
EVIL = b"e\x1b[31m\x07\x7f\x9b1m\xc2\x9b1m\xe2\x80\xaev"
SERVICES = os.environ["SERVICES"]


def service(name):
    return os.path.join(SERVICES, name + ".so")


class HostileNames(ProgramTest):
    def raw(self, *arguments, script=b""):
        done = subprocess.run([os.fsencode(SDM), *map(os.fsencode, arguments)], input=script, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, cwd=self.folder, timeout=60)
        return done.returncode, done.stdout + done.stderr

    def assert_safe(self, told, of):
        text = told.decode(errors="surrogateescape")
        found = re.search("[\x00-\x08\x0b-\x1f\x7f-\x9f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069\udc80-\udcff]", text)
        self.assertIsNone(found, (of, text[max(0, found.start() - 200):found.end()] if found else ""))

    def assert_names_it_safely(self, told, of):
        self.assert_safe(told, of)
        # What is escaped twice, or as JSON does it, is safe as well.
        self.assertRegex(told, rb"e(\\+x1b|\\+u001b)\[31m", (of, told))

    def path(self, name, content=None):
        path = os.path.join(os.fsencode(self.folder), name)
        if content is not None:
            with open(path, "wb") as file:
                file.write(content)
        return path

    def test_what_stands_on_the_command_line_is_escaped_where_it_is_refused(self):
        sample = os.environ["SAMPLE_MAP"]
        for arguments in ([EVIL], ["run", EVIL], ["run", b"--" + EVIL], ["run", b"--log-level=" + EVIL],
                          ["run", "--slow-wait", EVIL], ["run", "--service", EVIL], ["run", "--map", EVIL],
                          ["run", "--device", b"/dev/null/" + EVIL], ["run", "--record", b"/nowhere/" + EVIL],
                          ["new", "bell", "--map", EVIL], ["new", "bell", "--map", sample, "--into", b"/dev/null/" + EVIL],
                          ["check", EVIL], ["check", "--explain", EVIL], ["check", "--ignore", EVIL, sample],
                          ["check", "--format", EVIL, sample], ["check", "--rules", EVIL],
                          ["check", "--service", EVIL, sample], ["explain", EVIL, "--device", EVIL],
                          ["replay", EVIL], ["replay", EVIL, "--timeout", EVIL], ["test", EVIL],
                          ["test", ".", "--format", EVIL], ["groups", EVIL], ["groups", "--permute", "--set", EVIL],
                          ["groups", "--service", EVIL], ["groups", "--map", EVIL], ["groups", "--timeout", EVIL]):
            code, told = self.raw(*arguments)
            self.assertNotEqual(code, 0, arguments)
            self.assert_names_it_safely(told, arguments)

    def test_a_name_of_a_service_that_is_refused_is_safe(self):
        _, told = self.raw("new", EVIL, "--map", os.environ["SAMPLE_MAP"])
        self.assert_safe(told, "new")

    def test_what_is_typed_at_the_prompt_is_escaped(self):
        for line in (EVIL, b"get " + EVIL, b"get time.zone " + EVIL, b"show " + EVIL, b"explain " + EVIL, b"set " + EVIL + b" x",
                     b"changed " + EVIL + b" x", b"import " + EVIL, b"lock " + EVIL, b"unlock " + EVIL, b"fault " + EVIL,
                     b"fault das " + EVIL, b"fault das slow " + EVIL, b"help " + EVIL,
                     b"set snmp.location " + EVIL + b"\nget snmp.location\nget --json snmp.location\nshow snmp.location\n"
                     b"explain snmp.location\nlist snmp\nlist --json\nimport snmp.location\ntraffic 9\nrestart"):
            _, told = self.raw("run", "--show-log", "--log-level", "6", "--device", "evil", script=line + b"\n")
            self.assert_names_it_safely(told, line)
        for line in (b"traffic ", b"securitylog ", b"log ", b"list ", b"reset ", b"stats "):
            self.assert_safe(self.raw("run", "--show-log", script=line + EVIL + b"\n")[1], line)

    def map(self, name, schema):
        cells = (EVIL + b".level," + schema + b",C,,,7" + EVIL + b",set" + EVIL + b",get" + EVIL + b",,G" + EVIL + b",true,\n"
                 + EVIL + b".local,,,,,7" + EVIL + b",setLevel,getLevel,,,,\n")
        return self.path(name + EVIL + b".csv", cells)

    def files(self):
        """A map and a transcript whose names and texts all are hostile."""
        return self.map(b"", b"S"), self.path(EVIL + b".jsonl", b'{"' + EVIL + b'": 1}\n')

    def test_what_stands_in_a_map_is_escaped_by_all_who_read_it(self):
        table, _ = self.files()
        worse = self.map(b"worse", b"S" + EVIL)
        script = b"\n".join(command.replace(b"ID", EVIL + b".level").replace(b"LOCAL", EVIL + b".local") for command in (
            b"list", b"list --json", b"show ID", b"get ID", b"get LOCAL", b"set ID x", b"changed LOCAL " + EVIL, b"import ID",
            b"explain ID", b"explain --json LOCAL", b"lock ID", b"lock", b"reset", b"reload", b"restart", b"stats", b"traffic 9",
            b"securitylog", b"fault das refused", b"set ID y", b"restart", b"unlock ID", b"gett ID"))
        for arguments in (["check", table], ["check", "--json", table], ["check", "--format", "sarif", table],
                          ["check", "--fix", table], ["check", "--service", service("Lamp"), table],
                          ["check", worse], ["run", "--map", worse], ["groups", "--map", worse],
                          ["groups", "--map", table, "--service", service("Lamp")],
                          ["groups", "--permute", "--map", table, "--service", service("Lamp")],
                          ["groups", "--permute", "--json", "--map", table, "--service", service("Lamp")],
                          ["new", "bell", "--map", table, "--into", EVIL + b"d"],
                          ["run", "--map", table, "--service", service("Lamp"), "--show-log", "--log-level", "6"],
                          ["explain", "--device", "device", EVIL + b".local"], ["explain", "--json", EVIL + b".local"],
                          ["explain", EVIL + b".locl"]):
            _, told = self.raw(*arguments, script=script if arguments[0] == "run" else b"")
            self.assert_names_it_safely(told, arguments)

    def test_what_stands_in_a_transcript_and_its_name_is_escaped(self):
        table, transcript = self.files()
        self.raw("run", "--device", "fresh", "--map", table, "--service", service("Lamp"), "--record", b"good" + EVIL + b".jsonl",
                 script=b"get " + EVIL + b".local\nchanged " + EVIL + b".local " + EVIL + b"\n")
        good = self.path(b"good" + EVIL + b".jsonl")
        for arguments in (["replay", transcript], ["replay", good], ["replay", "--json", good], ["test", "."],
                          ["test", "--json", "."], ["test", "--format", "junit", "."], ["test", "--coverage", "."],
                          ["replay", good, "--map", table, "--service", service("DimLamp")],
                          ["test", "--coverage", ".", "--map", table, "--service", service("Lamp")]):
            _, told = self.raw(*arguments)
            self.assert_names_it_safely(told, arguments)

    def test_what_a_service_throws_and_says_is_escaped(self):
        table = self.path(b"Lamp.csv", b"lamp.level,Lamp,Level,,,7,setLevel,getLevel,,Light,,\n")
        script = b"set lamp.level 42\nget lamp.level\nshow lamp.level\nlist\nexplain lamp.level\ntraffic 9\nstats\nsecuritylog\n"
        for name in ("EvilLamp", "EvilName"):
            for arguments in (["run", "--show-log", "--log-level", "6", "--device", name, "--record", name + ".jsonl"],
                              ["check", table], ["groups", "--permute"], ["replay", name + ".jsonl"], ["test", "."]):
                _, told = self.raw(*arguments, "--service", service(name), *([] if table in arguments else ["--map", table]),
                                   script=script if arguments[0] == "run" else b"")
                self.assert_safe(told, (name, arguments))

    def test_what_was_put_into_the_files_of_a_device_is_escaped(self):
        self.raw("run", "--device", "device", script=b"set snmp.location x\n")
        record = b"2026-01-01T00:00:00Z\t" + EVIL + b"\t1\t1\t1\tok\t" + EVIL + b"\t" + EVIL + b"\t-\n"
        event = b'{"time":"' + EVIL + b'","run":"r' + EVIL + b'","item":"time.zone","origin":"' + EVIL + b'","outcome":"refused"}\n'
        unicode = ('{"time":"e\\u001b[31m","run":"\\u009b31m\\u202e","item":"time.zone","origin":"\\u007f\\u0007",'
                   '"outcome":"taken\\u009b","value":"\\u001b[31m\\u202e","reason":"\\u009b"}\n').encode()
        for name, content in (("security.log", record), ("history.log", event + unicode)):
            with open(os.path.join(self.device, name), "ab") as file:
                file.write(content)
        for arguments, script in ((["run"], b"securitylog\nexplain time.zone\nexplain --json time.zone\n"),
                                  (["explain", "time.zone"], b""), (["explain", "--json", "time.zone"], b"")):
            _, told = self.raw(*arguments, "--device", "device", script=script)
            self.assert_names_it_safely(told, arguments)


if __name__ == "__main__":
    unittest.main()
