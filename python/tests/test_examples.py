"""Each example is a program of its own; what it prints stands in output/."""

import subprocess
import sys
from pathlib import Path

import pytest

EXAMPLES = Path(__file__).resolve().parents[1] / "examples"


@pytest.mark.parametrize("program", sorted(p.stem for p in EXAMPLES.glob("*.py")))
def test_example(program, tmp_path):
    ended = subprocess.run(
        [sys.executable, EXAMPLES / f"{program}.py"],
        capture_output=True,
        text=True,
        timeout=60,
        cwd=tmp_path,
    )
    assert ended.stderr == ""
    assert ended.stdout == (EXAMPLES / "output" / f"{program}.txt").read_text()
