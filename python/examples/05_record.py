"""Records a few rows to a database and reads them back. The files are those of the tool."""

import tempfile
from pathlib import Path

import orif

with tempfile.TemporaryDirectory() as folder:
    run = Path(folder) / "run.db"
    with orif.Controller("demo", ["R[1-3]", "DO[1]", "SR[1]"], simulate=True) as cell:
        recorded = orif.record(cell, run, every=0.02, count=4)
    print(recorded.rows, "rows, link lost", recorded.gaps, "times")

    columns = orif.read_recording(run, pandas=False)  # without it a DataFrame, if there is pandas
    for name, values in columns.items():
        if name not in ("time", "seconds"):
            print(name, values)
