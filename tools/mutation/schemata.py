"""Many mutants in one binary, each behind a number that is chosen when it runs.

A function with mutants gets its body once for each of them and once as it was. So one build serves
hundreds of mutants.
Source: R. Untch, A. J. Offutt, M. J. Harrold, "Mutation Analysis Using Mutant Schemata", ISSTA 1993.
"""

from source import Source

SWITCH_HEADER = "mutant_switch.h"


def mutant_name(number):
    """What the compiler calls the place of a mutant."""
    return f"mutant-{number}"


def with_switches(path, text, mutants):
    """The text with all these mutants of it, none of which is one to build alone."""
    source = Source(path, text)
    pieces, position = [f'#include "{SWITCH_HEADER}"\n#line 1 "{path}"\n'], 0
    for function in source.functions:
        inside = [m for m in mutants if function.start <= m.start and m.end <= function.end]
        if not inside:
            continue
        body = text[function.start:function.end]
        pieces.append(text[position:function.start])
        for mutant in inside:
            start, end = mutant.start - function.start, mutant.end - function.start
            mutated = body[:start] + mutant.replacement + body[end:]
            pieces.append(f'\n#line 1 "{mutant_name(mutant.number)}"\n'
                          f"if (zrb_mutant({mutant.number})) {{ {mutated}\n}} else")
        line = source.line_number(function.start)
        pieces.append(f'\n#line {line} "{path}"\n {{ {body}\n}} ')
        position = function.end
    pieces.append(text[position:])
    return "".join(pieces)


def alone(text, mutant):
    return text[:mutant.start] + mutant.replacement + text[mutant.end:]
