"""The words that serve as string keys: a file of distinct lines, the same on every machine that has
the same dictionaries."""

import os
import random

DICTIONARIES = ("/usr/share/dict/american-english", "/usr/share/dict/ngerman")
LINES = 2_000_000  # a map of a million, and as many words that are not in it


def write(path):
    """Real words in random order, then compounds of two of them. Does nothing if the file exists."""
    if os.path.exists(path):
        return
    words = set()
    for dictionary in DICTIONARIES:
        with open(dictionary, encoding="utf-8") as lines:
            words.update(line.strip() for line in lines)
    words.discard("")
    lines = sorted(words)
    chooser = random.Random(1)
    chooser.shuffle(lines)
    known = words
    parts = len(lines)
    while len(lines) < LINES:
        compound = lines[chooser.randrange(parts)] + lines[chooser.randrange(parts)].lower()
        if compound not in known:
            known.add(compound)
            lines.append(compound)
    unfinished = path + ".part"
    with open(unfinished, "w", encoding="utf-8") as out:
        out.write("\n".join(lines) + "\n")
    os.rename(unfinished, path)
