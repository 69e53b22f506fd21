"""The program on a terminal: editing, completion, history, interrupts."""
import fcntl
import os
import re
import select
import signal
import struct
import termios
import time
import unittest

import terminals
from program import SDM, ProgramTest


def setUpModule():
    terminals.need()


class Terminal(ProgramTest):
    def setUp(self):
        super().setUp()
        self.seen = ""
        self.open_terminal()

    def open_terminal(self, options=(), **environment):
        self.unread = ""
        self.pid, self.terminal = terminals.fork()
        if self.pid == 0:
            os.environ.pop("NO_COLOR", None)
            os.environ.update({"TERM": "xterm", "LC_ALL": "C.UTF-8", "HOME": self.folder, **environment})
            os.environ.pop("XDG_STATE_HOME", None)
            os.execv(SDM, ["sdm", "run", "--device", self.device, *options])
        self.addCleanup(self.close_terminal, self.pid, self.terminal)
        self.screen = self.read_until("sdm> ")

    def close_terminal(self, pid, terminal):
        try:
            os.kill(pid, signal.SIGKILL)
            os.waitpid(pid, 0)
        except (ProcessLookupError, ChildProcessError):
            pass
        os.close(terminal)

    def read_until(self, text, seconds=20):
        """Everything up to and with the text; what came behind it is for the next reader."""
        found, self.unread = self.unread, ""
        end = time.monotonic() + seconds
        while text not in found:
            ready, _, _ = select.select([self.terminal], [], [], max(0, end - time.monotonic()))
            if not ready:
                raise AssertionError("waited for %r, saw %r" % (text, found))
            try:
                piece = os.read(self.terminal, 65536)
            except OSError:
                piece = b""
            if not piece:
                raise AssertionError("waited for %r until the end, saw %r" % (text, found))
            self.seen += piece.decode(errors="replace")
            found += piece.decode(errors="replace")
        place = found.index(text) + len(text)
        self.unread = found[place:]
        return found[:place]

    def type(self, keys, until):
        os.write(self.terminal, keys.encode() if isinstance(keys, str) else keys)
        return self.read_until(until)

    def exit_code(self):
        _, status = os.waitpid(self.pid, 0)
        return os.waitstatus_to_exitcode(status)

    def test_shows_a_prompt_and_colours(self):
        self.assertIn("\x1b[1m", self.screen)
        self.assertIn("Tab completes", self.screen)

    def test_shows_no_colours_when_they_are_not_wanted(self):
        self.close_terminal(self.pid, os.dup(self.terminal))
        self.open_terminal(NO_COLOR="1")
        self.assertNotRegex(self.screen, r"\x1b\[\d*m")

    def test_shows_no_colours_on_a_terminal_of_no_kind(self):
        self.type("quit\r", "\n")
        self.exit_code()
        self.open_terminal(TERM="")
        self.assertNotRegex(self.screen, r"\x1b\[\d*m")

    def test_completes_commands_and_root_ids_by_tab(self):
        self.type("sh\t", "ow ")
        self.type("time.z\t", "one ")
        self.assertIn("time.zone", self.type("\r", "  value"))

    def test_offers_what_may_follow(self):
        self.type("get time.\t\t", "time.pollMinutes")
        self.type("\x03", "sdm> ")

    def test_completes_only_what_the_command_takes(self):
        self.type("changed p\t", "hone.")
        self.type("r\t", "oom ")
        self.type("\x03", "sdm> ")
        os.write(self.terminal, b"changed time.z\t")
        time.sleep(0.3)
        self.assertNotIn("time.zone", self.type("\r", "refused:"))

    def test_does_not_offer_files(self):
        os.write(self.terminal, b"set snmp.location ocm\t")
        time.sleep(0.3)
        self.assertNotIn("ocms.db", self.type("\r", "snmp.location = ocm\r"))

    def test_brings_back_earlier_lines(self):
        self.type("get time.zone\r", "time.zone = UTC")
        self.read_until("sdm> ")
        self.type("\x1b[A", "get time.zone")
        self.type("\r", "time.zone = UTC")

    def test_suggests_and_goes_on(self):
        self.type("lsit\r", "did you mean list?")
        self.read_until("sdm> ")
        self.type("get time.zone\r", "time.zone = UTC")

    def test_takes_letters_of_every_language(self):
        self.type("set snmp.location Zürich\r", "snmp.location = Zürich")

    def test_shows_bytes_that_are_no_character_and_loses_none_behind_them(self):
        self.type(b"get Zo\xeb\r", "there is no item Zo\ufffd")
        self.read_until("sdm> ")
        self.type(b"get Zo\xffe\r", "there is no item Zo\ufffde")
        self.read_until("sdm> ")
        self.type("get time.zone\r", "time.zone = UTC")

    def test_takes_control_and_space_for_no_end(self):
        time.sleep(0.3)
        os.write(self.terminal, b"\0")
        time.sleep(0.1)
        self.type("get time.zone\r", "time.zone = UTC")

    def test_an_interrupt_takes_the_line_back_and_nothing_else(self):
        self.type("set time.zone Europe/Rome", "Rome")
        self.type("\x03", "sdm> ")
        self.type("get time.zone\r", "time.zone = UTC")
        self.read_until("sdm> ")
        self.type("\x03", "sdm> ")
        self.type("\x04", "\n")
        self.assertEqual(self.exit_code(), 0)

    def test_ends_at_the_end_of_input_with_success_whatever_was_refused(self):
        self.type("nonsense\r", "there is no command")
        self.read_until("sdm> ")
        self.type("\x04", "\n")
        self.assertEqual(self.exit_code(), 0)

    def test_tells_whoever_waits_for_a_command(self):
        self.type("fault das slow 2300\r", "fault off")
        self.read_until("sdm> ")
        shown = self.type("set time.zone Europe/Rome\r", "time.zone = Europe/Rome")
        self.assertIn("set … 1 s", shown)
        self.assertIn("set … 2 s", shown)
        self.assertEqual(shown.count("\r\x1b[K"), 1, "the result stands where the progress was")

    def test_asks_for_a_secret_without_showing_it(self):
        self.type("set sip.userName anna sip.password\r", "not shown")
        self.type("opensesame42\r", "sip.password = *****")
        self.read_until("sdm> ")
        self.type("get sip.userName sip.password\r", "sip.password = *****")
        self.read_until("sdm> ")
        self.type("quit\r", "\n")
        self.assertEqual(self.exit_code(), 0)
        self.assertNotIn("opensesame42", self.seen)
        self.assertFalse([path for path, content in self.files().items() if b"opensesame42" in content])

    def test_keeps_lines_with_secrets_out_of_the_history(self):
        self.type("get time.zone\r", "time.zone = UTC")
        self.read_until("sdm> ")
        self.type("set snmp.readCommunity hidden77\r", "snmp.readCommunity = *****")
        self.read_until("sdm> ")
        again = self.type("\x1b[A", "get time.zone")
        self.assertNotIn("hidden77", again)
        self.type("\r", "time.zone = UTC")


    def start_again(self, **environment):
        self.type("exit\r", "\n")
        self.exit_code()
        self.open_terminal(**environment)

    def test_keeps_lines_without_secrets_between_runs(self):
        for line in ("get time.zone", "set sip.pasword hunter2", "set snmp.readCommunity hidden77"):
            self.type(line + "\r", "sdm> ")
        self.start_again()
        self.type("\x1b[A\x1b[A", "get time.zone")
        path = os.path.join(self.folder, ".local", "state", "sdm", "history")
        with open(path) as file:
            self.assertEqual(file.read(), "get time.zone\nexit\n")
        self.assertEqual(os.stat(path).st_mode & 0o777, 0o600)

    def test_a_history_that_is_a_pipe_holds_nothing_up(self):
        path = os.path.join(self.folder, ".local", "state", "sdm", "history")
        os.remove(path) if os.path.exists(path) else os.makedirs(os.path.dirname(path), exist_ok=True)
        os.mkfifo(path)
        self.type("get time.zone\r", "time.zone = UTC")
        self.read_until("sdm> ")
        self.start_again()

    def test_knows_exit_and_a_question_mark(self):
        self.type("?\r", "Show the commands")
        self.read_until("sdm> ")
        self.type("exit\r", "\n")
        self.assertEqual(self.exit_code(), 0)

    def resize(self, rows, columns):
        fcntl.ioctl(self.terminal, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))

    def test_breaks_no_word_at_the_width_of_the_screen(self):
        self.resize(0, 80)
        for command in ("help", "stats", "list sip."):
            shown = self.type(command + "\r", "sdm> ").replace("\r", "")
            for line in re.sub(r"\x1b\[\d*m", "", shown).splitlines()[1:]:
                self.assertLessEqual(len(line), 80, command)

    def test_shows_what_is_longer_than_the_screen_a_screen_at_a_time(self):
        self.start_again(PAGER="sed 's/^/paged: /'")
        self.resize(24, 80)
        self.assertIn("paged: time.zone", self.type("list\r", "sdm> "))
        self.assertNotIn("paged: ", self.type("get time.zone\r", "time.zone = UTC"))

    def test_shows_all_where_the_pager_is_missing_or_leaves_early(self):
        self.start_again(PAGER="no-such-pager-here")
        self.resize(24, 80)
        self.type("list\r", "E encrypted")
        self.read_until("sdm> ")
        self.start_again(PAGER="true")
        self.resize(24, 80)
        self.type("list\r", "sdm> ")
        self.type("get time.zone\r", "time.zone = UTC")

    def test_shows_the_log_where_it_is_asked_for(self):
        self.type("exit\r", "\n")
        self.exit_code()
        self.open_terminal(options=("--show-log", "--quiet", "--log-level", "4"))
        self.assertNotIn("is up on", self.screen)
        self.assertIn("ServiceDataManager", self.type("set ip.address 10.0.0.5\r", "group IpAddressing"))

    def test_keeps_the_log_in_its_file(self):
        shown = self.type("set ip.address 10.0.0.5\r", "group IpAddressing")
        self.assertNotIn("ServiceDataManager", shown)
        self.assertIn(b"ServiceDataManager", self.files()[os.path.join(self.device, "log", "device.log")])


if __name__ == "__main__":
    unittest.main()
