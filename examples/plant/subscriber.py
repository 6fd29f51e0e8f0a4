#!/usr/bin/python3
"""Subscribes to what gateways publish, and checks it.

It knows topics and payloads, and nothing of the program that publishes them:

    subscriber.py [--host HOST] [--port PORT] [--prefix orif] [--seconds 10] [--show CELL=TAG,...]

shows the states as they come, each second the named tags of CELL if they changed, and a summary
in the end. It fails if anything on the wire is wrong. `Subscriber` and `check` are for programs.
"""

import argparse
import collections
import json
import re
import sys
import threading
import time
import urllib.parse
from datetime import datetime

import paho.mqtt.client as mqtt

SESSION = 1_000_000_000
QUALITIES = ("good", "stale", "refused")
CELL_STATES = ("connecting", "up", "lost", "silent", "closed")
STAMP = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z")

Message = collections.namedtuple("Message", "arrived topic payload retained")


class Wrong(AssertionError):
    """Something on the wire that should not be there, or something that is missing."""


def need(condition, message):
    if not condition:
        raise Wrong(message)


class Subscriber:
    """Collects all messages below the prefix, over as many connections as the broker has lives."""

    def __init__(self, port, host="127.0.0.1", prefix="orif", name="", show=None):
        self.messages = []
        self.show = show or (lambda message: None)
        self.subscribed = threading.Event()
        self.topics = f"{prefix}/#"
        # With a name the broker keeps the session, so that nothing is lost while it is away.
        self.client = mqtt.Client(name, clean_session=not name)
        self.client.max_inflight_messages_set(0)
        self.client.reconnect_delay_set(1, 1)
        self.client.on_connect = lambda client, *_: client.subscribe(self.topics, 1)
        self.client.on_subscribe = lambda *_: self.subscribed.set()
        self.client.on_message = self.receive
        self.client.connect(host, port, 60)
        self.client.loop_start()
        need(self.subscribed.wait(10), "the broker does not answer a subscription")

    def receive(self, _client, _context, message):
        self.messages.append(
            Message(time.time(), message.topic, bytes(message.payload), message.retain)
        )
        self.show(self.messages[-1])

    def quiet(self, seconds=1.0, most=60.0):
        """Waits until nothing has come for so long."""
        end = time.time() + most
        count = -1
        while time.time() < end and count != len(self.messages):
            count = len(self.messages)
            time.sleep(seconds)
        return count == len(self.messages)

    def close(self):
        self.client.disconnect()
        self.client.loop_stop()
        return self.messages


def retained(port, host="127.0.0.1", prefix="orif"):
    """What the broker hands a subscriber who comes now: payloads by topic."""
    late_comer = Subscriber(port, host, prefix)
    late_comer.quiet(0.5)
    return {m.topic: m.payload for m in late_comer.close() if m.retained}


def seconds_of(stamp):
    need(STAMP.fullmatch(stamp or ""), f"{stamp!r} is no time such as 2026-11-22T00:31:58.123Z")
    return datetime.fromisoformat(stamp[:-1] + "+00:00").timestamp()


def decode(payload):
    """The object of a payload, which is strict JSON: UTF-8, no NaN, no key twice."""

    def unique(pairs):
        need(len({key for key, _ in pairs}) == len(pairs), f"a key twice in {payload[:200]!r}")
        return dict(pairs)

    def refuse(word):
        raise Wrong(f"{word} is no JSON: {payload[:200]!r}")

    try:
        found = json.loads(
            payload.decode("utf-8"), object_pairs_hook=unique, parse_constant=refuse
        )
    except ValueError as error:
        raise Wrong(f"no JSON ({error}): {payload[:200]!r}") from error
    need(isinstance(found, dict), f"no object: {payload[:200]!r}")
    return found


def fields(found, where, required, optional=()):
    keys = set(found)
    missing, unknown = set(required) - keys, keys - set(required) - set(optional)
    need(not missing, f"{where}: without {sorted(missing)}: {found}")
    need(not unknown, f"{where}: with {sorted(unknown)}, which no one knows: {found}")


class Seen:
    """What was seen of one gateway's name: states in order of arrival, rows by cell and number."""

    def __init__(self):
        self.gateway = []  # (arrived, state)
        self.cells = collections.defaultdict(list)  # by cell: (arrived, state)
        self.rows = collections.defaultdict(dict)  # by cell and number: {tag: reading}
        self.first_late = collections.defaultdict(list)  # by cell: numbers first seen as late
        self.live = {}  # by topic: the last payload that should be retained
        self.late = self.duplicates = self.missing = 0

    def tag(self, cell, number, tag, reading):
        where = f"{cell} {tag} number {number}"
        need(reading["quality"] in QUALITIES, f"{where}: quality {reading['quality']!r}")
        good = reading["quality"] == "good"
        need(good == ("reason" not in reading), f"{where}: reason and quality differ: {reading}")
        need(good or reading["reason"], f"{where}: no reason")
        need(reading["quality"] != "refused" or reading["value"] is None, f"{where}: {reading}")
        need(isinstance(reading["unit"], str), f"{where}: unit {reading['unit']!r}")
        seconds_of(reading["time"])
        row = self.rows[cell].setdefault(number, {})
        if tag not in row:
            row[tag] = reading
            return
        self.duplicates += 1
        need(row[tag] == reading, f"{where}: two messages differ: {row[tag]} and {reading}")

    def arrived(self, cell, number, late):
        need(number > SESSION, f"{cell}: number {number} has no session")
        self.late += late
        if number not in self.rows[cell] and late:
            before = self.first_late[cell]
            need(
                not before or number > before[-1],
                f"{cell}: late row {number} comes after {before[-1:]}",
            )
            before.append(number)
        session = number // SESSION
        if not late:
            online = [s["session"] for _, s in self.gateway if s["state"] == "online"]
            need(session in online, f"{cell}: live row {number} before its gateway is online")
            born = [s["session"] for _, s in self.cells[cell]]
            need(session in born, f"{cell}: live row {number} before any state of the cell")


def read(messages, prefix="orif"):
    """Checks each message by itself; returns what was Seen by the name of the gateway."""
    gateways = collections.defaultdict(Seen)
    for arrived, topic, payload, retain in messages:
        parts = topic.split("/")
        need(parts[0] == prefix and len(parts) in (3, 4), f"topic {topic!r}")
        seen = gateways[parts[1]]
        if not payload:  # what the broker kept of a cell or tag that is no more
            seen.live.pop(topic, None)
            continue
        found = decode(payload)
        if len(parts) == 3:
            need(parts[2] == "state", f"topic {topic!r}")
            need(found.get("state") in ("online", "offline"), f"{topic}: {found}")
            if found["state"] == "online":
                counts = ("time", "version", "cells", "buffered", "dropped")
                fields(found, topic, ("state", "session", *counts))
                seconds_of(found["time"])
            else:
                fields(found, topic, ("state", "session", "reason"), ("time",))
            seen.gateway.append((arrived, found))
            seen.live[topic] = payload
            continue
        cell, last = parts[2], parts[3]
        if last == "state":
            fields(found, topic, ("state", "session", "time", "reason", "host", "tags"))
            need(found["state"] in CELL_STATES, f"{topic}: {found}")
            need(found["state"] != "lost" or found["reason"], f"{topic}: lost without a reason")
            seconds_of(found["time"])
            seen.cells[cell].append((arrived, found))
            seen.live[topic] = payload
            continue
        late = found.pop("late", False)
        need(not (late and retain), f"{topic} is retained, and late: {payload[:200]}")
        reading = ("value", "unit", "quality", "time")
        if last == "row":
            fields(found, topic, ("number", "time", "full", "values"))
            need(found["values"], f"{topic}: an empty row {found['number']}")
            seconds_of(found["time"])
            number, values = found["number"], found["values"]
        else:
            fields(found, topic, (*reading, "number"), ("reason",))
            number, values = found.pop("number"), {urllib.parse.unquote(last): found}
        if retain:  # from before this subscription, or seen already
            seen.live.setdefault(topic, payload)
            continue
        seen.arrived(cell, number, late)
        for tag, each in values.items():
            fields(each, f"{topic} {tag}", reading, ("reason",))
            seen.tag(cell, number, tag, each)
        if not late and (last != "row" or found["full"]):
            seen.live[topic] = payload
    return gateways


def check(messages, prefix="orif", kept=None, dropped=0, clock_set=False, from_start=True):
    """Checks all messages together, and what the broker has `kept` if it is given (see retained()).

    At most so many rows may be `dropped`; `clock_set` says that times may run backward. Unless it
    was there `from_start`, the subscriber may have missed the first rows. Returns what was Seen.
    """
    gateways = read(messages, prefix)
    for name, seen in gateways.items():
        missing = []
        for cell, rows in seen.rows.items():
            numbers = sorted(rows)
            for session in sorted({number // SESSION for number in numbers}):
                had = [number for number in numbers if number // SESSION == session]
                first = session * SESSION + 1 if from_start else had[0]
                lost = set(range(first, had[-1] + 1)).difference(had)
                missing += [f"{cell} {number}" for number in sorted(lost)]
            times = {}
            for number in numbers:
                for tag, reading in rows[number].items():
                    if reading["quality"] != "good" or clock_set:
                        continue
                    then = times.get(tag, "")
                    need(then <= reading["time"], f"{cell} {tag}: back to {reading} after {then}")
                    times[tag] = reading["time"]
            need(seen.cells[cell], f"{cell} has rows and no state")
        seen.missing = len(missing)
        shown = ", ".join(missing[:5] + ["..."] * (len(missing) > 5))
        need(len(missing) <= dropped, f"{len(missing)} rows are missing: {shown}")
        need(seen.gateway, f"the gateway {name} has no state")
        if kept is not None:
            here = {t: p for t, p in kept.items() if t.split("/")[1] == name}
            for topic in sorted(set(seen.live) | set(here)):
                need(topic in here, f"{topic} was live and is not retained")
                need(topic in seen.live, f"{topic} is retained and was never live: {here[topic]}")
                need(
                    here[topic] == seen.live[topic],
                    f"{topic}: retained is {here[topic]}, the last live one was {seen.live[topic]}",
                )
    return gateways


def summary(gateways):
    for name, seen in gateways.items():
        rows = sum(len(rows) for rows in seen.rows.values())
        values = sum(len(row) for rows in seen.rows.values() for row in rows.values())
        state = seen.gateway[-1][1]["state"]
        yield (
            f"{name}, {state}: {len(seen.cells)} cells, {rows} rows with {values} values; "
            f"{seen.late} messages late, {seen.duplicates} values twice"
        )


class Screen:
    """Prints states as they come, and now and then the values that have changed."""

    def __init__(self, shown):
        self.begin = time.time()
        self.shown = {cell: tags.split(",") for cell, _, tags in shown}
        self.values = collections.defaultdict(dict)
        self.last = {}

    def line(self, who, text):
        print(f"{time.time() - self.begin:6.1f} s  {who:<8} {text}", flush=True)

    def state(self, who, found):
        text = found["state"]
        if text == "up":
            text += f", {found['tags']} tags ({found['host']})"
        elif text == "online":
            text += f", {found['cells']} cells, session {found['session']}"
        if text != "connecting":
            self.line(who, text + (f": {found['reason']}" if found.get("reason") else ""))

    def __call__(self, message):
        if not message.payload:
            return
        parts = message.topic.split("/")
        found = decode(message.payload)
        if parts[-1] == "state":
            self.state(parts[-2] if len(parts) == 4 else "gateway", found)
        elif parts[2] in self.shown:
            tag = urllib.parse.unquote(parts[3])
            self.values[parts[2]] |= found["values"] if parts[3] == "row" else {tag: found}

    def tick(self):
        def told(tag, reading):
            text = json.dumps(reading["value"], ensure_ascii=False)
            quality = reading["quality"]
            marks = [reading["unit"], "" if quality == "good" else f"({quality})"]
            return " ".join([tag, text, *filter(None, marks)])

        for cell, tags in self.shown.items():
            values = self.values[cell]
            line = "  ".join(told(tag, values[tag]) for tag in tags if tag in values)
            if line != self.last.get(cell, ""):
                self.line(cell, line)
                self.last[cell] = line


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--host", default="127.0.0.1")
    parser.add_argument("--port", type=int, default=1883)
    parser.add_argument("--prefix", default="orif")
    parser.add_argument("--seconds", type=float, default=10)
    parser.add_argument("--every", type=float, default=1, help="seconds between lines of values")
    parser.add_argument("--show", action="append", default=[], metavar="CELL=TAG,TAG")
    given = parser.parse_args()
    screen = Screen([each.partition("=") for each in given.show])
    subscriber = Subscriber(given.port, given.host, given.prefix, show=screen)
    end = time.time() + given.seconds
    while (left := end - time.time()) > 0:
        time.sleep(min(given.every, left))
        screen.tick()
    try:
        gateways = check(subscriber.close(), given.prefix, from_start=False)
    except Wrong as wrong:
        sys.exit(f"subscriber.py: {wrong}")
    print(*summary(gateways), sep="\n")
    if not gateways:
        sys.exit("subscriber.py: nothing came")


if __name__ == "__main__":
    main()
