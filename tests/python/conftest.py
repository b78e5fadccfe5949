"""Where the tests get what stands outside the package."""

from __future__ import annotations

import os
import subprocess

import numpy as np
import pytest
from numpy.typing import NDArray


@pytest.fixture(scope="session")
def operations() -> dict[str, NDArray[np.float64]]:
    """Every value that each operation of the C++ class returns over a fixed set of inputs, by the operation's name."""
    program = os.environ.get("VORBEL_BITS")
    if not program:
        pytest.skip("VORBEL_BITS names no vorbel_bits, the program that prints what the C++ class returns")
    lines = subprocess.run([program, "--all"], check=True, capture_output=True, text=True).stdout.splitlines()
    words = (line.split() for line in lines)
    return {name: np.array([int(bits, 16) for bits in values], np.uint64).view(np.float64) for name, *values in words}
