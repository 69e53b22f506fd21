"""Callbacks that repeat secrets, throw what is no exception class, end the program or hang."""
import json
import os
import signal
import subprocess
import time
import unittest

from program import SDM, ProgramTest, Run

LOOSE = os.path.join(os.environ["SERVICES"], "Loose.so")
MAP = """bell.mode,Bell,Mode,,,,setMode,,,,,
bell.pin,Bell,Pin,,,,setPin,,,,,true
bell.key,Bell,Key,,,,setKey,,,,,true
bell.name,Bell,Name,,,,setName,,,,,
bell.wordPassword,Bell,Word,,,,setWord,,,Words,,true
"""
# A sanitizer's own handler would end the program with an exit code.
os.environ["ASAN_OPTIONS"] = "handle_segv=0:handle_abort=0"


class Callbacks(ProgramTest):
    def setUp(self):
        super().setUp()
        self.map = os.path.join(self.folder, "map.csv")
        with open(self.map, "w") as file:
            file.write(MAP)
        self.options = ("--service", LOOSE, "--map", self.map)

    def run_loose(self, *commands, options=()):
        return self.run_script(*commands, options=self.options + tuple(options))

    def everything_of(self, run):
        """All that a run wrote, in its folder included."""
        written = b"".join(content for _, content in self.files().items())
        return run.out + run.err + written.decode(errors="replace")

    def test_a_secret_in_a_reason_is_told_nowhere(self):
        secrets = ("hunter2", "12", "a<b&'c\"d>", "back\\slash", "Zürich\u009bx")
        for secret in secrets:
            quoted = '"' + secret.replace("\\", "\\\\").replace('"', '\\"') + '"'
            run = self.run_loose("log 6", "set bell.pin " + quoted, "explain bell.pin", "explain --json bell.pin",
                                 options=("--record", os.path.join(self.folder, "t%d.jsonl" % len(secret))))
            self.assertIn("refused: bell.pin: not ***** nor *****", run.err)
            self.assertIn("not ***** nor *****", run.out)
            written = self.everything_of(run)
            for form in (" " + secret + " ", json.dumps(secret)[1:-1] + " nor", secret.replace("<", "&lt;") + " nor"):
                self.assertNotIn("not" + form if form[0] == " " else form, written)
            subprocess.run(["rm", "-r", self.device], check=True)

    def test_transcripts_and_histories_hold_no_secret_of_a_reason(self):
        transcript = os.path.join(self.folder, "t.jsonl")
        run = self.run_loose("log 6", "set bell.pin hunter2", "set bell.key opensesame42 bell.name opensesame42",
                             'set bell.key "throw this"', "set bell.wordPassword swordfish99",
                             options=("--record", transcript))
        with open(transcript) as file:
            written = self.everything_of(run) + file.read()
        for secret in ("hunter2", "opensesame42 would", "as opensesame42", "throw this", "swordfish99"):
            self.assertNotIn(secret, written)
        self.assertIn("refused: bell.name: ***** would be as *****", run.err)
        self.assertIn("refused: group no word is *****", run.err)
        self.assertIn("cannot keep *****", run.err)

    def test_groups_and_check_tell_no_secret_of_a_reason(self):
        run = self.sdm("groups", "--permute", *self.options, "--set", "bell.wordPassword=swordfish99", "Words")
        self.assertNotIn("swordfish99", run.out + run.err)
        with open(self.map, "w") as file:
            file.write(MAP.replace("bell.pin,Bell,Pin,,,,", "bell.pin,Bell,Pin,,,hunter2,"))
        run = self.sdm("check", "--service", LOOSE, self.map)
        self.assertNotIn("not hunter2", run.out + run.err)
        self.assertIn("not *****", run.out)

    def test_what_is_no_exception_class_fails_a_command_that_names_callback_and_item(self):
        run = self.run_loose("set bell.mode number", "set bell.name x", "get bell.mode")
        self.assertIn("setter setMode of item bell.mode threw int, which is no std::exception", run.err)
        self.assertEqual((run.code, run.after("bell.name = ")), (1, "x"))

    def test_what_is_no_exception_class_at_a_start_is_told(self):
        with open(self.map, "w") as file:
            file.write(MAP.replace("bell.mode,Bell,Mode,,,,", "bell.mode,Bell,Mode,,,number,"))
        run = self.run_loose("get bell.mode")
        self.assertIn("setter setMode of item bell.mode threw int", run.err)
        self.assertEqual(run.code, 3)

    def test_a_signal_in_a_callback_is_told_with_its_name_and_ends_the_program(self):
        for value, number in (("abort", signal.SIGABRT), ("fault", signal.SIGSEGV)):
            run = self.run_loose("set bell.mode " + value)
            self.assertIn("sdm: setter setMode of item bell.mode ended the program with signal " + number.name,
                          run.err)
            self.assertEqual(run.code, -number)

    def test_an_exit_in_a_callback_is_told_with_its_name(self):
        run = self.run_loose("set bell.mode exit")
        self.assertIn("sdm: setter setMode of item bell.mode ended the program by a call of exit", run.err)
        self.assertEqual(run.code, 9)

    def start(self, script):
        program = subprocess.Popen([SDM, "run", "--device", self.device, *self.options], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.addCleanup(lambda: (program.kill(), program.wait(), program.stdout.close(), program.stderr.close()))
        program.stdin.write(script.encode())
        program.stdin.flush()
        return program

    def wait_for(self, stream, text):
        for line in stream:
            if text in line.decode():
                return line.decode()
        raise AssertionError("no line with " + text)

    def test_an_interrupt_says_where_a_command_hangs_and_a_second_one_ends_the_program(self):
        program = self.start("set bell.name before\nset bell.mode hang\n")
        self.wait_for(program.stdout, "bell.name = before")
        time.sleep(0.5)
        program.send_signal(signal.SIGINT)
        told = self.wait_for(program.stderr, "still runs")
        self.assertRegex(told, r"sdm: set still runs, for \d+\.\d s, in setData in callback setMode .*; Ctrl-C again")
        program.send_signal(signal.SIGINT)
        self.wait_for(program.stderr, "the program ends here")
        self.assertEqual(program.wait(20), 130)
        program.stdin.close()
        self.assertEqual(self.run_loose("get bell.name").after("bell.name = "), "before")

    def test_a_second_interrupt_says_where_the_transcript_stands(self):
        file = os.path.join(self.folder, "transcript.jsonl")
        self.options = (*self.options, "--record", file)
        program = self.start("set bell.name before\nset bell.mode hang\n")
        self.wait_for(program.stdout, "bell.name = before")
        time.sleep(0.5)
        for text in ("still runs", "the program ends here"):
            program.send_signal(signal.SIGINT)
            told = self.wait_for(program.stderr, text)
        self.assertEqual(program.wait(20), 130)
        program.stdin.close()
        self.assertTrue(told.endswith("; the program ends here; the transcript %s lacks its end; what there is stands in "
                                      "%s.part\n" % (file, file)), told)
        self.assertFalse(os.path.exists(file))
        with open(file + ".part") as part:
            self.assertIn('{"command":"set bell.mode hang"}\n', part.read())

    def test_an_interrupt_without_a_terminal_ends_behind_the_command(self):
        program = self.start("set bell.name a\nset bell.mode doze\nset bell.name b\n")
        self.wait_for(program.stdout, "bell.name = a")
        time.sleep(0.3)
        program.send_signal(signal.SIGINT)
        out, _ = program.communicate(timeout=20)
        self.assertEqual((program.returncode, out.decode()), (130, "bell.mode = doze\n"))

    def test_an_interrupt_of_a_script_that_waits_ends_in_order(self):
        program = self.start("set bell.name a\n")
        self.wait_for(program.stdout, "bell.name = a")
        time.sleep(0.3)
        program.send_signal(signal.SIGINT)
        self.assertEqual(program.wait(20), 130)
        program.stdin.close()


if __name__ == "__main__":
    unittest.main()
