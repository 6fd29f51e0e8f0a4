"""A plant for tests: a broker, served cells and a gateway, each a process of its own.

R[1] of each cell counts the time of the cell from a number of its own on, and R[2] is the negative
of it: a value that was invented, mixed up or dated wrongly is none that the cell can have had.
"""

import collections
import contextlib
import json
import os
import re
import shutil
import signal
import socket
import sqlite3
import subprocess
import tempfile
import time
import urllib.request

from subscriber import SESSION, Subscriber, Wrong, check, need, retained, seconds_of

CELLS = 20
TICK = 0.01  # of R[1], in seconds
OF_A_CELL = 10_000_000  # the counts of a cell
LENGTH = 3_600_000  # in ticks
SLACK = 1.5  # how late a busy machine may be, in seconds
TIME_OUT = 0.5
LOG = re.compile(
    r"time=\S+Z level=(info|notice|warning|error) event=\w+( \w+=(\"(\\.|[^\"\\])*\"|[^\"\s]*))*"
)


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


# Register texts that break what is not quoted: for JSON, for a log line, for a topic, as UTF-8.
HOSTILE = (
    'quote " back \\ </script> $(reboot) `id`'.encode(),
    b'a\xff\xfe\xc3" \xed\xa0\x80',
    b"line\r\nevent=end level=\x1b[31merror\x7f",
    b"+/#/%2f" + b"x" * 73,
    "\u2028 \u202e \U0001f916 \u00e9".encode(),
)


class Server:
    """A process that serves cells; each start makes new cells."""

    def __init__(self, first, last):
        self.cells = range(first, last + 1)
        self.file = f"cells{first}.json"
        self.port = free_port()
        self.lives = []  # from when until when their time may have begun
        controllers = [self.controller(cell) for cell in self.cells]
        with open(self.file, "w", encoding="utf-8") as file:
            json.dump({"name": "Troubled", "controllers": controllers}, file)
        self.start()

    @staticmethod
    def controller(cell):
        def count(sign):
            first, over = sign * cell * OF_A_CELL, f"{LENGTH * TICK:g}s"
            return {"ramp": {"from": first, "to": first + sign * LENGTH, "over": over}}

        alarm = {"id": 1, "number": 2, "at": "1s", "message": HOSTILE[0].decode()}
        return {
            "host": f"cell{cell}",
            "sizes": {"numericRegisters": 10, "stringRegisters": 5},
            "behaviour": [
                {"what": "R[1]", **count(1)},
                {"what": "R[2]", **count(-1)},
                {"what": "DO[1]", "cycle": [[1, "300ms"], [0, "200ms"]]},
                {"alarm": alarm},
            ],
        }

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
        self.before_end = lambda: None
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
        self.subscriber = self.subscribe()
        self.start_gateway()
        self.all_up()
        return self

    def subscribe(self):
        return Subscriber(self.port, name="checker")

    def start_broker(self):
        with open("broker.log", "a", encoding="utf-8") as log:
            command = ["mosquitto", "-c", "broker.conf"]
            self.broker = subprocess.Popen(command, stdout=log, stderr=log)

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

    def reload(self, text=None):
        told = self.log().count("event=reload")
        self.write_config(text)
        self.gateway.send_signal(signal.SIGHUP)
        until("the file was read again", lambda: self.log().count("event=reload") > told)

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
            code = self.gateway.poll()
            need(code is None, f"the gateway has ended with {code}:\n{self.log()[-2000:]}")
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

    def in_file(self, query):
        """What a copy of the buffer's file answers; nobody else can open the file itself."""

        def ask():
            with tempfile.TemporaryDirectory() as copy, contextlib.suppress(sqlite3.Error):
                for end in ("", "-wal"):
                    if os.path.exists("buffer.db" + end):
                        shutil.copy("buffer.db" + end, copy)
                with contextlib.closing(sqlite3.connect(f"{copy}/buffer.db")) as file:
                    return file.execute(query).fetchone()
            return None

        return until("the buffer's file can be read", ask)[0]

    def stored(self):
        return self.in_file("SELECT count(*) FROM row")

    def sent(self, most=60.0):
        """Waits until nothing is left of the backlog."""
        until("the backlog is sent", lambda: self.shown("orif_buffer_rows") == 0, most)

    def states(self, cell):
        topic, messages = f"orif/hall1/{cell}/state", list(self.subscriber.messages)
        states = [m.payload for m in messages if m.topic == topic]
        return [json.loads(state)["state"] if state else "gone" for state in states]

    def verify(self):
        """Ends the gateway, and compares what was published with what the cells had."""
        self.sent()
        until(
            "cells are shown as published",
            lambda: all(self.states(c)[-1] == "up" and self.are_up(1, [c]) for c in self.cells()),
        )
        told = self.metrics()
        dropped = told["orif_dropped_rows_total"]
        need(dropped == self.dropped, f"{dropped:g} rows dropped, not {self.dropped:g}")
        self.before_end()
        self.end()
        need(self.stored() == 0, f"{self.stored()} rows are left in the buffer")
        need(self.subscriber.quiet(), "messages keep coming after the end")
        self.seen = self.read()
        for server in self.servers:
            for cell in server.cells:
                self.compare(cell, self.seen.rows[f"cell{cell}"], server)
        self.count(told)
        for line in self.log().splitlines():
            need(LOG.fullmatch(line), f"in the log: {line!r}")
        return sum(len(rows) for rows in self.seen.rows.values())

    def read(self):
        """What was Seen, once it is checked by itself."""
        kept = retained(self.port)
        messages = self.subscriber.close()
        seen = check(messages, kept=kept, dropped=self.dropped, clock_set=len(set(self.clocks)) > 1)
        seen = seen["hall1"]
        need(seen.gateway[-1][1]["state"] == "offline", f"the end is told as {seen.gateway[-1]}")
        for cell in self.cells():
            end = seen.cells[cell][-1][1]["state"]
            need(end == "closed", f"{cell}: is {end} in the end")
        return seen

    def session(self):
        return self.in_file("SELECT session FROM gateway")

    def count(self, told):
        for cell in self.cells():
            last, counted = self.last_row(cell), told[("orif_cell_rows_total", cell)]
            need(last >= counted, f"{cell}: row {last} is the last of {counted:g}")

    def last_row(self, cell, session=None):
        """The number of the last row of a session; without one, of the last session."""
        rows = self.seen.rows[cell]
        session = session or max(rows) // SESSION
        return max((n % SESSION for n in rows if n // SESSION == session), default=0)

    def times_stale(self, cell):
        readings = [row["R[1]"] for row in self.seen.rows[cell].values() if "R[1]" in row]
        return sum(reading["quality"] == "stale" for reading in readings)

    def end(self):
        self.gateway.terminate()
        try:
            code = self.gateway.wait(15)
        except subprocess.TimeoutExpired as late:
            raise Wrong("the gateway does not end within 15 s") from late
        need(code == 0, f"the gateway has ended with {code}:\n{self.log()[-2000:]}")

    def compare(self, cell, rows, server):
        for number, row in sorted(rows.items()):
            values = [row.get(tag, {"quality": ""}) for tag in ("R[1]", "R[2]")]
            if "good" not in [value["quality"] for value in values]:
                continue
            first, second = values
            where = f"cell{cell} row {number}"
            if first["quality"] != second["quality"]:
                # The broker went away between its messages, and the buffer dropped it.
                need(self.dropped, f"{where} is torn: {row}")
                self.seen.missing += 1
                continue
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

    def close(self):
        for process in [self.gateway, self.broker, *(server.process for server in self.servers)]:
            if process:
                process.send_signal(signal.SIGCONT)
                process.kill()
                process.wait()
        if self.subscriber:
            self.subscriber.close()
