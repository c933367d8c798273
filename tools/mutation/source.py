"""C++ files as the mutation needs them: text without comments, function bodies, statements.

This is no parser of C++: it relies on how this project is written and formatted. What it takes
wrongly for a mutant does not compile, and is dropped and counted as such.
"""

import bisect
import re
from dataclasses import dataclass, field

# Branches of the preprocessor that a 64-bit build with gcc does not compile.
_INACTIVE_BRANCHES = (
    ("#ifdef __SIZEOF_INT128__", "else"),
    ("#if defined(__GNUC__)", "else"),
    ("#ifdef _WIN32", "if"),
)
_TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'', re.S)
_BLOCK_WORDS = ("else", "do", "try", "mutable", "const", "noexcept")
_TYPE_HEADER = re.compile(r"^(?:struct|class|enum|union|namespace|extern)\b")


@dataclass
class Block:
    """What stands between two braces: from behind the first to before the second."""
    start: int
    end: int


@dataclass
class Function(Block):
    name: str
    compile_time: bool = False
    blocks: list = field(default_factory=list)  # the body first, then what is nested


@dataclass
class Statement:
    start: int
    end: int  # behind the semicolon
    text: str  # without comments
    simple: bool  # neither a block nor what steers one


class Source:
    def __init__(self, path, text):
        self.path = path
        self.text = text
        self.strings = []  # spans of string literals, with their quotes
        self.code = self._without_comments()
        self._line_starts = [0] + [m.end() for m in re.finditer("\n", text)]
        self.functions = self._find_functions()

    def line_number(self, position):
        return bisect.bisect_right(self._line_starts, position)

    def line_span(self, start, end):
        """The whole lines in which [start, end) lies."""
        first = self._line_starts[self.line_number(start) - 1]
        last = self.text.find("\n", max(start, end - 1))
        return first, len(self.text) if last < 0 else last

    def function_at(self, position):
        for function in self.functions:
            if function.start <= position < function.end:
                return function
        return None

    def _without_comments(self):
        """The text with blanks for comments, preprocessor lines and inactive branches, and with
        empty string literals: every position means the same as in the text."""
        def blank(piece):
            return re.sub(r"[^\n]", " ", piece)

        def replace(match):
            piece = match.group()
            if piece.startswith("/"):
                return blank(piece)
            if piece.startswith('"'):
                self.strings.append((match.start(), match.end()))
            return piece[0] + "_" * (len(piece) - 2) + piece[-1]

        lines = _TOKEN.sub(replace, self.text).split("\n")
        inactive = False
        open_conditions = []
        continued = False
        for number, line in enumerate(lines):
            stripped = line.strip()
            if stripped.startswith("#") or continued:
                if stripped.startswith("#if"):
                    sides = [side for condition, side in _INACTIVE_BRANCHES if stripped == condition]
                    open_conditions.append(sides[0] if sides else None)
                    inactive = "if" in open_conditions
                elif stripped.startswith("#else") and open_conditions:
                    inactive = open_conditions[-1] == "else"
                elif stripped.startswith("#endif") and open_conditions:
                    open_conditions.pop()
                    inactive = False
                continued = stripped.endswith("\\")
                lines[number] = blank(line)
            elif inactive:
                lines[number] = blank(line)
        code = "\n".join(lines)
        self.strings = [(start, end) for start, end in self.strings if code[start] == '"']
        return code

    def _find_functions(self):
        functions = []
        scopes = []
        position = header_start = 0
        code = self.code
        while position < len(code):
            character = code[position]
            if character in ";}":
                if character == "}" and scopes:
                    scopes.pop()
                header_start = position + 1
            elif character == "{":
                header = _without_template_prefix(
                    re.sub(r"\b(public|private|protected):", " ", code[header_start:position]).strip())
                close = matching(code, position)
                if _TYPE_HEADER.match(header):
                    scopes.append(_type_name(header))
                    header_start = position + 1
                elif "(" in header and not _is_assigned(header):
                    name = "::".join([scope for scope in scopes if scope] + [_function_name(header)])
                    function = Function(position + 1, close, name,
                                        compile_time=header.startswith("consteval"))
                    function.blocks = self._find_blocks(function)
                    functions.append(function)
                    position = close
                    header_start = close + 1
                else:  # an initialiser
                    position = close
            position += 1
        return functions

    def _find_blocks(self, body):
        blocks = [Block(body.start, body.end)]
        for match in re.finditer("{", self.code[body.start:body.end]):
            position = body.start + match.start()
            if self._opens_block(position):
                blocks.append(Block(position + 1, matching(self.code, position)))
        return blocks

    def _opens_block(self, position):
        before = self.code[:position].rstrip()
        if before[-1] in ");{}":
            return True
        word = re.search(r"\w+$", before)
        return word is not None and word.group() in _BLOCK_WORDS

    def statements(self, block):
        """The statements directly in a block, without those that are declarations of types."""
        result = []
        position = start = block.start
        holds_block = False
        code = self.code
        while position < block.end:
            character = code[position]
            if character in "([":
                position = matching(code, position)
            elif character == "{":
                opens_block = self._opens_block(position)
                position = matching(code, position)
                if opens_block:
                    holds_block = True
                    rest = code[position + 1:block.end].lstrip()
                    if rest[:1] not in (";", ",", ")", ".") and not rest.startswith(("else", "catch", "while")):
                        start = position + 1
                        holds_block = False
            elif character == ";":
                text = code[start:position + 1]
                begin = start + len(text) - len(text.lstrip())
                result.append(Statement(begin, position + 1, text.strip(), not holds_block))
                start = position + 1
                holds_block = False
            position += 1
        return result


def matching(code, position):
    """Where the bracket closes that opens at the position."""
    opening = code[position]
    closing = {"(": ")", "[": "]", "{": "}"}[opening]
    depth = 0
    for index in range(position, len(code)):
        if code[index] == opening:
            depth += 1
        elif code[index] == closing:
            depth -= 1
            if depth == 0:
                return index
    raise ValueError(f"a {opening} that is never closed")


def _is_assigned(header):
    """Whether the text initialises something, rather than heading a function."""
    depth = 0
    for index, character in enumerate(header):
        depth += (character in "([") - (character in ")]")
        if depth == 0 and header[index:index + 3] in (" = ", " ="):
            return True
    return header[-1] in "=,("


def _without_template_prefix(header):
    while header.startswith("template"):
        depth = 0
        for index, character in enumerate(header):
            if character == "<":
                depth += 1
            elif character == ">" and header[index - 1] != "-":
                depth -= 1
                if depth == 0:
                    header = header[index + 1:].strip()
                    break
        else:
            return header
    return header


def _type_name(header):
    words = re.match(r"(?:struct|class|enum class|enum|union)\s+(\w+)", header)
    return words.group(1) if words else ""


def _function_name(header):
    match = re.search(r"((?:\w+::)*(?:operator\s*(?:\(\)|[^\s(]+)|~?\w+))\s*\(", header)
    return re.sub(r"\s", "", match.group(1)) if match else "?"
