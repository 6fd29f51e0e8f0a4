"""Troubles a plant: what goes wrong in a factory, made to happen one after the other.

    trouble.py [--form tags|rows|sparkplug] [SECONDS [SEED [TROUBLE...]]]

makes all the troubles below, and again in another order until the time is over. Without a form it
is that of tags or rows; with sparkplug and less than 60 s, only some are made. After each, what
was published, what the buffer's file holds, and what /metrics and the retained states show have to
agree with what the cells had.
"""

import argparse
import contextlib
import itertools
import json
import os
import random
import resource
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import urllib.request

import paho.mqtt.publish
from plant import CELLS, HOSTILE, Plant, until
from sparkplug_plant import SparkplugPlant
from sparkplug_wire import command
from subscriber import Wrong, need


PROTOCOLS = itertools.cycle(["3.1.1", "5"])


def made(form, *arguments, primary="", **named):
    if form != "sparkplug":
        return Plant(form, *arguments, **named)
    return SparkplugPlant(form, *arguments, protocol=next(PROTOCOLS), primary=primary, **named)


def broker_gone(chance, length, form):
    """The broker ends and comes back, with ten minutes' worth of rows; then it is frozen."""
    plant = yield made(form, "50ms")
    plant.stop_broker()
    length = max(length, 10)  # until it is found again some 6000 rows, as in ten minutes of 2 s
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


def gateway_killed(chance, length, form):
    """Killed while connecting, live, while the broker is away, and while the backlog is sent; and
    ended while the broker is away."""
    plant = yield made(form)
    kept = {}  # by cell and session: rows that must have been stored or sent

    def kill(how=plant.kill_gateway):
        session, found = plant.session(), plant.metrics()
        how()
        for cell in plant.cells():
            kept[cell, session] = found.get(("orif_cell_rows_total", cell), 0)

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
        time.sleep(chance.uniform(0.5, 1.5))
        kill(plant.end)
        plant.start_gateway()
        time.sleep(chance.uniform(0.5, 1.5))
        plant.start_broker()
        until("the broker is connected", lambda: plant.shown("orif_broker_up"))
        time.sleep(chance.uniform(0, 0.2))
        kill()
        plant.start_gateway()
        plant.all_up()
    yield
    for (cell, session), rows in kept.items():
        last = plant.last_row(cell, session)
        need(last >= rows - 1, f"{cell}: {rows:g} rows before a kill, {last} came")


def disk_full(chance, length, form):
    """The buffer's file cannot grow for a while; then the buffer reaches its limit."""
    plant = yield made(form, buffer="200KB")
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
    yield
    missing, dropped = plant.seen.missing, plant.dropped
    least = dropped / 2 if plant.form == "sparkplug" else dropped  # its rows have no numbers
    need(least <= missing <= dropped, f"{missing} rows are missing, {dropped:g} shown as dropped")


def cells_lost(chance, length, form):
    """All cells are frozen, then killed and started again."""
    plant = yield made(form)
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
        stale = plant.times_stale(cell)
        need(stale >= 2, f"{cell} was lost twice, and stale {stale} times")


def component_hangs(chance, length, form):
    """A component hangs in the bulk read of one cell, which is taken away meanwhile and comes back;
    then for an hour, while the cell is changed and the gateway ends."""
    plant = made(form)
    plant.config["cells"][0]["component"] = os.environ["HANGING_COMPONENT"]
    plant.environment["HANGING_COMPONENT_FILE"] = f"{os.getcwd()}/hang"
    plant = yield plant
    others = plant.cells()[1:]
    with open("hang", "w", encoding="utf-8"):
        before, begin = plant.metrics(), time.time()
    until("cell1 is silent", lambda: plant.states("cell1")[-1] in ("silent", "dead"), 30)
    need(plant.shown("orif_cell_up", "cell1") == 0, "cell1 is silent, and shown as up")
    time.sleep(length / 2)
    after, passed = plant.metrics(), time.time() - begin
    for cell in others:
        rows = after["orif_cell_rows_total", cell] - before["orif_cell_rows_total", cell]
        need(rows > passed / plant.period / 2, f"{cell}: {rows:g} rows while cell1 hung")
        need(plant.states(cell)[-1] == "up", f"{cell} is {plant.states(cell)[-1]} with cell1")
    with urllib.request.urlopen(f"http://127.0.0.1:{plant.metrics_port}/healthz") as answer:
        told = json.load(answer)
    need((told["cells"], told["cells_up"]) == (CELLS, CELLS - 1), f"/healthz tells {told}")
    hung = plant.config["cells"].pop(0)
    plant.reload()
    until("cell1 is gone", lambda: plant.states("cell1")[-1] in ("gone", "dead"))
    os.remove("hang")
    time.sleep(0.5)
    need(plant.are_up(1, others), "taking a hanging cell away has disturbed others")
    plant.config["cells"].insert(0, hung)
    hung["time_out"] = "1h"
    plant.reload()
    plant.all_up()

    def hang():
        with open("hang", "w", encoding="utf-8"):
            time.sleep(1)
        hung["period"] = "200ms"
        plant.reload()

    plant.before_end = hang


def clock_set_back(chance, length, form):
    """The computer's clock is an hour behind all of a sudden, and right again later."""
    plant = yield made(form, clock=True)
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


def hostile_texts(chance, length, form):
    """Texts that break quoting; a broken and a changed file, while a cell is lost."""
    plant = yield made(form)
    for index, text in enumerate(HOSTILE, 1):
        host = plant.config["cells"][2]["host"]
        write = ["orif", "write", b"SR[%d]=" % index + text, "--yes", "--host", host]
        subprocess.run(write, check=True, stdout=subprocess.DEVNULL)
    plant.servers[1].process.send_signal(signal.SIGSTOP)
    untouched = [f"cell{cell}" for cell in plant.servers[0].cells]
    until("cells are lost", lambda: plant.are_up(0, plant.cells()[CELLS // 2 :]))
    before = plant.metrics()
    for broken in ("{", "\0\xff", '{"gateway": "\x1b[31m/+#", "cells": []}', "[" * 100_000):
        plant.reload(broken)
    need(plant.are_up(1, untouched), "a broken file has changed cells")
    gone = plant.config["cells"].pop()["name"]
    plant.config["cells"][1] |= {"period": "200ms"}
    plant.reload()
    until(f"{gone} is gone", lambda: plant.states(gone)[-1] in ("gone", "dead"))
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
        readings = [row.get(f"SR[{index}]") for row in plant.seen.rows["cell3"].values()]
        had = {reading["value"] for reading in readings if reading}
        wanted = text.decode("utf-8", errors="replace")
        need(wanted in had, f"SR[{index}] is {text!r}, published were {had}")


def rebirth_asked(chance, length, form):
    """A host asks for a rebirth live, many at once, in a backlog; and for what there is not."""
    plant = yield made(form)
    host = plant.subscriber

    def births():
        return len(plant.events("NBIRTH"))

    for _ in range(3):
        before, bdseq = births(), plant.node.bdseq
        host.rebirth("hall1")
        plant.born_again(before)
        need(plant.node.bdseq == bdseq, f"a rebirth has bdSeq {plant.node.bdseq}, not {bdseq}")
        time.sleep(chance.uniform(0, 0.3))
    for _ in range(10):
        host.rebirth("hall1")
    plant.born_again(before)
    time.sleep(1)
    before = births()
    nonsense = [b"", b"\xff" * 99, b"\x12\xff\xff\xff\xff\x0f", b"\x13" * 5000]
    nonsense += [command(value=False), command("Node Control/Reboot"), command()[:-1], command("x")]
    for payload in nonsense:
        host.send("hall1", payload)
    host.client.publish("spBv1.0/plant/DCMD/hall1/cell1", command("R[1]"))
    host.rebirth("hall2")
    time.sleep(1)
    need(births() == before, "nonsense was taken for a rebirth")
    plant.stop_broker()
    time.sleep(length)
    plant.start_broker()
    until("the node is born again", lambda: births() > before)
    for _ in range(3):
        time.sleep(chance.uniform(0, 0.1))
        host.rebirth("hall1")
    plant.born_again(before + 1)
    plant.sent()


def primary_host_away(chance, length, form):
    """The primary host goes and comes back, without and with the broker; others tell nonsense."""
    plant = yield made(form, primary="scada")
    host = plant.subscriber

    def deaths():
        return len(plant.events("NDEATH"))

    def tell(host_id, payload):
        topic = f"spBv1.0/STATE/{host_id}"
        paho.mqtt.publish.single(topic, payload, 1, hostname="127.0.0.1", port=plant.port)

    before, bdseq = deaths(), plant.node.bdseq
    late = json.dumps({"online": False, "timestamp": host.stamp - 1})
    offline = json.dumps({"online": False, "timestamp": host.stamp + 10**6})
    for host_id, payload in [("scada", late), ("other", offline), ("scada", "{"), ("scada", "[]")]:
        tell(host_id, payload)
    time.sleep(1)
    need(deaths() == before, "a state was obeyed that is none of the primary host's now")
    host.leave()
    until("rows are stored", lambda: plant.shown("orif_buffer_rows") > CELLS)
    time.sleep(length / 3)
    need(plant.stored() >= CELLS, "nothing is stored while the primary host is away")
    births = len(plant.events("NBIRTH"))
    host.come_back()
    plant.born_again(births)
    need(plant.node.bdseq == (bdseq + 1) % 256, f"bdSeq {plant.node.bdseq} after {bdseq}")
    plant.sent()
    births = len(plant.events("NBIRTH"))
    plant.stop_broker()
    time.sleep(length / 3)
    plant.start_broker()
    plant.born_again(births, 30)
    yield
    need(plant.node.historical, "nothing came as historical")
    need(not plant.node.late_disorder, f"{plant.node.late_disorder} historical values out of order")


def cells_change(chance, length, form):
    """A cell is taken away, comes back, and has other tags, while the others go on."""
    plant = yield made(form)
    cells, others = plant.config["cells"], plant.cells()[2:]

    def reload(what, condition):
        plant.reload()
        until(what, condition)
        time.sleep(chance.uniform(0, length / 10))

    gone = cells.pop(0)
    reload("cell1 is gone", lambda: plant.states("cell1")[-1] == "dead")
    cells.insert(0, gone)
    reload("cell1 is back", lambda: plant.states("cell1")[-1] == "up")
    cells[1]["tags"] = [*cells[1]["tags"], "R[3-10]"]
    device = plant.node.devices["cell2"]
    reload("cell2 has more tags", lambda: device.online and "R[10]" in device.history)
    plant.all_up()
    yield
    for cell in others:
        births = [e for e in plant.events("DBIRTH") if e.device == cell]
        need(len(births) == 1, f"{cell} was born {len(births)} times for another's sake")


TROUBLES = (
    broker_gone,
    gateway_killed,
    disk_full,
    cells_lost,
    component_hangs,
    clock_set_back,
    hostile_texts,
)
SPARKPLUG = (rebirth_asked, primary_host_away, cells_change)
SPARKPLUG_SHORT = (gateway_killed, cells_lost, *SPARKPLUG)


def make(trouble, chance, length, form):
    """A trouble yields its plant, and once more if it has something to say about what was seen."""
    began = time.time()
    steps = trouble(chance, length, form)
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
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--form", choices=["tags", "rows", "sparkplug"])
    parser.add_argument("seconds", type=float, nargs="?", default=60)
    parser.add_argument("seed", type=int, nargs="?", default=random.randrange(1000))
    parser.add_argument("troubles", nargs="*", metavar="TROUBLE")
    given = parser.parse_args()
    forms = [given.form] if given.form else ["tags", "rows"]
    every = TROUBLES + SPARKPLUG if given.form == "sparkplug" else TROUBLES
    short = SPARKPLUG_SHORT if given.form == "sparkplug" and given.seconds < 60 else every
    chosen = [each for each in every if each.__name__ in given.troubles] or short
    chance = random.Random(given.seed)
    print(f"{given.seconds:g} s of trouble, seed {given.seed}", flush=True)
    length = 600 if given.seconds >= 7200 else 5 if given.seconds < 300 else 30
    end = time.time() + given.seconds
    while True:
        for number, trouble in enumerate(chance.sample(chosen, len(chosen)), given.seed):
            directory = tempfile.mkdtemp(prefix="plant-trouble-")
            os.chdir(directory)
            try:
                make(trouble, chance, length, forms[number % len(forms)])
            except (Wrong, OSError, sqlite3.Error) as wrong:
                name = trouble.__name__
                sys.exit(f"{name} (seed {given.seed}): {wrong}\nits files are in {directory}")
            shutil.rmtree(directory)
        if time.time() >= end:
            break
    print("what was published, stored and shown agrees with what the cells had")


main()
