"""The script that packs inputs: what it packs it unpacks, and what is damaged it refuses."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

import inputs

HERE = pathlib.Path(__file__).resolve().parent
ODD = [b"", b"\x00\xff", b"a\\b\n", b"\\x41 \\n", b" \t\r ", bytes(range(256))]


class Inputs(unittest.TestCase):
    def test_unpacks_what_it_packed(self):
        self.assertEqual(sorted(inputs.read(inputs.text_of(ODD)).values()), sorted(ODD))

    def test_packs_the_committed_inputs_as_they_are_committed(self):
        files = sorted((HERE / "corpus").glob("*.inputs"))
        self.assertEqual(len(files), 6)
        for file in files:
            self.assertEqual(inputs.text_of(inputs.read_file(file).values()), file.read_text(encoding="ascii"), file)

    def test_refuses_each_damaged_character(self):
        text = inputs.text_of(ODD[:4])
        for place, character in enumerate(text):
            damaged = text[:place] + ("n" if character == "0" else "0") + text[place + 1:]
            with self.assertRaises(inputs.Damaged, msg=f"place {place}"):
                inputs.read(damaged)

    def test_refuses_what_is_cut_short(self):
        text = inputs.text_of(ODD)
        for size in range(len(text)):
            with self.assertRaises(inputs.Damaged, msg=f"{size} characters"):
                inputs.read(text[:size])

    def test_adds_a_finding_and_names_a_damaged_file(self):
        with tempfile.TemporaryDirectory() as scratch:
            folder = pathlib.Path(scratch)
            (folder / "finding").write_bytes(b"new")
            (folder / "a.inputs").write_text(inputs.text_of(ODD), encoding="ascii")
            inputs.add(folder / "a.inputs", folder / "finding")
            self.assertIn(b"new", inputs.read_file(folder / "a.inputs").values())
            (folder / "a.inputs").write_text("fuzz inputs 1\n", encoding="ascii")
            done = subprocess.run([sys.executable, "-B", HERE / "inputs.py", "unpack", folder / "a.inputs", folder / "to"],
                                  stderr=subprocess.PIPE, text=True, check=False)
            self.assertEqual(done.returncode, 1)
            self.assertIn("a.inputs: ", done.stderr)
            self.assertFalse((folder / "to").exists())
