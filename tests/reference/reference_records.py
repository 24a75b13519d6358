"""A second, plain implementation of the records of a model input file, to compare the plug-in with.

It is written to be read against the rules, not to be fast: numbers are exact fractions made from the bits
of a single, and a layout string is parsed when it is used. A value is an int (an integer), a Real (the bits
of a real) or bytes (a text).
"""

import re
from fractions import Fraction
from functools import lru_cache

DIGITS = 8  # significant digits that are taken from a real


class Real(int):
    """A real as the 32 bits of a single."""

    @property
    def negative(self):
        return self >> 31 == 1 and self & 0x7FFFFFFF != 0 and self.name != "NaN"

    @property
    def name(self):
        """INF or NaN; empty for a number."""
        if self >> 23 & 0xFF != 0xFF:
            return ""
        return "NaN" if self & 0x7FFFFF else "INF"


@lru_cache(maxsize=None)
def leading_digits(value):
    """(D, k): the magnitude is 0.D1D2D3... times 10**k, and D holds D1 to D8 as a whole number. Zero: (0, 0)."""
    exponent, fraction = value >> 23 & 0xFF, value & 0x7FFFFF
    if exponent:
        fraction |= 1 << 23
    magnitude = fraction * Fraction(2) ** (max(exponent, 1) - 150)
    scale = 60  # the smallest single, 1.4E-45, still has more than eight digits before the point
    shown = str(int(magnitude * 10**scale))
    return (int(shown[:DIGITS]), len(shown) - scale) if magnitude else (0, 0)


def rounded(digits, k, places):
    """Rounds to `places` after the point. The digit after the last one shown decides, or else the eighth."""
    deciding = min(k + places + 1, DIGITS)
    if deciding < 1:
        return digits, k
    unit = 10 ** (DIGITS - deciding)
    if digits // unit % 10 >= 5:
        digits = (digits // (10 * unit) + 1) * 10 * unit
    return (digits // 10, k + 1) if digits == 10**DIGITS else (digits, k)


def fixed_point(digits, k, places):
    """(whole, fraction) of rounded digits; whole is "0" for a magnitude below 1."""
    shown = str(int(digits * Fraction(10) ** (k - DIGITS + places))).zfill(places + 1)
    point = len(shown) - places
    return shown[:point], shown[point:]


@lru_cache(maxsize=None)
def real_field(value, width, places):
    if value.name:
        text = "-" * value.negative + value.name
    else:
        whole, fraction = fixed_point(*rounded(*leading_digits(value), places), places)
        sign = "-" if value.negative and (whole + fraction).strip("0") else ""
        if whole == "0" and len(sign) + 1 + places == width:
            whole = ""
        text = f"{sign}{whole}.{fraction}"
    return text.rjust(width) if len(text) <= width else "*" * width


@lru_cache(maxsize=None)
def free_real(value):
    sign = "-" * value.negative
    if value.name:
        return sign + value.name
    digits, exponent = leading_digits(value)
    k = rounded(digits, exponent, 7)[1]
    if 0 <= k <= 6:
        shown, k = rounded(digits, exponent, 6 - k)
        if k <= 6:
            return sign + ".".join(fixed_point(shown, k, 6 - k))
    digits, k = rounded(digits, exponent, 7 - exponent)
    return f"{sign}{str(digits)[0]}.{str(digits)[1:7]}E{k - 1:+03d}"


def integer_field(value, width):
    return str(value).rjust(width) if len(str(value)) <= width else "*" * width


@lru_cache(maxsize=None)
def parsed(layout):
    """The items of a layout string in order, repeats expanded: literals as bytes, others as tuples."""
    tokens = iter(re.findall(r"'(?:[^']|'')*'|\d+|[A-Za-z(),.]", layout))

    def group():
        items = []
        while True:
            token = next(tokens)
            repeat, token = (int(token), next(tokens)) if token.isdigit() else (1, token)
            letter = token.upper()
            if token[0] == "'":
                items.append(token[1:-1].replace("''", "'").encode("latin-1"))
            elif token == "(":
                items += group() * repeat
            elif letter == "X":
                items.append(b" " * repeat)
            elif letter in "IA":
                items += [(letter, int(next(tokens)))] * repeat
            elif letter == "F":
                width, _, places = int(next(tokens)), next(tokens), int(next(tokens))
                items += [(letter, width, places)] * repeat
            else:
                raise ValueError(f"{layout}: {token} begins no item")
            token = next(tokens)
            if token == ")":
                return items
            if token != ",":
                raise ValueError(f"{layout}: {token} instead of a comma")

    if next(tokens) != "(":
        raise ValueError(f"{layout}: no parenthesis")
    return group()


def record(layout, *values):
    """A record of fixed columns, with its line end."""
    line, rest = b"", list(values)
    for item in parsed(layout):
        if isinstance(item, bytes):
            line += item
            continue
        value, (letter, width, *places) = rest.pop(0), item
        if letter == "A":
            line += value[:width].rjust(width)
        elif letter == "F":
            line += real_field(value, width, *places).encode()
        else:
            line += integer_field(value, width).encode()
    assert not rest, layout
    return line + b"\r\n"


def free_record(*values):
    """A record without columns, with its line end."""
    line, after_text = b"", False
    for value in values:
        if isinstance(value, bytes):
            line += (b"" if after_text else b" ") + value
        else:
            text = free_real(value) if isinstance(value, Real) else str(value)
            line += (" " if text.startswith("-") else "  ").encode() + text.encode()
        after_text = isinstance(value, bytes)
    return line + b"\r\n"
