"""All mutants of a file in one compilation, each behind a switch, for speed.

A statement, a condition or an initial value is written once more for every mutant in it; a variable of
the environment says at run time which one counts. What does not fit (constant expressions, headers of
loops, changes that do not compile) is found by compiling and left to a compilation of its own.
"""

import re

from .operators import Source, statements_of
from .tokens import split_at_top

SWITCH = "SIGNUTILS_MUTANT"

_PROLOGUE = f"""#include <cstdlib>
static const int activeMutant = std::getenv("{SWITCH}") ? std::atoi(std::getenv("{SWITCH}")) : 0;
"""
_STATEMENT, _VALUE = "statement", "value"
_ROUNDS = 12


def _conditions(source):
    for index, token in enumerate(source.tokens):
        if token.text in ("if", "while", "for") and source.tokens[index + 1].text == "(":
            closing = source.partners[index + 1]
            parts = split_at_top(source.tokens, source.partners, index + 2, closing, ";")
            first, last = parts[1] if len(parts) == 3 else parts[-1]
            declares = any(each.text == "=" for each in source.tokens[first:last])
            if first < last and not declares and (token.text != "for" or len(parts) == 3):
                yield first, last, _VALUE


def _initial_values(source):
    for first, last in statements_of(source, declarations=True):
        texts = [token.text for token in source.tokens[first:last]]
        if "constexpr" not in texts and "static" not in texts:
            begin = first + texts.index("=") + 1
            if source.tokens[begin].text != "{":
                yield begin, last, _VALUE


def _units(source):
    """(start, end, kind) of what can be written several times, the outer before the inner."""
    found = [(first, last + 1, _STATEMENT) for first, last in statements_of(source)]
    found += [*_conditions(source), *_initial_values(source)]
    places = {
        (source.tokens[first].start, source.tokens[last - 1].end, kind) for first, last, kind in found
    }  # fmt: skip
    return sorted(places, key=lambda unit: (unit[0], -unit[1]))


class _Writer:
    """Writes the switched source and notes which lines belong to which mutant."""

    def __init__(self, text, units, mutants):
        self.text, self.units, self.mutants = text, units, mutants
        self.owners = {}
        self.written = [_PROLOGUE]
        self.line = _PROLOGUE.count("\n") + 1
        self.span(0, len(text), 0)

    def write(self, text):
        self.written.append(text)
        self.line += text.count("\n")

    def span(self, start, end, next_unit):
        """The text from start to end, with the units from `next_unit` on that lie in it."""
        at = start
        for place in range(next_unit, len(self.units)):
            first, last, _ = self.units[place]
            if at <= first and last <= end:
                self.write(self.text[at:first])
                self.unit(place)
                at = last
        self.write(self.text[at:end])

    def unit(self, place):
        first, last, kind = self.units[place]
        own = self.mutants.get(self.units[place], {})
        for number, mutant in own.items():
            begin = self.line + 1
            changed = self.text[first : mutant.start] + mutant.replacement + self.text[mutant.end : last]
            if kind == _STATEMENT:
                self.write(f"\nif (activeMutant == {number}) {{ {changed} }} else")
            else:
                self.write(f"\nactiveMutant == {number} ? ({changed}) :")
            for line in range(begin, self.line + 1):
                self.owners[line] = number
        before, after = ("{", "}") if kind == _STATEMENT else ("(", ")")
        if own:
            self.write("\n" + before)
        self.span(first, last, place + 1)
        if own:
            self.write(after + "\n")

    def source(self):
        return "".join(self.written)


def _placed(units, mutants):
    """The mutants by the innermost unit that holds them: {unit: {number: mutant}}."""
    placed = {}
    for number, mutant in enumerate(mutants, 1):
        around = [unit for unit in units if unit[0] <= mutant.start and mutant.end <= unit[1]]
        if around:
            placed.setdefault(around[-1], {})[number] = mutant
    return placed


def _numbers_told(errors, owners, conclusive=False):
    """The mutants on whose lines something is told; conclusive: an error that the switch has no part in."""
    found = set()
    for line, told in re.findall(r"mutant\.cpp:(\d+):\d+: (.*)", errors):
        if not conclusive or "error:" in told and not re.search("const|activeMutant", told):
            found.add(owners.get(int(line)))
    return found - {None}


class _Company:
    """What is compiled together, by unit, until nothing in it is refused."""

    def __init__(self, bench, text, units, placed):
        self.bench, self.text, self.units, self.placed = bench, text, units, placed

    def compile(self):
        """Takes out what the compiler refuses: whether the rest compiles, and what was taken out, by
        unit, of the statements with an error of their own."""
        refused_statements = {}
        for _ in range(_ROUNDS):
            writer = _Writer(self.text, self.units, self.placed)
            errors = self.bench.errors_of(writer.source())
            if errors is None:
                return True, refused_statements
            refused = _numbers_told(errors, writer.owners)
            wrong = _numbers_told(errors, writer.owners, conclusive=True)
            if not refused:
                break
            for unit, own in self.placed.items():
                for number in refused & set(own):
                    mutant = own.pop(number)
                    # A whole statement fails in company as it does alone; a value may miss its type.
                    if unit[2] == _STATEMENT and number in wrong:
                        refused_statements.setdefault(unit, {})[number] = mutant
        return False, refused_statements

    def add(self, placed):
        for unit, own in placed.items():
            self.placed[unit].update(own)

    def mutants(self):
        return {number: each for own in self.placed.values() for number, each in own.items()}


def compile_together(bench, text, mutants):
    """Compiles the switched source: the mutants in it, by number, and those that cannot compile."""
    units = _units(Source(text))
    company = _Company(bench, text, units, _placed(units, mutants))
    compiles, refused = company.compile()
    if compiles:
        # Once more beside what compiles: a name that a broken declaration took away is there again.
        company.add(refused)
        compiles, refused = company.compile()
    if not compiles:
        return {}, []
    return company.mutants(), [each for own in refused.values() for each in own.values()]
