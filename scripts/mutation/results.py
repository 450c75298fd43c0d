"""What was found out about mutants, kept from run to run, and which of them are named equivalent."""

import json
from pathlib import Path


class Results:
    """One line of JSON for each mutant that was tried, appended as soon as it was. A result counts for the state of
    the sources and tests that it was found for."""

    def __init__(self, path, state, keep_killed):
        self.path, self.state = Path(path), state
        self.found = {}
        if self.path.exists():
            for line in self.path.read_text().splitlines():
                try:
                    each = json.loads(line)
                except ValueError:  # stopped while it was written
                    continue
                if each["state"] == state or (keep_killed and each["killed"]):
                    self.found[tuple(each["key"])] = (each["killed"], each["by"])
                else:
                    self.found.pop(tuple(each["key"]), None)
        self.path.parent.mkdir(parents=True, exist_ok=True)

    def add(self, mutant, killed, by):
        self.found[mutant.key] = (killed, by)
        with open(self.path, "a") as file:
            file.write(json.dumps({"state": self.state, "key": mutant.key, "killed": killed, "by": by}) + "\n")


class Equivalents:
    """The file of mutants that do what the program does. An entry is a paragraph: the file and the function, the
    line, the change ("*": any on that line), and the reason:

        ppd/PPDText.cpp in PPDText::lines
            if (count < 2) {
            < -> <=
        because with two lines both ways give the same.
    """

    def __init__(self, path):
        self.entries, self.used = {}, set()
        for number, paragraph in self.paragraphs(Path(path)):
            lines = [line.strip() for line in paragraph]
            if len(lines) < 4 or " in " not in lines[0] or not lines[3].startswith("because "):
                raise SystemExit(f"{path}:{number}: an entry is file and function, line, change, and \"because ...\"")
            name, function = lines[0].split(" in ", 1)
            self.entries[(name, function, lines[1], lines[2])] = number

    @staticmethod
    def paragraphs(path):
        paragraph, begin = [], 0
        for number, line in enumerate([*path.read_text().splitlines(), ""] if path.exists() else [], 1):
            if line.startswith("#"):
                continue
            if line.strip():
                begin = begin if paragraph else number
                paragraph.append(line)
            elif paragraph:
                yield begin, paragraph
                paragraph = []

    @staticmethod
    def lines_of(mutant):
        again = f" #{mutant.repetition}" if mutant.repetition > 1 else ""
        return (mutant.path, mutant.function or "(no function)", mutant.line_text, mutant.change + again)

    def line_of(self, mutant):
        """The number of the line of the entry that names it, None when there is none, and whether it names that
        change alone."""
        path, function, line, change = self.lines_of(mutant)
        for key in ((path, function, line, change), (path, function, line, "*")):
            if key in self.entries:
                self.used.add(key)
                return self.entries[key], key[3] != "*"
        return None, False

    def unused(self, paths):
        return [(number, key) for key, number in self.entries.items() if key not in self.used and key[0] in paths]
