"""Texts of a model where people see them."""

from __future__ import annotations


def one_line(text: str) -> str:
    """The text on one line: what can't be seen, or would turn the text around it, stands there as in a literal.

    >>> one_line("a line\\nand \\u202egnirts")
    'a line\\\\nand \\\\u202egnirts'
    """
    return "".join(c if c.isprintable() else ascii(c)[1:-1] for c in text)
