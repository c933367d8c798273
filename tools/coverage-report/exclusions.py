"""The lines that need not be covered, each with its reason."""

import os
import re

LIMIT = 10
PATH = os.path.join(os.path.dirname(os.path.abspath(__file__)), "exclusions.txt")


class Exclusions:
    def __init__(self):
        self._reasons = {}
        with open(PATH, encoding="utf-8") as file:
            text = "\n".join(line for line in file.read().splitlines() if not line.startswith("#"))
        for paragraph in re.split(r"\n\s*\n", text.strip()):
            lines = paragraph.strip().splitlines()
            if not lines:
                continue
            if len(lines) < 3 or not lines[1].startswith("|"):
                raise SystemExit(f"coverage: exclusions.txt is not as its head says:\n{paragraph}")
            key = lines[0].strip(), lines[1][1:].strip()
            self._reasons[key] = " ".join(line.strip() for line in lines[2:])
        self._used = set()

    def covers(self, path, line_text):
        key = path, line_text.strip()
        if key not in self._reasons:
            return False
        self._used.add(key)
        return True

    def complaints(self):
        """What is wrong with the list itself, now that all lines were asked for."""
        result = [f"the exclusion of “{line}” in {path} is not needed"
                  for path, line in self._reasons if (path, line) not in self._used]
        if len(self._reasons) > LIMIT:
            result.append(f"there are {len(self._reasons)} exclusions; {LIMIT} are allowed")
        return result

    def reasons(self):
        return [(path, line, reason) for (path, line), reason in self._reasons.items()]
