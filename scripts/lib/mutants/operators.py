"""The mistakes that are planted: every function yields replacements of one kind for one source."""

import re
from dataclasses import dataclass

from .tokens import partners_of, split_at_top, tokens_of

# Binary signs; each becomes each of the others named. Counted only with space on both sides, as
# clang-format sets them, so that brackets of templates and marks of pointers stay out.
_BINARY = {
    "<": ("<=", ">="),
    "<=": ("<", ">"),
    ">": (">=", "<="),
    ">=": (">", "<"),
    "==": ("!=",),
    "!=": ("==",),
    "&&": ("||",),
    "||": ("&&",),
    "+": ("-",),
    "-": ("+",),
    "*": ("/",),
    "/": ("*",),
    "%": ("*",),
    "&": ("|",),
    "|": ("&",),
    "<<": (">>",),
    ">>": ("<<",),
    "+=": ("-=",),
    "-=": ("+=",),
    "|=": ("&=",),
    "&=": ("|=",),
}
_STEPS = {"++": "--", "--": "++"}
_ASSIGNMENTS = ("=", "+=", "-=", "*=", "/=", "|=", "&=", "%=", "<<=", ">>=")
_NOT_A_CALL = {
    "alignof", "case", "catch", "decltype", "delete", "for", "if", "noexcept", "return", "sizeof",
    "static_assert", "switch", "throw", "while",
}  # fmt: skip
_NO_STATEMENT = _NOT_A_CALL | {
    "auto", "break", "const", "constexpr", "continue", "default", "do", "else", "enum", "explicit",
    "extern", "goto", "namespace", "private", "public", "static", "struct", "template", "try",
    "typedef", "using", "class",
}  # fmt: skip
_NOTHING = {"{}", "0", "S_OK", "0.0", "false", "nullptr", 'L""', '""', "std::nullopt"}


@dataclass(frozen=True)
class Mutant:
    start: int
    end: int
    replacement: str
    change: str

    def applied_to(self, source):
        return source[: self.start] + self.replacement + source[self.end :]


class Source:
    def __init__(self, text):
        self.text = text
        self.tokens = tokens_of(text)
        self.partners = partners_of(self.tokens)
        self.skipped = set()
        for index, token in enumerate(self.tokens):
            if token.text == "static_assert":
                self.skipped.update(range(index, self.partners[index + 1] + 1))

    def between(self, first, last):
        """The text of the tokens first to last - 1."""
        return self.text[self.tokens[first].start : self.tokens[last - 1].end]

    def replace(self, first, last, replacement, change=None):
        before = " ".join(self.between(first, last).split())
        change = change or f"{before} -> {replacement or 'nothing'}"
        return Mutant(self.tokens[first].start, self.tokens[last - 1].end, replacement, change)


def _signs(source):
    for index, token in enumerate(source.tokens):
        if token.kind != "sign":
            continue
        if token.spaced:
            for other in _BINARY.get(token.text, ()):
                yield source.replace(index, index + 1, other)
            if token.text == "?":
                yield source.replace(index, index + 1, "== 0 ?", "condition of ?: negated")
        if token.text in _STEPS:
            yield source.replace(index, index + 1, _STEPS[token.text])


def _negated_by_sign(source, first, last):
    """A condition of one relation: another sign in it is the same mistake."""
    relations = [
        token for token in source.tokens[first:last]
        if token.text in ("&&", "||") or token.spaced and token.text in ("<", "<=", ">", ">=", "==", "!=")
    ]  # fmt: skip
    if not relations:
        return source.tokens[first].text == "!"
    return len(relations) == 1 and relations[0].spaced and relations[0].text not in ("&&", "||")


def _conditions(source):
    for index, token in enumerate(source.tokens):
        if token.text in ("if", "while", "for") and source.tokens[index + 1].text == "(":
            opening, closing = index + 1, source.partners[index + 1]
            parts = split_at_top(source.tokens, source.partners, opening + 1, closing, ";")
            if token.text == "for" and len(parts) != 3:
                continue
            first, last = parts[1] if token.text == "for" else parts[-1]
            if first < last and not _negated_by_sign(source, first, last):
                condition = source.between(first, last)
                yield source.replace(first, last, f"!({condition})", f"{token.text}: negated")
        elif token.text == "!":
            yield source.replace(index, index + 1, "", "! removed")


def _values(source):
    for index, token in enumerate(source.tokens):
        if token.kind == "number":
            # One below nothing is no other mistake than one above.
            for step in ("+",) if token.text.rstrip("uUlL") == "0" else ("+", "-"):
                yield source.replace(index, index + 1, f"({token.text} {step} 1)")
        elif token.kind == "char":
            other = "\\1" if token.text[-2:] != "\\1'" else "\\2"
            prefix = token.text[: token.text.index("'")]
            yield source.replace(index, index + 1, f"{prefix}'{other}'")
        elif token.kind == "text" and source.tokens[index - 1].text != "extern":
            prefix = token.text[: token.text.index('"')]
            inner = token.text[len(prefix) + 1 : -1]
            yield source.replace(index, index + 1, f'{prefix}"{"" if inner else "X"}"')
        elif token.text in ("true", "false"):
            yield source.replace(index, index + 1, "false" if token.text == "true" else "true")


def _end_of_chain(source, index):
    """Past a name, its members, calls and subscripts; None when no such thing begins here."""
    if source.tokens[index].kind != "name" or source.tokens[index].text in _NO_STATEMENT:
        return None
    index += 1
    while True:
        text = source.tokens[index].text
        if text in ("(", "["):
            index = source.partners[index] + 1
        elif text in (".", "->", "::") and source.tokens[index + 1].kind == "name":
            index += 2
        else:
            return index


def _end_of_statement(source, index):
    """The place of the semicolon; None in an initialiser or a list of enumerators."""
    while index < len(source.tokens) and source.tokens[index].text not in ("}", ","):
        if source.tokens[index].text == ";":
            return index
        index = source.partners.get(index, index) + 1
    return None


def _begins_statement(source, index):
    before = source.tokens[index - 1].text
    if before != ":":
        return before in (";", "{", "}")
    # A label's colon, not that of a condition.
    while source.tokens[index - 1].text not in (";", "{", "}", "?", "case", "default"):
        index -= 1
    return source.tokens[index - 1].text in ("case", "default")


def statements_of(source, declarations=False):
    """(first, semicolon) of calls, assignments and jumps; of declarations with = instead."""
    for index in range(1, len(source.tokens) - 1):
        if not _begins_statement(source, index):
            continue
        last = _end_of_statement(source, index)
        if last is None:
            continue
        if source.tokens[index].text in ("break", "continue", "return"):
            end, declared = last, False
        else:
            end = _end_of_chain(source, index)
            assigned = end is not None and source.tokens[end].text in _ASSIGNMENTS
            called = end == last and source.tokens[end - 1].text == ")"
            outer = split_at_top(source.tokens, source.partners, index, last, "=")
            plain = source.tokens[index].text not in _NO_STATEMENT - {"auto", "const"}
            declared = plain and not assigned and len(outer) == 2 and outer[0][1] - outer[0][0] > 1
            if not (assigned or called or declared):
                continue
        if declared == declarations:
            yield index, last


def _statements(source):
    for index, last in statements_of(source):
        first = source.tokens[index].text
        if first in ("break", "continue", "return") and index + 1 == last:
            yield source.replace(index, last + 1, ";", f"{first}; -> ;")
        elif first == "return":
            # A value's return at the end of a function cannot be left out.
            if source.text[: source.tokens[index].start].rpartition("\n")[2].startswith(" " * 8):
                yield source.replace(index, last + 1, ";", "return left out")
        else:
            called = source.tokens[last - 1].text == ")" and _end_of_chain(source, index) == last
            yield source.replace(index, last + 1, ";", f"{'call' if called else 'assignment'} left out")


def _is_named_value(text):
    return re.fullmatch(r"\w+(::\w+)+", text) is not None


def _returned(source):
    for index, token in enumerate(source.tokens):
        if token.text != "return" or source.tokens[index + 1].text == ";":
            continue
        end = _end_of_statement(source, index)
        value = source.between(index + 1, end)
        if value in _NOTHING or value == "true":
            continue
        if _is_named_value(value):
            preceding = f"static_cast<decltype({value})>(static_cast<int>({value}) - 1)"
            yield source.replace(index + 1, end, preceding, "the preceding value returned")
        else:
            yield source.replace(index + 1, end, "{}", "{} returned")
            yield source.replace(index + 1, end, f"!({value})", "the opposite returned")


def _swapped(source):
    for index, token in enumerate(source.tokens[:-1]):
        if token.kind != "name" or token.text in _NOT_A_CALL or source.tokens[index + 1].text != "(":
            continue
        closing = source.partners[index + 1]
        arguments = split_at_top(source.tokens, source.partners, index + 2, closing, ",")
        for left, right in zip(arguments, arguments[1:]):
            if left[0] == left[1] or right[0] == right[1]:
                continue
            one, other = source.between(*left), source.between(*right)
            kinds = {source.tokens[left[0]].kind, source.tokens[right[0]].kind}
            # A declaration's parameters, or values that no parameter takes in each other's place.
            declared = any(
                source.tokens[at].kind == "name" and source.tokens[at - 1].kind == "name"
                or source.tokens[at].text in ("&", "*") and not source.tokens[at].spaced
                and source.tokens[at + 1].kind == "name" and source.tokens[at - 1].kind == "name"
                for at in range(left[0] + 1, right[1])
            )  # fmt: skip
            if one == other or declared or kinds == {"text", "number"}:
                continue
            change = " ".join(f"swapped: {one} and {other}".split())
            yield source.replace(left[0], right[1], f"{other}, {one}", change)


def mutants_of(text):
    """All mutants of a file in the order of their places, each change once."""
    source = Source(text)
    starts = [token.start for token in source.tokens]
    skipped = {starts[index] for index in source.skipped}
    found = {}
    for kind in (_signs, _conditions, _values, _statements, _returned, _swapped):
        for mutant in kind(source):
            if mutant.start not in skipped:
                found.setdefault(mutant.applied_to(text), mutant)
    return sorted(found.values(), key=lambda mutant: (mutant.start, mutant.end, mutant.replacement))
