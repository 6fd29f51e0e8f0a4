"""Troubles a plant: a broker, served cells and a gateway, each a process of its own.

    trouble.py SECONDS [SEED [TROUBLE...]]

makes all the troubles below, and again in another order until the time is over. R[1] of each cell
counts the time of the cell from a number of its own, and R[2] has its negative: a value that was
invented, mixed up or dated wrongly is none that the cell can have had. After each trouble what was
published, what the buffer file holds, and what /metrics and the retained states show have to agree.
"""

import collections
import contextlib
import json
import os
import random
import re
import resource
import shutil
import signal
import socket
import sqlite3
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request

from subscriber import SESSION, Subscriber, Wrong, check, need, retained, seconds_of

CELLS = 20
TICK = 0.01  # of R[1], in seconds
OF_A_CELL = 10_000_000  # the counts of a cell
LENGTH = 3_600_000  # in ticks
SLACK = 1.5  # how late a busy machine may be, in seconds
TIME_OUT = 0.5
LOG = re.compile(r"time=\S+Z level=(debug|info|notice|warning|error) event=\w+( \w+=(\"(\\.|[^\"\\])*\"|\S*))*")


def free_port():
    with socket.socket() as one:
        one.bind(("127.0.0.1", 0))
        return one.getsockname()[1]


def until(what, condition, most=20.0):
    """Waits for the condition, which is given as a function; the result is what it returned."""
    end = time.time() + most
    while not (result := condition()):
        need(time.time() < end, f"not within {most:g} s: {what}")
        time.sleep(0.02)
    return result


class Server:
    """A process that serves cells; each start makes new cells."""

    def __init__(self, first, last):
        self.cells = range(first, last + 1)
        self.file = f"cells{first}.json"
        self.port = free_port()
        self.lives = []  # from when until when their time may have begun
        counts = {"from": 0, "to": LENGTH, "over": f"{LENGTH * TICK:g}s"}
        up = [{k: v if k == "over" else c * OF_A_CELL + v for k, v in counts.items()} for c in self.cells]
        down = [{k: v if k == "over" else -v for k, v in each.items()} for each in up]
        with open(self.file, "w", encoding="utf-8") as file:
            controllers = [
                {
                    "host": f"cell{cell}",
                    "sizes": {"numericRegisters": 10, "stringRegisters": 5},
                    "behaviour": [
                        {"what": "R[1]", "ramp": up[i]},
                        {"what": "R[2]", "ramp": down[i]},
                        {"what": "DO[1]", "cycle": [[1, "300ms"], [0, "200ms"]]},
                        {"alarm": {"id": 1, "number": 2, "at": "1s", "message": HOSTILE[0].decode()}},
                    ],
                }
                for i, cell in enumerate(self.cells)
            ]
            json.dump({"name": "Troubled", "controllers": controllers}, file)
        self.start()

    def start(self):
        began = time.time()
        command = ["orif", "simulate", self.file, "--serve", f"127.0.0.1:{self.port}"]
        self.process = subprocess.Popen(command, stdout=subprocess.PIPE)
        need(self.process.stdout.readline(), f"{self.file} is not served")
        self.lives.append((began - 0.1, time.time() + SLACK))


class Plant:
    def __init__(self, form="tags", period="100ms", buffer="100MB", clock=False):
        self.form = form
        self.period = float(period[:-2]) / 1000
        self.port, self.metrics_port = free_port(), free_port()
        self.clocks = [0.0]  # by how much the gateway's clock has been wrong
        self.dropped = 0
        self.broker = self.gateway = self.subscriber = None
        with open("broker.conf", "w", encoding="utf-8") as file:
            file.write(
                f"listener {self.port} 127.0.0.1\nallow_anonymous true\nuser root\n"
                f"persistence true\npersistence_location {os.getcwd()}/\n"
                "max_queued_messages 0\nmax_inflight_messages 0\n"
            )
        self.servers = [Server(1, CELLS // 2), Server(CELLS // 2 + 1, CELLS)]
        self.config = {
            "gateway": "hall1",
            "broker": {"host": "127.0.0.1", "port": self.port},
            "topics": {"prefix": "orif", "form": form},
            "buffer": {"file": "buffer.db", "limit": buffer},
            "metrics": {"address": "127.0.0.1", "port": self.metrics_port},
            "defaults": {"period": period, "full": "3s", "time_out": f"{TIME_OUT * 1000:g}ms"},
            "cells": [
                {
                    "name": f"cell{cell}",
                    "host": f"sim://127.0.0.1:{server.port}/cell{cell}",
                    "tags": ["R[1-2]", "DO[1]", {"names": ["SR[1-5]", "ALM[1]"], "every": "1s"}],
                }
                for server in self.servers
                for cell in server.cells
            ],
        }
        self.environment = dict(os.environ)
        if clock:
            self.set_clock(0)
            self.environment |= {
                "LD_PRELOAD": os.environ["FAKETIME_LIBRARY"],
                "FAKETIME_TIMESTAMP_FILE": f"{os.getcwd()}/clock",
                "FAKETIME_NO_CACHE": "1",
                "DONT_FAKE_MONOTONIC": "1",
            }

    def begin(self):
        self.start_broker()
        self.subscriber = Subscriber(self.port, name="checker")
        self.start_gateway()
        self.all_up()
        return self

    def start_broker(self):
        with open("broker.log", "a", encoding="utf-8") as log:
            self.broker = subprocess.Popen(["mosquitto", "-c", "broker.conf"], stdout=log, stderr=log)

        def answers():
            with contextlib.suppress(OSError):
                return socket.create_connection(("127.0.0.1", self.port), 1).close() is None

        until("the broker is there", answers)

    def stop_broker(self):
        """At a normal end it saves what the subscriber still has to get."""
        self.broker.terminate()
        self.broker.wait()

    def write_config(self, text=None):
        with open("cells.next", "w", encoding="utf-8") as file:
            file.write(text or json.dumps(self.config, indent=1))
        os.replace("cells.next", "cells.json")

    def start_gateway(self):
        self.write_config()
        with open("gateway.log", "a", encoding="utf-8") as log:
            self.gateway = subprocess.Popen(
                ["orif-gateway", "cells.json"], stderr=log, env=self.environment
            )

    def kill_gateway(self):
        self.gateway.kill()
        self.gateway.wait()

    def set_clock(self, seconds):
        with open("clock.next", "w", encoding="utf-8") as file:
            file.write(f"{seconds:+d}")
        os.replace("clock.next", "clock")
        self.clocks.append(seconds)

    def log(self):
        with open("gateway.log", encoding="utf-8", errors="replace") as file:
            return file.read()

    def metrics(self):
        """Values by name, of a cell by (name, cell); those of other labels are added."""
        try:
            where = f"http://127.0.0.1:{self.metrics_port}/metrics"
            with urllib.request.urlopen(where, timeout=5) as answer:
                text = answer.read().decode()
        except OSError:
            need(self.gateway.poll() is None, f"the gateway has ended:\n{self.log()[-2000:]}")
            return {}
        found = collections.Counter()
        for name, labels, value in re.findall(r"^(\w+)(\{.*\})? (\S+)$", text, re.M):
            cell = re.search(r'cell="([^"]*)"', labels)
            found[(name, cell[1]) if cell else name] += float(value)
        return found

    def cells(self):
        return [cell["name"] for cell in self.config["cells"]]

    def shown(self, metric, cell=None):
        return self.metrics().get((metric, cell) if cell else metric)

    def are_up(self, up, cells=None):
        found = self.metrics()
        return all(found.get(("orif_cell_up", cell)) == up for cell in cells or self.cells())

    def all_up(self, most=40.0):
        until("all cells are up", lambda: self.are_up(1), most)

    def stored(self):
        """How many rows the buffer's file has."""
        if not os.path.exists("buffer.db"):
            return 0
        with contextlib.closing(sqlite3.connect("file:buffer.db?mode=ro", uri=True)) as file:
            return file.execute("SELECT count(*) FROM row").fetchone()[0]

    def sent(self, most=60.0):
        """Waits until nothing is left of the backlog."""
        until("the backlog is sent", lambda: self.shown("orif_buffer_rows") == 0, most)

    def states(self, cell):
        topic = f"orif/hall1/{cell}/state"
        return [json.loads(m.payload)["state"] for m in list(self.subscriber.messages) if m.topic == topic]

    def verify(self):
        """Ends the gateway, and compares what was published with what the cells had."""
        self.sent()
        until(
            "cells are shown as published",
            lambda: all(self.states(c)[-1] == "up" and self.are_up(1, [c]) for c in self.cells()),
        )
        told = self.metrics()
        self.end()
        need(self.stored() == 0, f"{self.stored()} rows are left in the buffer")
        need(self.subscriber.quiet(), "messages keep coming after the end")
        kept = retained(self.port)
        messages = self.subscriber.close()
        seen = check(messages, kept=kept, dropped=self.dropped, clock_set=len(set(self.clocks)) > 1)
        seen = seen["hall1"]
        need(seen.gateway[-1][1]["state"] == "offline", f"the end is told as {seen.gateway[-1]}")
        for server in self.servers:
            for cell in server.cells:
                self.compare(cell, seen.rows[f"cell{cell}"], server)
        for cell in self.cells():
            last, counted = max(seen.rows[cell]), told[("orif_cell_rows_total", cell)]
            need(last % SESSION >= counted, f"{cell}: row {last} is the last of {counted:g}")
            end = seen.cells[cell][-1][1]["state"]
            need(end == "closed", f"{cell}: is {end} in the end")
        for line in self.log().splitlines():
            need(LOG.fullmatch(line), f"in the log: {line!r}")
        self.seen = seen
        return sum(len(rows) for rows in seen.rows.values())

    def end(self):
        self.gateway.terminate()
        try:
            code = self.gateway.wait(10)
        except subprocess.TimeoutExpired as late:
            raise Wrong("the gateway does not end within 10 s") from late
        need(code == 0, f"the gateway has ended with {code}:\n{self.log()[-2000:]}")

    def compare(self, cell, rows, server):
        last = {}
        for number, row in sorted(rows.items()):
            values = [row.get(tag, {"quality": ""}) for tag in ("R[1]", "R[2]")]
            if "good" not in [value["quality"] for value in values]:
                continue
            first, second = values
            where = f"cell{cell} row {number}"
            need(first["quality"] == second["quality"], f"{where} is torn: {row}")
            need(first["value"] == -second["value"], f"{where} is mixed up: {row}")
            count = first["value"] - cell * OF_A_CELL
            need(0 <= count <= LENGTH, f"{where} is of another cell: {row}")
            begin = seconds_of(first["time"]) - count * TICK
            possible = any(
                since <= begin - wrong <= until
                for since, until in server.lives
                for wrong in self.clocks
            )
            need(possible, f"{where}: the cell did not have {first['value']} at {first['time']}")
            last[number // SESSION] = number

    def close(self):
        for process in [self.gateway, self.broker, *(server.process for server in self.servers)]:
            if process:
                process.send_signal(signal.SIGCONT)
                process.kill()
                process.wait()
        if self.subscriber:
            self.subscriber.close()


# Register texts that break what is not quoted: for JSON, for a log line, for a topic, as UTF-8.
HOSTILE = (
    'quote " back \\ </script> $(reboot) `id`'.encode(),
    b'a\xff\xfe\xc3" \xed\xa0\x80',
    b"line\r\nevent=end level=\x1b[31merror\x7f",
    b"+/#/%2f" + b"x" * 73,
    "\u2028 \u202e \U0001f916 \u00e9".encode(),
)


def broker_gone(chance, length):
    """The broker ends and comes back; then it is frozen."""
    plant = yield Plant(chance.choice(["tags", "rows"]), "50ms")
    rows = plant.shown("orif_buffer_rows")
    plant.stop_broker()
    time.sleep(length)
    need(plant.shown("orif_broker_up") == 0, "the broker is shown as up while it is away")
    rows = plant.shown("orif_buffer_rows")
    # Half of the turns may be late on a busy machine.
    need(rows >= CELLS * length / plant.period / 2, f"only {rows:g} rows after {length:g} s")
    need(plant.stored() >= rows - CELLS, f"{plant.stored()} rows in the file, shown {rows:g}")
    plant.start_broker()
    plant.sent(60 + length)
    plant.broker.send_signal(signal.SIGSTOP)
    time.sleep(min(length, 3))
    plant.broker.send_signal(signal.SIGCONT)


def gateway_killed(chance, length):
    """Killed while connecting, live, while the broker is away, and while the backlog is sent."""
    plant = yield Plant(chance.choice(["tags", "rows"]))
    kept = {}  # by cell and session: rows that must have been stored or sent

    def kill():
        found = plant.metrics()
        state = json.loads(retained_state(plant))
        for cell in plant.cells():
            kept[cell, state] = found.get(("orif_cell_rows_total", cell), 0)
        plant.kill_gateway()

    def retained_state(plant):
        with contextlib.closing(sqlite3.connect("file:buffer.db?mode=ro", uri=True)) as file:
            return str(file.execute("SELECT max(session) FROM session").fetchone()[0])

    for _ in range(max(1, round(length / 4))):
        kill()
        for _ in range(3):
            plant.start_gateway()
            time.sleep(chance.uniform(0, 0.4))
            plant.kill_gateway()
        plant.start_gateway()
        time.sleep(chance.uniform(0.5, 1.5))
        kill()
        plant.start_gateway()
        plant.all_up()
        plant.stop_broker()
        time.sleep(chance.uniform(0.5, 2))
        kill()
        plant.start_gateway()
        time.sleep(chance.uniform(0.5, 3))
        plant.start_broker()
        until("the broker is connected", lambda: plant.shown("orif_broker_up"))
        time.sleep(chance.uniform(0, 0.2))
        kill()
        plant.start_gateway()
        plant.all_up()
    yield
    for (cell, session), rows in kept.items():
        numbers = [n % SESSION for n in plant.seen.rows[cell] if n // SESSION == session]
        need(
            max(numbers, default=0) >= rows - 1,
            f"{cell}: {rows:g} rows before a kill, {max(numbers, default=0)} came",
        )


def disk_full(chance, length):
    """The buffer's file cannot grow for a while; then the buffer reaches its limit."""
    plant = yield Plant(chance.choice(["tags", "rows"]), buffer="200KB")
    plant.stop_broker()
    time.sleep(1)
    size = max(os.path.getsize(name) for name in os.listdir(".") if name.startswith("buffer.db"))
    resource.prlimit(plant.gateway.pid, resource.RLIMIT_FSIZE, (size, resource.RLIM_INFINITY))
    until("the full disk is told", lambda: plant.shown("orif_buffer_writable") == 0)
    time.sleep(length / 2)
    unlimited = (resource.RLIM_INFINITY, resource.RLIM_INFINITY)
    resource.prlimit(plant.gateway.pid, resource.RLIMIT_FSIZE, unlimited)
    until("the buffer is written again", lambda: plant.shown("orif_buffer_writable") == 1)
    until("the limit is reached", lambda: plant.shown("orif_dropped_rows_total"), 60)
    need(plant.shown("orif_buffer_bytes") <= 200_000, "the buffer is beyond its limit")
    plant.start_broker()
    plant.sent()
    plant.dropped = plant.shown("orif_dropped_rows_total")


def cells_lost(chance, length):
    """All cells are frozen, then killed and started again."""
    plant = yield Plant(chance.choice(["tags", "rows"]))
    for how in (signal.SIGSTOP, signal.SIGKILL):
        for server in plant.servers:
            server.process.send_signal(how)
        until("all cells are lost", lambda: plant.are_up(0))
        until(
            "all cells are told as lost",
            lambda: all("up" != plant.states(cell)[-1] for cell in plant.cells()),
        )
        time.sleep(chance.uniform(0, length / 3))
        for server in plant.servers:
            if how == signal.SIGKILL:
                server.process.wait()
                server.start()
            server.process.send_signal(signal.SIGCONT)
        plant.all_up()
    yield
    for cell in plant.cells():
        stale = [row["R[1]"] for row in plant.seen.rows[cell].values() if "R[1]" in row]
        stale = [reading for reading in stale if reading["quality"] == "stale"]
        need(len(stale) >= 2, f"{cell} was lost twice, and stale {len(stale)} times: {stale}")


def component_hangs(chance, length):
    """A component hangs in the bulk read of one cell, and once more at the end of the gateway."""
    plant = Plant(chance.choice(["tags", "rows"]))
    plant.config["cells"][0]["component"] = os.environ["HANGING_COMPONENT"]
    plant.environment["HANGING_COMPONENT_FILE"] = f"{os.getcwd()}/hang"
    plant = yield plant
    others = plant.cells()[1:]
    with open("hang", "w", encoding="utf-8"):
        before, begin = plant.metrics(), time.time()
    until("cell1 is silent", lambda: plant.states("cell1")[-1] == "silent", 30)
    need(plant.shown("orif_cell_up", "cell1") == 0, "cell1 is silent, and shown as up")
    time.sleep(length / 2)
    after, passed = plant.metrics(), time.time() - begin
    for cell in others:
        rows = after["orif_cell_rows_total", cell] - before["orif_cell_rows_total", cell]
        need(rows > passed / plant.period / 2, f"{cell}: {rows:g} rows while cell1 hung {passed:g} s")
        need(plant.states(cell)[-1] == "up", f"{cell} is {plant.states(cell)[-1]} with cell1")
    with urllib.request.urlopen(f"http://127.0.0.1:{plant.metrics_port}/healthz") as answer:
        told = json.load(answer)
    need((told["cells"], told["cells_up"]) == (CELLS, CELLS - 1), f"/healthz tells {told}")
    os.remove("hang")


def clock_set_back(chance, length):
    """The computer's clock is an hour behind all of a sudden, and right again later."""
    plant = yield Plant(chance.choice(["tags", "rows"]), clock=True)
    for seconds in (-3600, 0):
        plant.set_clock(seconds)
        before = plant.metrics()
        time.sleep(length / 3)
        after = plant.metrics()
        for cell in plant.cells():
            rows = after["orif_cell_rows_total", cell] - before["orif_cell_rows_total", cell]
            need(rows > length / 3 / plant.period / 2, f"{cell}: {rows:g} rows after {seconds} s")
        plant.stop_broker()
        time.sleep(1)
        plant.start_broker()
        plant.sent()


def hostile_texts(chance, length):
    """Texts that break quoting; a broken and a changed file, while a cell is lost."""
    plant = yield Plant(chance.choice(["tags", "rows"]))
    for index, text in enumerate(HOSTILE, 1):
        host = plant.config["cells"][2]["host"]
        write = ["orif", "write", b"SR[%d]=" % index + text, "--yes", "--host", host]
        subprocess.run(write, check=True, stdout=subprocess.DEVNULL)
    plant.servers[1].process.send_signal(signal.SIGSTOP)
    untouched = [f"cell{cell}" for cell in plant.servers[0].cells]
    until("cells are lost", lambda: plant.are_up(0, plant.cells()[CELLS // 2 :]))
    before = plant.metrics()
    for broken in ("{", "\0\xff", '{"gateway": "\x1b[31m/+#", "cells": []}', "[" * 100_000):
        seen = plant.log().count("event=reload")
        plant.write_config(broken)
        plant.gateway.send_signal(signal.SIGHUP)
        until("the broken file is told", lambda: plant.log().count("event=reload") > seen)
    need(plant.are_up(1, untouched), "a broken file has changed cells")
    gone = plant.config["cells"].pop()["name"]
    plant.config["cells"][1] |= {"period": "200ms"}
    plant.write_config()
    plant.gateway.send_signal(signal.SIGHUP)
    until("the cell that was taken away is closed", lambda: plant.states(gone)[-1] == "closed")
    plant.servers[1].process.send_signal(signal.SIGCONT)
    plant.all_up()
    after = plant.metrics()
    for cell in set(untouched) - {"cell2"}:
        counted = ("orif_cell_reconnects_total", cell)
        need(after[counted] == before[counted], f"{cell} was connected again for another's sake")
        need(after["orif_cell_rows_total", cell] > before["orif_cell_rows_total", cell], cell)
        need(set(plant.states(cell)) <= {"connecting", "up"}, f"{cell}: {plant.states(cell)}")
    time.sleep(1.5)
    yield
    for index, text in enumerate(HOSTILE, 1):
        had = [row[f"SR[{index}]"]["value"] for row in plant.seen.rows["cell3"].values() if f"SR[{index}]" in row]
        wanted = text.decode("utf-8", errors="replace")
        same = [value for value in had if value == wanted or "\ufffd" in wanted and value[:1] == wanted[:1]]
        need(same, f"SR[{index}] is {text!r}, published were {set(had)}")


TROUBLES = (
    broker_gone,
    gateway_killed,
    disk_full,
    cells_lost,
    component_hangs,
    clock_set_back,
    hostile_texts,
)


def make(trouble, chance, length):
    """A trouble yields its plant, and once more if it has something to say about what was seen."""
    began = time.time()
    steps = trouble(chance, length)
    plant = next(steps)
    try:
        plant.begin()
        with contextlib.suppress(StopIteration):
            steps.send(plant)
        rows = plant.verify()
        for _ in steps:
            pass
    finally:
        plant.close()
    print(
        f"{trouble.__name__:<16} {plant.form}: {rows} rows of {len(plant.seen.rows)} cells, "
        f"{plant.seen.late} messages late, {plant.seen.duplicates} values twice, "
        f"{plant.dropped:g} rows dropped; {time.time() - began:.0f} s",
        flush=True,
    )


def main():
    seconds = float(sys.argv[1])
    seed = int(sys.argv[2]) if len(sys.argv) > 2 else random.randrange(1000)
    chosen = [each for each in TROUBLES if each.__name__ in sys.argv[3:]] or list(TROUBLES)
    chance = random.Random(seed)
    print(f"{seconds:g} s of trouble, seed {seed}", flush=True)
    length = 600 if seconds >= 7200 else 5 if seconds < 300 else 30
    end = time.time() + seconds
    while True:
        for trouble in chance.sample(chosen, len(chosen)):
            directory = tempfile.mkdtemp(prefix="plant-trouble-")
            os.chdir(directory)
            try:
                make(trouble, chance, length)
            except (Wrong, OSError, sqlite3.Error) as wrong:
                sys.exit(f"{trouble.__name__} (seed {seed}): {wrong}\nits files are in {directory}")
            shutil.rmtree(directory)
        if time.time() >= end:
            break
    print("what was published, stored and shown agrees with what the cells had")


main()
