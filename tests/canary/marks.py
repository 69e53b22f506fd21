"""Marked secrets, and every form in which one could have got somewhere."""
import base64
import random
import string

PIECE = 8


class Mark:
    """A random value that stands nowhere else, and what of it must not be found."""

    def __init__(self, root_id, value):
        self.root_id = root_id
        self.value = value
        self.forms = set()
        for start in range(len(value) - PIECE + 1):
            self.add_forms(value[start:start + PIECE])
        self.add_base64()

    def add_forms(self, piece):
        plain = piece.encode()
        self.forms |= {plain, plain.hex().encode(), plain.hex().upper().encode(),
                       " ".join("%02x" % byte for byte in plain).encode(),
                       piece.encode("utf-16-le"), piece.encode("utf-16-be"), piece.encode("utf-32-le"),
                       "".join("\\x%02x" % byte for byte in plain).encode(),
                       "".join("&#%d;" % byte for byte in plain).encode(),
                       "".join("%%%02X" % byte for byte in plain).encode(), plain[::-1]}

    def add_base64(self):
        # A piece of the value at each of the three places that base64 knows, without what its neighbours share.
        text = self.value.encode()
        for start in range(3):
            rest = text[start:start + (len(text) - start) // 3 * 3]
            if len(rest) >= 6:
                self.forms |= {base64.b64encode(rest), base64.urlsafe_b64encode(rest)}
                self.forms |= {base64.b64encode(rest[i:i + 9]) for i in range(0, len(rest) - 8, 3)}

    def found_in(self, content):
        """The first form that stands there, or None."""
        return next((form for form in self.forms if form in content), None)


def random_text(generator, length):
    return "".join(generator.choice(string.ascii_letters + string.digits) for _ in range(length))


def random_digits(generator, length):
    # No leading zeros or repeated digits, which would look like other numbers.
    return "".join(generator.sample("123456789", length))


def generator_of(seed):
    return random.Random(seed)
