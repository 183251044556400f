"""Parameters that mean the same in every function: explained here, once, and put into the docstrings at import."""

from __future__ import annotations

import inspect
import re
from typing import Any, Callable

COMMON = {
    "x": "x : array_like\n    Samples, real or complex, of any number of dimensions.",
    "y": "y : array_like\n    The other operand.",
    "axis": "axis : int\n    The axis along which the samples lie.",
    "dx": "dx : float, optional\n    Spacing of the samples; by default that of `x`, 1 for plain arrays.",
    "out": "out : ndarray, optional\n    Takes the result, of which it has the kind and the shape; it may be the operand itself.",
}
HEADING = "Parameters\n----------\n"


def explain_common_parameters(namespace: dict[str, Any]) -> None:
    for function in namespace.values():
        if inspect.isfunction(function) and function.__module__.startswith(__package__ + ".") and function.__doc__:
            function.__doc__ = completed(function, inspect.cleandoc(function.__doc__))


def completed(function: Callable[..., Any], doc: str) -> str:
    """The docstring with an entry for each parameter, in the order of the signature."""
    before, heading, section = doc.partition(HEADING)
    if not heading:
        before, _, after = doc.partition("Returns\n")
        own, rest = "", "Returns\n" + after
    else:
        own, _, rest = section.partition("\n\n")
    entries = dict(COMMON)
    entries.update((entry.split(" ", 1)[0], entry) for entry in re.split(r"\n(?=\S)", own) if entry)
    wanted = [entries[name] for name in inspect.signature(function).parameters if name in entries]
    return before + HEADING + "\n".join(wanted) + "\n\n" + rest if wanted else doc
