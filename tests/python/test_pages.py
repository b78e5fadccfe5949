"""The programs of the pages."""

from __future__ import annotations

import re
import subprocess
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).parents[2]


@pytest.mark.parametrize("page", ["README.md", "docs/python.md"])
def test_the_first_program_of_a_page_prints_what_it_says(page: str) -> None:
    text = (ROOT / page).read_text(encoding="utf-8")
    program = re.search(r"^```python\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
    assert program
    printed = subprocess.run([sys.executable, "-c", program[1]], cwd=ROOT, check=True, capture_output=True, text=True)
    lines = printed.stdout.splitlines()
    assert lines
    assert [line for line in lines if line not in text] == []
