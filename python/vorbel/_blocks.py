"""How a call over many points is laid out: broadcasting without copies, and blocks between which signals are heard."""

from __future__ import annotations

import math
from collections.abc import Collection, Iterator, Mapping
from typing import Any, Literal, NamedTuple, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from vorbel._core import LookSide

Floats = NDArray[np.float64]
Side = Union[LookSide, Literal["left", "right"]]
_SUPPOSED_ZERO = {"height", "range_rate", "pitch", "yaw", "roll"}

Spread = Literal["one", "lines", "samples", "points"]

# Points of a block: some tens of milliseconds of work, after which Python hears Ctrl-C. What a block needs of a scene
# that is broadcast in a way which the library does not know is copied, so this also bounds memory.
BLOCK = 1 << 20


def look_side(side: Side) -> LookSide:
    """Return the side by its name.

    :raises ValueError: neither left nor right
    """
    if isinstance(side, LookSide):
        return side
    if side not in ("left", "right"):
        raise ValueError(f"a radar looks to the 'left' or to the 'right', not to {side!r}")
    return LookSide[side]


def thread_count(threads: int) -> int:
    """Return the number of threads, 0 for one for each processor.

    :raises ValueError: a negative number
    """
    if threads < 0:
        raise ValueError(f"threads is 0 (one for each processor) or a number of them, not {threads}")
    return threads


def numbers(values: ArrayLike, name: str) -> Floats:
    """Return float64, without a copy of what is that already.

    :raises TypeError: no real numbers
    """
    array: NDArray[Any] = np.asarray(values)
    if array.dtype.kind not in "fiu":
        raise TypeError(f"{name} must be real numbers, not {array.dtype}")
    return np.asarray(array, np.float64)


class Block(NamedTuple):
    """Lines and samples of a scene, ends excluded."""

    line: int
    last_line: int
    sample: int
    last_sample: int


class Layout:
    """The scene that the arrays of a call are broadcast to: its last axis are the samples of a line."""

    def __init__(self, **arrays: Floats) -> None:
        """Broadcast the arrays together.

        :raises ValueError: shapes that do not fit each other
        """
        try:
            self.shape = np.broadcast_shapes(*(array.shape for array in arrays.values()))
        except ValueError:
            shapes = ", ".join(f"{name} {array.shape}" for name, array in arrays.items())
            raise ValueError(f"these shapes cannot be broadcast together: {shapes}") from None
        self.samples = self.shape[-1] if self.shape else 1
        self.lines = math.prod(self.shape[:-1])

    def inputs(self, arrays: Mapping[str, Floats], takes: Mapping[str, Collection[Spread]]) -> dict[str, Input]:
        """Spread arrays over the scene, each in a way that the library takes beside a value for each point.

        Those that are 0 for all points where 0 is what the library supposes are left out: it is faster without them.
        """
        return {
            name: Input(self, array, takes.get(name, ()))
            for name, array in arrays.items()
            if name not in _SUPPOSED_ZERO or array.size != 1 or array.item() != 0.0
        }

    def outputs(self, arrays: Mapping[str, NDArray[Any]], block: Block) -> dict[str, NDArray[Any]]:
        """Return the parts of whole arrays that a block fills."""
        line, last_line, sample, last_sample = block
        return {
            name: array.reshape(self.lines, self.samples)[line:last_line, sample:last_sample].reshape(-1)
            for name, array in arrays.items()
        }

    def blocks(self, size: int = BLOCK) -> Iterator[Block]:
        """Cut the scene into whole lines or, where one is longer than a block, into parts of lines."""
        lines = max(size // max(self.samples, 1), 1)
        samples = min(max(self.samples, 1), size)
        for line in range(0, self.lines, lines):
            for sample in range(0, self.samples, samples):
                yield Block(line, min(line + lines, self.lines), sample, min(sample + samples, self.samples))


class Input:
    """An array as it is spread over a scene; only what is spread in no way that the library takes is copied."""

    def __init__(self, layout: Layout, array: Floats, takes: Collection[Spread]) -> None:
        """See Layout.inputs()."""
        self._values: Floats
        self._spread: Spread
        if array.size == 1 and "one" in takes:
            self._spread = "one"
            self._values = array.reshape(1)
        elif "samples" in takes and array.size == layout.samples == array.shape[-1]:
            self._spread = "samples"
            self._values = np.ascontiguousarray(array.reshape(-1))
        elif "lines" in takes and array.ndim > 0 and array.shape[-1] == 1:
            self._spread = "lines"
            self._values = np.ascontiguousarray(np.broadcast_to(array[..., 0], layout.shape[:-1]).reshape(-1))
        else:
            self._spread = "points"
            self._values = np.broadcast_to(array, layout.shape).reshape(layout.lines, layout.samples)

    def of(self, block: Block) -> Floats:
        """Return the values of a block as the library takes them."""
        line, last_line, sample, last_sample = block
        if self._spread == "one":
            return self._values
        if self._spread == "samples":
            return self._values[sample:last_sample]
        if self._spread == "lines":
            return self._values[line:last_line]
        return np.ascontiguousarray(self._values[line:last_line, sample:last_sample]).reshape(-1)
