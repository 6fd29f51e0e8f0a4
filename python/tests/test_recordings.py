"""Recordings are the tool's files."""

import math
import re
import shutil
import subprocess
import threading

import orif
import pytest


@pytest.mark.parametrize("ending", ["csv", "db"])
def test_what_is_recorded_reads_back(ending, tmp_path, orif_robot, orif_connect):
    path = tmp_path / f"run.{ending}"
    orif_robot["R[2]"] = 42.7
    orif_robot["SR[1]"] = '7, "x"'
    cell = orif_connect(["R[1-3]", "SR[1]", "DO[1]", "PR[1]"])
    orif_robot["R[3]"] = 1
    with cell.watch(0.002, lambda change: None):  # others may refresh meanwhile
        recorded = orif.record(cell, path, every=0.02, count=3)
    assert recorded[:2] == (3, 0) and str(recorded) == f"3 rows in {path}"
    orif_robot["R[3]"] = 0.25
    timer = threading.Timer(0.05, orif_robot.cut_link)
    timer.start()
    back = threading.Timer(0.2, orif_robot.restore_link)
    back.start()
    more = orif.record(cell, path, every=0.02, duration=0.6, append=True)
    assert more.gaps == 1 and more.rows > 3

    columns = orif.read_recording(path, pandas=False)
    assert list(columns)[:6] == ["time", "seconds", "link", "R[1]", "R[2]", "R[3]"]
    assert columns["link"][:4] == ["up", "up", "up", "back"] and columns["link"].count("lost") == 1
    lost = columns["link"].index("lost")
    assert columns["R[2]"][0] == 42.7 and columns["R[2]"][lost] is None
    assert columns["R[3]"][0] == 1 and columns["R[3]"][-1] == 0.25
    assert columns["SR[1]"][0] == '7, "x"' and columns["SR[1]"][lost] is None
    assert columns["DO[1]"][0] == 0 and columns["PR[1].X"][0] is None
    assert columns["time"][0].tzinfo is not None and columns["seconds"][0] == 0
    pytest.importorskip("pandas")
    frame = orif.read_recording(path)
    assert list(frame.columns) == list(columns) and len(frame) == len(columns["time"])
    assert str(frame.dtypes["time"]) == "datetime64[ns, UTC]" and frame["R[2]"].dtype == float
    assert math.isnan(frame["R[2]"][lost]) and frame["R[2]"][0] == 42.7
    if shutil.which("orif"):
        listed = subprocess.run(["orif", "plot", path, "--columns"], capture_output=True, text=True)
        assert listed.stdout.split()[:3] == ["R[1]", "R[2]", "R[3]"]
        assert orif.SimulatedCell(path)["cell1" if ending == "db" else "demo"]["R[2]"] == pytest.approx(42.7)


def test_a_recording_that_cannot_be_made_says_why(tmp_path, orif_robot, orif_connect):
    cell = orif_connect(["R[1]"])
    path = tmp_path / "run.csv"
    orif.record(cell, path, every=0.001, count=1)
    with pytest.raises(orif.UsageError, match="exists; .* with replace=True, or .* append=True"):
        orif.record(cell, path)
    with pytest.raises(orif.UsageError, match="ends in .csv"):
        orif.record(cell, "run.txt")
    with pytest.raises(orif.UsageError, match="other columns|it has the columns"):
        orif.record(orif_connect(["R[2]"]), path, append=True, count=1)
    with pytest.raises(orif.UsageError, match="none.csv is no recording"):
        orif.read_recording(tmp_path / "none.csv")
    (tmp_path / "odd.csv").write_text("a,b\n1,2\n")
    with pytest.raises(orif.UsageError, match="no columns time"):
        orif.read_recording(tmp_path / "odd.csv")
    for rows, said in [
        ("t,x,up,1\n", "row 1 has no time in seconds but 'x'"),
        ("t,1,up,1\nt,0,up,1\n", "row 2 is earlier than the one before"),
        ("t,0,u,1\n", "row 1 has no link 'up', 'lost' or 'back' but 'u'"),
        ("t,0,up\n", "row 1 has too few or many values"),
        ("t,0,up,1\n", "odd.csv is no recording: time data 't'"),
    ]:
        (tmp_path / "odd.csv").write_text("time,seconds,link,R[1]\n" + rows)
        with pytest.raises(orif.UsageError, match=said):
            orif.read_recording(tmp_path / "odd.csv")
    for column in ("time", "R[1]"):
        (tmp_path / "odd.csv").write_text(f"time,seconds,link,R[1],{column}\nt,0,up,1,1\n")
        with pytest.raises(orif.UsageError, match=f"it has the column {re.escape(column)} twice"):
            orif.read_recording(tmp_path / "odd.csv")
    for wrong in ({"append": True, "replace": True}, {"duration": -1}, {"count": 0}):
        with pytest.raises(orif.UsageError):
            orif.record(cell, tmp_path / "odd.csv", **{"replace": True, **wrong})
    with path.open("a") as file:
        file.write("cut off")
    with pytest.warns(UserWarning, match="incomplete line"):
        orif.record(cell, path, every=0.001, count=1, append=True)
    orif_robot.cut_link()
    with pytest.raises(orif.NotConnected):
        orif.record(cell, tmp_path / "off.csv", count=1)
    threading.Timer(0.1, orif_robot.restore_link).start()
    assert orif.record(cell, tmp_path / "off.csv", every=0.05, duration=0.5, wait=True).rows > 0
    rotated = orif.record(cell, tmp_path / "turn.csv", every=0.01, count=6, rotate_after=0.02)
    assert rotated.rows == 6 and len(list(tmp_path.glob("turn-*.csv"))) >= 2
