"""What the package raises: `Error` with a code and a place, and a class for each kind.

>>> import dtsdb
>>> try:
...     dtsdb.open("no-such-grid.obj")
... except dtsdb.FileError as error:
...     print(error)
...     print(error.code, error.place)
no-such-grid.obj: there is no such file or folder
FILE no-such-grid.obj
"""

from __future__ import annotations

from typing import Any

from dtsdb.text import one_line


class Error(Exception):
    """Why a call has no result.

    The text is one line: what is wrong, where, and what to do.
    """

    code: str
    """A word for programs, which stays the same."""
    place: str
    """The model, file or record that it is about; empty where there is none."""

    def __init__(self, message: str = "", code: str = "INTERNAL", place: str = "") -> None:
        super().__init__(one_line(message))
        self.code = code
        self.place = place

    def __str__(self) -> str:
        return str(self.args[0]) if self.args else ""

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (str(self), self.code, self.place)


class UsageError(Error, ValueError):
    """The call asks for something that isn't there to ask for. Code `USAGE`."""


class UnknownNameError(UsageError, KeyError):
    """There is no such table or field. Code `USAGE`."""


class FileError(Error):
    """A file, folder or realtime database can't be read or written. Code `FILE`."""


class FaultyModelError(Error):
    """The validation found errors, or couldn't be finished. Code `FAULTY_MODEL`."""

    findings: list[Any]
    """What the validation has found, as far as it was made for this call (`dtsdb.Finding`)."""

    def __init__(self, message: str = "", code: str = "FAULTY_MODEL", place: str = "") -> None:
        super().__init__(message, code, place)
        self.findings = []


class UnknownComponentError(Error, LookupError):
    """The model has no such component. Code `UNKNOWN_COMPONENT`."""


class NoTopologyError(Error):
    """The rules give no topology for this model. Code `NO_TOPOLOGY`."""


class InternalError(Error):
    """Anything else, such as no memory. Code `INTERNAL`."""


class RefusedError(Error):
    """An edit is refused. The code is that of the message, such as `LD_NODE_EMPTY` (docs/messages.md)."""


CLASSES: dict[str, type[Error]] = {
    "USAGE": UsageError,
    "FILE": FileError,
    "FAULTY_MODEL": FaultyModelError,
    "UNKNOWN_COMPONENT": UnknownComponentError,
    "NO_TOPOLOGY": NoTopologyError,
    "INTERNAL": InternalError,
}


def make(code: str, message: str, place: str) -> Error:
    """The exception for a code. One that is none of `CLASSES` is that of a message on an edit."""
    return CLASSES.get(code, RefusedError)(message, code, place)
