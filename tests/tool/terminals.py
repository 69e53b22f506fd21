"""Pseudo-terminals for tests. A system may have none, such as a chroot without /dev/pts: what needs one is skipped then."""
import os
import pty
import unittest


def fork():
    """A child on a new terminal: its id, or 0 in the child itself, and the terminal."""
    return made(pty.fork)


def open_pair():
    """A terminal, and the end of it that programs get."""
    return made(pty.openpty)


def need():
    """For `setUpModule`: skips a module all of whose tests need terminals."""
    for end in open_pair():
        os.close(end)


def made(make):
    try:
        return make()
    except OSError as error:
        raise unittest.SkipTest("this system has no pseudo-terminals: %s" % error) from error
