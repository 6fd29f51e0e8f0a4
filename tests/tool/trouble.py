"""Troubles recorders for as many seconds as the argument says, and checks what they have recorded.

A served cell is stopped, frozen and started again, its answers come late and its link drops, a
recorder is killed and runs into the end of its disk. Meanwhile R[1] and R[2] are written, counting up. In
the end every recorded value has to be one that the cell had at that time, nothing a recorder wrote
may be missing, and no row may be broken.
"""

import csv
import os
import random
import re
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

TIME_OUT = 0.5
CELL = """{"name": "Troubled", "controllers": [{"host": "cell", "behaviour": [
  {"late": {"by": "300ms", "at": "7s", "for": "2s", "every": "29s"}},
  {"late": {"by": "900ms", "at": "17s", "for": "1s", "every": "31s"}},
  {"link": {"at": "11s", "for": "1500ms", "every": "23s"}}]}]}"""


class Cell:
    """The served cell, and which counts it may have had when."""

    def __init__(self):
        self.port = 0
        self.counts = []  # (from when, until when it may be seen, the count)
        self.lives = []  # when a new cell was there
        self.start()

    def start(self):
        began = time.time()
        where = f"127.0.0.1:{self.port}"
        self.process = subprocess.Popen(
            ["orif", "simulate", "cell.json", "--serve", where], stdout=subprocess.PIPE, text=True
        )
        told = self.process.stdout.readline()
        self.port = int(re.search(r":(\d+) ", told).group(1))
        self.host = f"sim://127.0.0.1:{self.port}"
        self.lives.append(began)
        self.now_is(0, began)

    def now_is(self, count, since):
        """The count before may be seen until now, a new one from `since` on."""
        now = time.time()
        if self.counts:
            self.counts[-1][1] = now
        self.counts.append([since, float("inf"), count])

    def stop(self):
        self.process.terminate()
        self.process.wait()

    def write(self, count):
        since = time.time()
        done = subprocess.run(
            ["orif", "write", f"R[1]={count}", f"R[2]={count}", "--yes", "--host", self.host]
            + ["--time-out", str(int(TIME_OUT * 1000))],
            capture_output=True,
        )
        # A write that was refused may have come through in part, or come late.
        self.now_is(count, since)
        if done.returncode:
            before = next((c for c in reversed(self.counts[:-1])), None)
            before[1] = float("inf") if before else None

    def possible(self, begin, end):
        return {count for since, until, count in self.counts if since <= end and until >= begin}


class Recorder:
    def __init__(self, out, host):
        self.out = out
        self.host = host
        self.start()

    def start(self, blocks=None):
        command = f"exec orif record 'R[1-2]' --every 50ms --wait --append --out {self.out}"
        command += f" --host {self.host} --time-out {int(TIME_OUT * 1000)}"
        limit = f"ulimit -f {blocks}; " if blocks else ""
        self.process = subprocess.Popen(["bash", "-c", limit + command], stderr=subprocess.DEVNULL)

    def end(self, how):
        self.process.send_signal(how)
        return self.process.wait()


def rows_of(out):
    if out.endswith(".csv"):
        with open(out, newline="", encoding="utf-8") as file:
            return [(r["time"], r["link"], r["R[1]"], r["R[2]"]) for r in csv.DictReader(file)]
    with sqlite3.connect(out) as database:
        columns = 'time, link, "R[1]", "R[2]"'
        found = database.execute(f"SELECT {columns} FROM row ORDER BY rowid").fetchall()
        return [tuple("" if cell is None else str(cell) for cell in row) for row in found]


def check(out, cell, before):
    rows = rows_of(out)
    assert len(rows) >= before, f"{out} has lost rows: {len(rows)} of {before}"
    last = (0.0, 0)
    for stamp, link, first, second in rows:
        if link == "lost":
            assert (first, second) == ("", ""), f"{out}: values while the link is lost at {stamp}"
            continue
        at = time.mktime(time.strptime(stamp[:19], "%Y-%m-%dT%H:%M:%S")) - time.timezone
        at += float(stamp[19:23])
        # A refresh takes three waits at most: connecting, reading, and reading again.
        possible = cell.possible(at - 0.1, at + 3 * TIME_OUT + 0.5)
        for value in (int(first), int(second)):
            assert value in possible, f"{out}: {value} at {stamp}, possible {sorted(possible)}"
        restarted = any(last[0] - 0.5 <= life <= at + 2 for life in cell.lives)
        assert restarted or int(first) >= last[1], f"{out}: back to {first} at {stamp}"
        last = (at, int(first))
    return len(rows)


def main():
    seconds = float(sys.argv[1])
    seed = int(sys.argv[2]) if len(sys.argv) > 2 else random.randrange(1000)
    chance = random.Random(seed)
    print(f"{seconds:g} s of trouble, seed {seed}")
    os.chdir(tempfile.mkdtemp())
    with open("cell.json", "w", encoding="utf-8") as file:
        file.write(CELL)
    cell = Cell()
    recorders = [Recorder("run.csv", cell.host), Recorder("run.db", cell.host)]
    try:
        trouble_all(cell, recorders, seconds, chance)
    finally:
        for each in [cell, *recorders]:
            each.process.kill()


def trouble_all(cell, recorders, seconds, chance):
    rows = {recorder.out: 0 for recorder in recorders}
    troubles = {"stopped": 0, "frozen": 0, "killed": 0, "full": 0}
    end = time.time() + seconds
    count = 0
    while time.time() < end:
        for _ in range(chance.randrange(3, 9)):
            count += 1
            cell.write(count)
            time.sleep(chance.uniform(0, 0.2))
        trouble = chance.choice(list(troubles))
        troubles[trouble] += 1
        recorder = chance.choice(recorders)
        if trouble == "stopped":
            cell.stop()
            time.sleep(chance.uniform(0, 2))
            cell.start()
        elif trouble == "frozen":
            cell.process.send_signal(signal.SIGSTOP)
            time.sleep(chance.uniform(0.1, 3 * TIME_OUT))
            cell.process.send_signal(signal.SIGCONT)
        elif trouble == "killed":
            recorder.end(signal.SIGKILL)
            rows[recorder.out] = check(recorder.out, cell, rows[recorder.out])
            recorder.start()
        else:
            recorder.end(signal.SIGTERM)
            size = os.path.getsize(recorder.out) if os.path.exists(recorder.out) else 0
            recorder.start(blocks=size // 1024 + chance.randrange(1, 3))
            time.sleep(chance.uniform(0.5, 2))
            recorder.end(signal.SIGTERM)
            rows[recorder.out] = check(recorder.out, cell, rows[recorder.out])
            recorder.start()
    time.sleep(1)
    for recorder in recorders:
        assert recorder.end(signal.SIGTERM) == 0, f"{recorder.out}: the recorder ended by itself"
        rows[recorder.out] = check(recorder.out, cell, rows[recorder.out])
        assert rows[recorder.out] > seconds / 5, f"{recorder.out}: only {rows[recorder.out]} rows"
    cell.stop()
    print(", ".join(f"{number} times {name}" for name, number in troubles.items()))
    print(", ".join(f"{number} rows in {out}" for out, number in rows.items()) + ": all are true")


main()
