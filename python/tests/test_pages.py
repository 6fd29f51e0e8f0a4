"""The pages' Python runs, and prints what stands below it."""

import re
import signal
import subprocess
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]


def first_program(page):
    text = (ROOT / page).read_text(encoding="utf-8")
    return re.search(r"^```python\n(import orif\n.*?)^```$", text, re.MULTILINE | re.DOTALL)


def test_the_first_program_prints_live_values_until_ctrl_c():
    found = first_program("docs/python.md")
    program = found.group(1)
    shown = re.match(r"\n\n```\n(.*?)\.\.\.\n```", found.string[found.end():], re.DOTALL).group(1)
    assert first_program("README.md").group(1) == program
    process = subprocess.Popen([sys.executable, "-uc", program], text=True,
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    assert [process.stdout.readline() for _ in shown.splitlines()] == shown.splitlines(True)
    process.send_signal(signal.SIGINT)
    _, error = process.communicate(timeout=10)
    assert error.endswith("KeyboardInterrupt\n")


def test_the_page_names_what_there_is():
    import orif

    page = (ROOT / "docs/python.md").read_text(encoding="utf-8")
    for name in re.findall(r"\borif\.([A-Za-z_]\w*)", page):
        if name not in ("live", "git"):
            assert hasattr(orif, name), name
    for name in re.findall(r"\brobot\.(\w+)", page):
        assert hasattr(orif.SimulatedController, name), name
    for name in re.findall(r"\bcell\.(\w+)\(", page):
        assert hasattr(orif.Controller, name), name
    for code in re.findall(r"^```python\n(.*?)^```$", page, re.MULTILINE | re.DOTALL):
        # Some blocks stand in a coroutine of the reader's.
        compile("async def _():\n" + re.sub("^", " ", code, flags=re.MULTILINE), "docs/python.md", "exec")


def test_the_object_model_of_the_page_works():
    import numpy as np
    import orif

    page = (ROOT / "docs/python.md").read_text(encoding="utf-8")
    section = re.search(r"^## The object model\n(.*?)^## ", page, re.MULTILINE | re.DOTALL).group(1)
    names = {"orif": orif, "np": np}
    for code in re.findall(r"^```python\n(.*?)^```$", section, re.MULTILINE | re.DOTALL):
        exec(code, names)
    assert names["value"] == 42 and names["values"][0] == 120 and names["xyzwpr"][0] == 850
    assert names["registers"].SetValue(1, True) and names["table"].Refresh()
    assert names["registers"].GetValue(1) == (True, -1)
