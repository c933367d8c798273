"""The changes that mutation makes: each operator yields (start, end, replacement) in a text."""

import re
from collections import namedtuple

from source import matching

Change = namedtuple("Change", "kind start end replacement")

# Binary operators stand between blanks; brackets of templates and declarators do not.
_REPLACED_OPERATORS = {
    "comparison": {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="},
    "logic": {"&&": "||", "||": "&&"},
    "arithmetic": {"+": "-", "-": "+", "*": "/", "/": "*", "%": "/", "+=": "-=", "-=": "+=",
                   "<<": ">>", ">>": "<<", "&": "|", "|": "&", "^": "|", "|=": "&=", "&=": "|=",
                   "^=": "|="},
}
# What stands for its opposite.
_COUNTERPARTS = [
    ("left", "right"), ("first", "last"), ("make_red", "make_black"), ("successor", "predecessor"),
    ("smallest", "largest"), ("lock_handle", "unlock_handle"), ("keysCache", "valuesCache"),
    ("min", "max"), ("Forwards", "Backwards"), ("side", "other"), ("signed", "unsigned"),
    ("as_stored", "utf8"), ("REALLockObject", "REALUnlockObject"),
    ("REALLockString", "REALUnlockString"), ("break", "continue"), ("lower_bound", "upper_bound"),
    ("lend", "hand_out"), ("mine", "theirs"), ("begin", "end"), ("source", "target"),
]
_OPPOSITE = {a: b for pair in _COUNTERPARTS for a, b in (pair, pair[::-1])}
_INTEGER = re.compile(r"(?<![\w.])(0[xX][0-9A-Fa-f]+|\d+)([uUlL]*)(?![\w.])")
_DECLARATION = re.compile(
    r"(?:const |constexpr |static |using |typename |struct |auto |Buckets |friend |"
    r"(?:std::)?[A-Za-z_][\w:]*(?:<[^;=]*>)?[&*]* [&*]*\w+(?:\[\w*\])?(?:;| = |\(|\{))")
_NOT_A_TYPE = ("return", "delete", "throw", "new", "else", "goto", "case")


def expression_changes(source, start, end):
    """Changes within expressions; they may stand anywhere."""
    code = source.code
    for kind, replaced in _REPLACED_OPERATORS.items():
        for match in re.finditer(r"(?<=[ \n])([<>=!&|+\-*/%^]+)(?=[ \n])", code[start:end]):
            if match.group() in replaced:
                yield Change(kind, start + match.start(), start + match.end(), replaced[match.group()])
    for match in re.finditer(r"\+\+|--", code[start:end]):
        opposite = "--" if match.group() == "++" else "++"
        yield Change("arithmetic", start + match.start(), start + match.end(), opposite)
    for match in re.finditer(r"!(?=[\w(*~])", code[start:end]):
        yield Change("negation", start + match.start(), start + match.end(), "")
    for match in re.finditer(r"~(?=[a-z(])(?!\w*\(\))", code[start:end]):
        yield Change("arithmetic", start + match.start(), start + match.end(), "")
    for match in _INTEGER.finditer(code, start, end):
        yield from _other_integers(match)
    for match in re.finditer(r"\b(true|false)\b", code[start:end]):
        other = "false" if match.group() == "true" else "true"
        yield Change("constant", start + match.start(), start + match.end(), other)
    for match in re.finditer(r"\b\w+\b", code[start:end]):
        if match.group() in _OPPOSITE:
            yield Change("counterpart", start + match.start(), start + match.end(),
                         _OPPOSITE[match.group()])
    yield from _choices(code, start, end)
    for first, last in source.strings:
        if start <= first and last <= end:
            yield Change("text", first, last, _other_text(source.text[first:last]))


def _other_integers(match):
    text, suffix = match.groups()
    number = int(text, 0)
    wrong = [1] if number == 0 else [0] if number == 1 else [number + 1, number - 1]
    for value in wrong:
        shown = hex(value).replace("0x", "0x") if text.lower().startswith("0x") else str(value)
        yield Change("constant", match.start(), match.end(), shown + suffix)


def _other_text(literal):
    return '"x"' if literal == '""' else literal[:-2] + '"' if literal[-3:-2] != "\\" else '"x"'


def _choices(code, start, end):
    """`c ? a : b` with c negated."""
    for match in re.finditer(r"\s\?\s", code[start:end]):
        mark = start + match.start()
        depth = 0
        position = mark - 1
        while position > start:
            character = code[position]
            if character in ")]}":
                depth += 1
            elif character in "([{":
                if depth == 0:
                    break
                depth -= 1
            elif depth == 0 and (character in ";," or code[position - 1:position + 2] == " = "
                                 or code[position - 6:position + 1] == "return "):
                break
            position -= 1
        begin = position + 1
        while code[begin].isspace():
            begin += 1
        condition = code[begin:mark]
        if not re.search(r"[=!<>]=| [<>] ", condition):  # else a comparison is turned round
            yield Change("negation", begin, mark, f"!({condition})")


def statement_changes(source, function):
    """Changes of whole statements in a function: removed, swapped, negated, other results."""
    for block in function.blocks:
        statements = source.statements(block)
        for index, statement in enumerate(statements):
            if _is_declaration(statement.text) and _is_named_later(source, statement, function):
                continue
            if index == len(statements) - 1 and _gives_result(source, function, block, statement):
                continue
            yield Change("removal", statement.start, statement.end, ";")
        for first, second in zip(statements, statements[1:]):
            if not (_may_move(first) and _may_move(second)):
                continue
            if source.code[first.end:second.start].strip():
                continue  # a block lies between them
            if not _names(first.text) & _names(second.text):
                continue  # without a name in common, order hardly ever matters
            text = source.text
            yield Change("order", first.start, second.end,
                         text[second.start:second.end] + text[first.end:second.start]
                         + text[first.start:first.end])
    code = source.code
    for match in re.finditer(r"\b(if|while) \(", code[function.start:function.end]):
        opening = function.start + match.end() - 1
        yield from _negated_condition(code, opening)
    for match in re.finditer(r"\breturn (?=[^;])", code[function.start:function.end]):
        start = function.start + match.end()
        end = _end_of_statement(code, start)
        if code[start:end] not in ("true", "false", "nullptr", "0", "{}"):
            yield Change("result", start, end, "{}")


def _names(text):
    return set(re.findall(r"[A-Za-z_]\w*", text))


def _end_of_statement(code, position):
    """Where the semicolon stands that ends what goes on here."""
    while code[position] != ";":
        position = matching(code, position) + 1 if code[position] in "([{" else position + 1
    return position


def _negated_condition(code, opening):
    closing = matching(code, opening)
    start = opening + 1
    inner = code[start:closing]
    if ";" in inner:
        start += inner.index(";") + 1
        inner = code[start:closing]
    elif re.search(r"\w [*&]?\w+ = | = ", inner):
        return
    compound = re.search(r"&&|\|\|", inner)
    if not compound and (re.search(r"[=!<>]= | [<>] ", inner) or inner.strip().startswith("!")):
        return  # turned round by another operator
    yield Change("negation", start, closing, f"!({inner.strip()})")


def _is_declaration(text):
    match = _DECLARATION.match(text)
    return match is not None and not text.startswith(tuple(word + " " for word in _NOT_A_TYPE))


def _may_move(statement):
    text = statement.text
    return (statement.simple and not _is_declaration(text)
            and not re.match(r"(return|break|continue|throw|if|for|while|else|case|catch)\b", text))


def _gives_result(source, function, block, statement):
    """Whether, without this statement, a function or lambda would end without a result."""
    before = source.code[:block.start - 1].rstrip()
    is_body = block.start == function.start or re.search(
        r"\](?:\s*\([^()]*\))?(?:\s*mutable)?$", before)
    return is_body and re.match(r"return [^;]", statement.text)


def _is_named_later(source, statement, function):
    head = re.split(r" = |[({;]", statement.text)[0]
    names = re.findall(r"\w+", head)
    if not names:
        return True
    return re.search(rf"\b{names[-1]}\b", source.code[statement.end:function.end]) is not None
