"""How far a long work has come, on a terminal."""

from __future__ import annotations

import sys
import time
from typing import Callable, Literal, Optional, TextIO, Union

Progress = Union[Callable[[int, int], None], Literal[False], None]
"""What the calls take: a callable that gets how much is done and how much there is; None for a line on the standard
error, where that is a terminal; False for nothing."""


class TerminalLine:
    """A line that appears after a second, is written anew as the work goes on, and is removed at the end."""

    def __init__(self, what: str, stream: Optional[TextIO] = None, quiet: float = 1.0) -> None:
        """`what` is the noun of what is counted; nothing is shown before `quiet` seconds have gone by."""
        self._what = what
        self._stream = stream if stream is not None else sys.stderr
        self._shows_from = time.monotonic() + quiet
        self._is_terminal = self._stream is not None and self._stream.isatty()
        self._is_on_screen = False

    def __call__(self, done: int, total: int) -> None:
        if not self._is_terminal or total <= 0 or time.monotonic() < self._shows_from:
            return
        self._is_on_screen = True
        self._stream.write(f"\r\x1b[K{done} of {total} {self._what}, {100 * done // total} %")
        self._stream.flush()

    def __enter__(self) -> TerminalLine:
        return self

    def __exit__(self, *_: object) -> None:
        if self._is_on_screen:
            self._stream.write("\r\x1b[K")
            self._stream.flush()


class Shown:
    """What is handed to the library for a `Progress`; removes its line at the end."""

    def __init__(self, progress: Progress, what: str) -> None:
        self._line = TerminalLine(what) if progress is None else None
        self._progress = progress

    def __enter__(self) -> Optional[Callable[[int, int], None]]:
        return self._line if self._line is not None else (self._progress or None)

    def __exit__(self, *_: object) -> None:
        if self._line is not None:
            self._line.__exit__()
