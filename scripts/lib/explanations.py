"""A list of places in the sources that are known, each with its reason."""


class Explanations:
    """Indentation tells what a line of the list is:

    FILE
        A LINE AS IT IS WRITTEN
            WHAT IS KNOWN THERE
            AND THERE
        = why that is right as it is
          and more about it

    Lines are quoted, not numbered, so that the list does not follow every change above them.
    """

    def __init__(self, path):
        self.reasons = {}
        file = line = None
        known = []
        for number, text in enumerate(path.read_text().splitlines(), 1):
            depth = len(text) - len(text.lstrip())
            text = text.strip()
            if not text or text.startswith("# "):
                continue
            if depth == 0:
                file = text
            elif depth == 8 and line:
                known.append((file, line, text))
            elif depth == 4 and text.startswith("= ") and known:
                self.reasons.update(dict.fromkeys(known, text[2:]))
                known = []
            elif depth == 4 and file:
                line = text
            elif depth != 6 or known:
                raise SystemExit(f"{path}:{number}: neither file, line, what is known nor reason")
        if known:
            raise SystemExit(f"{path}: {known[-1]}: the reason is missing")

    def stale(self, found, files):
        """What is listed about these files and is not found there."""
        return [entry for entry in self.reasons if entry[0] in files and entry not in found]


def line_of(text, offset):
    """The line at an offset, as the list quotes it."""
    begin = text.rfind("\n", 0, offset) + 1
    end = text.find("\n", offset)
    return text[begin : end if end >= 0 else len(text)].strip()
