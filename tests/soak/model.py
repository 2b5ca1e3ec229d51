"""What one client has been told is stored, and what may be."""

import hashlib
import random


def content(seed, size):
    """Bytes in which no two blocks are equal."""
    block = random.Random(seed).randbytes(min(size, 65536))
    parts = []
    for number in range(size // 65536 + 1):
        stamp = number.to_bytes(8, "big")
        parts.append((stamp + block[8:])[: max(0, size - number * 65536)])
    return b"".join(parts)


def digest(data):
    return hashlib.md5(data).hexdigest()


FOLDER = "folder"


class Model:
    """The tree below one folder: path to MD5, or FOLDER.

    An operation whose end is not known leaves alternatives: each is a set of paths with what may be there, None for
    nothing. Such paths are not touched again.
    """

    def __init__(self):
        self.known = {}
        self.alternatives = []

    def uncertain_paths(self):
        return {path for choices in self.alternatives for choice in choices for path in choice}

    def files(self):
        return sorted(path for path, state in self.known.items() if state != FOLDER)

    def folders(self):
        return sorted(path for path, state in self.known.items() if state == FOLDER)

    def below(self, path):
        return {entry: state for entry, state in self.known.items()
                if entry == path or entry.startswith(path + "/")}

    def apply(self, change):
        """Takes over an acknowledged change: path to state."""
        for path, state in change.items():
            if state is None:
                self.known.pop(path, None)
            else:
                self.known[path] = state

    def doubt(self, change):
        """The change has been made or not."""
        before = {path: self.known.pop(path, None) for path in change}
        self.alternatives.append([before, dict(change)])

    def differences(self, found):
        """What is wrong with the tree \"found\", as sentences."""
        problems = []
        uncertain = self.uncertain_paths()
        for path, state in self.known.items():
            if found.get(path) != state:
                problems.append(f"{path} is {found.get(path)}, acknowledged was {state}")
        for path in found:
            if path not in self.known and path not in uncertain:
                problems.append(f"{path} is there, and nobody has stored it")
        for choices in self.alternatives:
            if not any(all(found.get(path) == state for path, state in choice.items())
                       for choice in choices):
                seen = {path: found.get(path) for choice in choices for path in choice}
                problems.append(f"{seen} is none of {choices}")
        return problems
