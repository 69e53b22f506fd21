"""Where and how source code can be broken on purpose: one small change each, as a developer's slip would make it."""
import re
from collections import namedtuple

# A change of source[begin:end]; `kind` tells its sort.
Mutant = namedtuple("Mutant", "file begin end text kind")

TOKEN = re.compile(r"""
    (?P<skip>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#[ \t]*(?:include|pragma)[^\n]*|\\\n)
  | (?P<raw>R"(?P<mark>\w*)\(.*?\)(?P=mark)")
  | (?P<string>"(?:[^"\\\n]|\\.)*")
  | (?P<char>'(?:[^'\\\n]|\\.)')
  | (?P<number>\b\d+[uUlL]*\b)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<operator>->|\+\+|--|\+=|-=|==|!=|<=|>=|&&|\|\||::|<<|>>|\.\.\.|.)
""", re.VERBOSE | re.DOTALL | re.MULTILINE)

SWAPS = {
    "==": ("comparison", ["!="]), "!=": ("comparison", ["=="]),
    "<": ("comparison", ["<=", ">="]), ">": ("comparison", [">=", "<="]),
    "<=": ("comparison", ["<", ">"]), ">=": ("comparison", [">", "<"]),
    "&&": ("logic", ["||"]), "||": ("logic", ["&&"]),
    "+": ("arithmetic", ["-"]), "-": ("arithmetic", ["+"]), "+=": ("arithmetic", ["="]),
    "++": ("arithmetic", ["--"]), "--": ("arithmetic", ["++"]),
    "true": ("constant", ["false"]), "false": ("constant", ["true"]),
    "continue": ("jump", ["break"]), "SDM_TRACE": ("gate", ["SDM_LOG"]), "SDM_LOG": ("gate", ["SDM_TRACE"]),
}
# Between spaces these are operators; elsewhere they belong to templates, pointers and signs.
SPACED = {"<", ">", "+", "-"}
# Says something to the compiler's analysis alone: nothing happens there, so that it may be anywhere or nowhere.
TOLD = re.compile(r"^(\w+(->|\.))?lockIsHeld\(\);$")
CALL = re.compile(r"^[\w:.>\[\]*-]+(<[\w:]*>)?\(.*\)$", re.DOTALL)
NO_STATEMENT = ("case", "default", "public", "private", "protected", "using", "friend", "static_assert", "#", "typedef",
                "template", "class", "struct", "enum", "namespace", "extern")


class Source:
    """One file, as tokens."""

    def __init__(self, name, text):
        self.name = name
        self.text = text
        self.tokens = []
        for match in TOKEN.finditer(text):
            if match.lastgroup != "skip":
                kind = "raw" if match.group("raw") else match.lastgroup
                self.tokens.append((kind, match.group(), match.start(), match.end()))
        self.pairs = self._pairs()
        self.bodies = self._bodies()

    def _pairs(self):
        pairs, open_at = {}, []
        for at, (_, text, _, _) in enumerate(self.tokens):
            if text in ("(", "[", "{"):
                open_at.append(at)
            elif text in (")", "]", "}") and open_at:
                begin = open_at.pop()
                pairs[begin], pairs[at] = at, begin
        return pairs

    def _bodies(self):
        """The token ranges of functions' bodies: what stands between braces behind a parameter list."""
        found, at = [], 0
        while at < len(self.tokens):
            if self.tokens[at][1] == "{" and self._opens_body(at):
                found.append((at, self.pairs[at]))
                at = self.pairs[at]
            at += 1
        return found

    def _opens_body(self, at):
        before = at - 1
        while before >= 0 and self.tokens[before][1] in ("const", "noexcept", "override", "mutable"):
            before -= 1
        if before < 0 or self.tokens[before][1] not in (")", "}", "do"):
            return False
        # Behind "}" it is the end of an initialiser only when that one is part of a constructor's list.
        return self.tokens[before][1] != "}" or self.tokens[self.pairs[before] - 1][0] == "word" \
            and self.tokens[self.pairs[before] - 2][1] in (",", ":")

    def spaced(self, at):
        _, _, begin, end = self.tokens[at]
        return self.text[begin - 1:begin].isspace() and self.text[end:end + 1].isspace()

    def span(self, first, last):
        return self.tokens[first][2], self.tokens[last][3]


def of(name, text):
    """All mutants of a file, each once."""
    source = Source(name, text)
    seen = set()
    for make in (_tokens, _conditions, _choices, _statements, _results):
        for begin, end, replacement, kind in make(source):
            if text[begin:end] != replacement and (begin, end, replacement) not in seen:
                seen.add((begin, end, replacement))
                yield Mutant(name, begin, end, replacement, kind)


def _tokens(source):
    asserted = set()
    for at, (kind, text, begin, end) in enumerate(source.tokens):
        if text == "static_assert":
            asserted.update(range(at, source.pairs[at + 1]))
        if at in asserted or text == '"C"':
            continue
        if kind in ("raw", "string", "char"):
            yield begin, end, _other_text(kind, text), "text"
        elif kind == "number":
            digits = re.match(r"\d+", text).group()
            yield begin, end, str(int(digits) + 1) + text[len(digits):], "constant"
        elif text == "!" and source.text[end:end + 1] != "=":
            yield begin, end, "", "condition"
        elif text in SWAPS and (text not in SPACED or source.spaced(at)):
            for other in SWAPS[text][1]:
                yield begin, end, other, SWAPS[text][0]


def _other_text(kind, text):
    if kind == "string":
        return text[:-1] + 'X"'
    if kind == "char":
        return "'X'" if text != "'X'" else "'Y'"
    close = text.rindex(")")
    return text[:close] + "X" + text[close:]


def _conditions(source):
    for at, (_, text, _, _) in enumerate(source.tokens[:-1]):
        if text in ("if", "while") and source.tokens[at + 1][1] == "(":
            begin, end = source.span(at + 2, source.pairs[at + 1] - 1)
            condition = source.text[begin:end]
            if not re.match(r"(const )?(auto|char)\b", condition) and not _negated_elsewhere(condition):
                yield begin, end, "!(" + condition + ")", "condition"


def _negated_elsewhere(condition):
    """Is there nothing in it but one comparison or one "!", so that another change negates it as well?"""
    return "&&" not in condition and "||" not in condition and "?" not in condition and \
        re.search(r"==|!=|^!", condition) is not None


def _choices(source):
    """The conditions of `a ? b : c`."""
    for at, (_, text, _, _) in enumerate(source.tokens):
        if text != "?":
            continue
        first = at - 1
        while source.tokens[first][1] not in ("return", "=", "(", ",", ";", "{", "}", ":", "[", "+"):
            first = source.pairs[first] - 1 if source.tokens[first][1] in (")", "]", "}") else first - 1
        begin, end = source.span(first + 1, at - 1)
        if not _negated_elsewhere(source.text[begin:end]):
            yield begin, end, "!(" + source.text[begin:end] + ")", "condition"


def _simple_statements(source):
    """Statements without a statement inside, as token ranges that end at their semicolons."""
    for first, last in source.bodies:
        at = begin = first + 1
        while at < last:
            text = source.tokens[at][1]
            if text in ("if", "while", "for", "switch", "catch") and source.tokens[at + 1][1] == "(":
                at = begin = source.pairs[at + 1] + 1
            elif text in ("else", "do", "try"):
                at = begin = at + 1
            elif text == "{" and at == begin or text == "}":
                at = begin = at + 1
            elif text in ("(", "[", "{"):
                at = source.pairs[at] + 1
            elif text == ";":
                if at > begin and source.tokens[begin][1] not in NO_STATEMENT:
                    yield begin, at
                at = begin = at + 1
            else:
                at += 1


def _statements(source):
    previous = None
    for first, last in _simple_statements(source):
        begin, end = source.span(first, last)
        if (source.tokens[first][1] != "return" or last == first + 1) and not TOLD.match(source.text[begin:end]):
            yield begin, end, ";", "statement"
        if previous is not None and previous[1] + 1 == first:
            one = source.text[slice(*source.span(*previous))]
            two = source.text[begin:end]
            if CALL.match(one[:-1]) and CALL.match(two[:-1]) and not TOLD.match(one) and not TOLD.match(two):
                yield source.tokens[previous[0]][2], end, two + " " + one, "order"
        previous = first, last


def _results(source):
    for first, last in _simple_statements(source):
        if source.tokens[first][1] == "return" and last > first + 1:
            begin, end = source.span(first + 1, last - 1)
            if source.text[begin:end] not in ("true", "false", "nullptr") and \
                    not _negated_elsewhere(source.text[begin:end]):
                yield begin, end, "!(" + source.text[begin:end] + ")", "result"
