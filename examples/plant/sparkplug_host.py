#!/usr/bin/python3
"""A host application for Sparkplug B: follows edge nodes, and checks what they send.

It knows the standard alone, and nothing of the program that publishes:

    sparkplug_host.py [--host HOST] [--port PORT] [--group GROUP] [--seconds 10]
                      [--primary HOST_ID] [--rebirth NODE] [--values]

shows births and deaths as they come, and a summary in the end. It fails if anything on the wire
is wrong. `Host` is for programs.
"""

import argparse
import collections
import contextlib
import json
import sys
import threading
import time

import paho.mqtt.client as mqtt
from sparkplug_wire import GOOD, REBIRTH, STALE, VALUES, command, decode, properties_of, value_of
from subscriber import Subscriber, Wrong, need

NAMESPACE = "spBv1.0"
Message = collections.namedtuple("Message", "arrived topic payload qos retained")
Sample = collections.namedtuple("Sample", "value quality historical")
Event = collections.namedtuple("Event", "arrived kind device bdseq qos")


class Metric:
    def __init__(self, name, datatype, unit):
        self.name, self.datatype, self.unit = name, datatype, unit
        self.value, self.quality, self.timestamp = None, GOOD, 0
        self.late_to = 0  # of the historical values of this connection


class Device:
    """A device, or the edge node itself under the name "": what its last birth has told."""

    def __init__(self):
        self.online = False
        self.metrics = {}  # by alias, or by name where a birth gave none
        self.since = 0  # when it was born or died, in ms
        self.history = collections.defaultdict(dict)  # by metric and time in ms: Samples

    def quality(self, metric):
        return metric.quality if self.online else STALE


class Node:
    def __init__(self, name, clock_set=False):
        self.name, self.clock_set = name, clock_set
        self.devices = collections.defaultdict(Device)
        self.bdseq = self.last_bdseq = self.seq = None
        self.awaited = set()  # devices that a rebirth has to tell of before there is data
        self.events = []
        self.faults = []  # after which it can be followed nevertheless
        self.messages = self.wraps = self.historical = self.late_disorder = self.twice = 0

    @property
    def online(self):
        return self.devices[""].online

    def take(self, message, kind, device, unheard):
        """`unheard`: the host itself has been away since the last message of this node."""
        need(not message.retained, "is retained")
        need(message.qos == 0 or kind == "NDEATH", f"has QoS {message.qos}")
        need(bool(device) == (kind[0] == "D"), "device id and kind do not agree")
        payload = decode(message.payload)
        metrics = payload.get("metrics", [])
        if kind == "NDEATH":
            self.death(message, payload, metrics)
            return
        self.messages += 1
        need("seq" in payload and payload["seq"] < 256, f"seq {payload.get('seq')}")
        seq, before = payload["seq"], self.seq
        self.seq = seq
        need(payload.get("timestamp"), "has no timestamp")
        for metric in metrics:
            need(metric.get("timestamp"), f"a metric has no timestamp: {metric}")
            need(
                self.clock_set or metric["timestamp"] <= payload["timestamp"],
                f"sent at {payload['timestamp']}, before {metric}",
            )
        if kind == "NBIRTH":
            need(seq == 0, f"begins with seq {seq}")
            self.birth(message, metrics, unheard)
        else:
            need(self.online, "before the node's birth")
            if seq != (before + 1) % 256:
                self.faults.append(f"{kind} {device}: seq {seq} after {before}")
            self.wraps += seq == 0
        if kind in ("NBIRTH", "DBIRTH"):
            self.define(device, payload["timestamp"], metrics)
        elif kind in ("NDATA", "DDATA"):
            need(self.devices[device].online, "data before the birth of the device")
            need(not self.awaited, f"data before the rebirth of {sorted(self.awaited)}")
            need(metrics, "data of nothing")
            self.data(self.devices[device], metrics)
        else:
            need(kind == "DDEATH", f"kind {kind!r}")
            need(not metrics, f"a death with {metrics}")
            alive = self.devices[device].online or device in self.awaited
            need(alive, "death of a device that is not alive")
            self.devices[device].online = False
            self.devices[device].since = payload["timestamp"]
        self.awaited.discard(device)
        if kind[1:] != "DATA":
            self.events.append(Event(message.arrived, kind, device, self.bdseq, message.qos))

    def death(self, message, payload, metrics):
        need("seq" not in payload, f"has seq {payload.get('seq')}")
        need([m.get("name") for m in metrics] == ["bdSeq"], f"has {metrics}")
        bdseq = value_of(metrics[0], metrics[0].get("datatype", 4))
        self.events.append(Event(message.arrived, "NDEATH", "", bdseq, message.qos))
        if bdseq == self.bdseq:
            for device in self.devices.values():
                device.online, device.since = False, round(message.arrived * 1000)
        elif bdseq != self.last_bdseq:  # a connection that came to no birth
            self.connection(bdseq)

    def connection(self, bdseq):
        need(isinstance(bdseq, int) and 0 <= bdseq < 256, f"bdSeq {bdseq}")
        before, self.last_bdseq = self.last_bdseq, bdseq
        if before is not None and bdseq != (before + 1) % 256:
            self.faults.append(f"bdSeq {bdseq} after {before}")

    def birth(self, message, metrics, unheard):
        by_name = {metric.get("name"): metric for metric in metrics}
        need("bdSeq" in by_name, "no bdSeq")
        bdseq = value_of(by_name["bdSeq"], by_name["bdSeq"].get("datatype"))
        rebirth = by_name.get(REBIRTH, {})
        need(value_of(rebirth, rebirth.get("datatype")) is False, f"{REBIRTH} is {rebirth}")
        need("alias" not in rebirth, f"{REBIRTH} has an alias")
        told = not self.online or bdseq == self.bdseq or unheard
        need(told, f"bdSeq {bdseq} and no death before")
        alive = [name for name, device in self.devices.items() if name and device.online]
        self.awaited = set(alive) if self.online and bdseq == self.bdseq else set()
        if bdseq != self.bdseq or not self.online:
            if bdseq != self.last_bdseq or bdseq == self.bdseq:
                self.connection(bdseq)
            for device in self.devices.values():
                for metric in device.metrics.values():
                    metric.timestamp = metric.late_to = 0
        self.bdseq = bdseq
        for device in self.devices.values():
            device.online = False

    def define(self, name, timestamp, metrics):
        device = self.devices[name]
        before = {metric.name: metric for metric in device.metrics.values()}
        device.online, device.since, device.metrics = True, timestamp, {}
        names = [metric.get("name", "") for metric in metrics]
        need(all(names) and len({n.lower() for n in names}) == len(names), f"names {names}")
        others = {a for n, d in self.devices.items() if n != name and d.online for a in d.metrics}
        for metric in metrics:
            where = f"metric {metric['name']!r}"
            need("alias" in metric or metric["name"] == REBIRTH, f"{where}: no alias")
            alias = metric.get("alias", metric["name"])
            need(alias not in device.metrics, f"{where}: alias {alias} is there twice")
            need(alias not in others, f"{where}: alias {alias} is another device's")
            need(metric.get("datatype") in VALUES, f"{where}: datatype {metric.get('datatype')}")
            need(not metric.get("is_historical"), f"{where}: historical in a birth")
            unit = properties_of(metric, True).get("engUnit", "")
            known = before.get(metric["name"])
            made = device.metrics[alias] = Metric(metric["name"], metric["datatype"], unit)
            if known:
                made.timestamp, made.late_to = known.timestamp, known.late_to
            self.sample(device, made, metric, GOOD)

    def data(self, device, metrics):
        for metric in metrics:
            need(not {"name", "datatype"} & set(metric), f"name or datatype in data: {metric}")
            alias = metric.get("alias")
            need(alias in device.metrics, f"alias {alias} is not in the birth: {metric}")
            known = device.metrics[alias]
            self.sample(device, known, metric, known.quality)

    def sample(self, device, known, metric, quality):
        historical, stamp = metric.get("is_historical", False), metric["timestamp"]
        birth = "name" in metric
        quality = properties_of(metric, birth).get("Quality", GOOD if historical else quality)
        value = value_of(metric, known.datatype)
        if historical:
            self.historical += 1
            self.late_disorder += stamp < known.late_to
            known.late_to = stamp
        else:
            need(
                self.clock_set or stamp >= known.timestamp,
                f"{known.name} goes back from {known.timestamp} to {metric}",
            )
            known.value, known.quality, known.timestamp = value, quality, stamp
        there = device.history[known.name].setdefault(stamp, [])
        again = (value, quality) in [each[:2] for each in there]
        self.twice += again
        if not again:  # two refreshes may fall into one millisecond
            need(len(there) < 2 or self.clock_set, f"{known.name} was {there}, and is {metric}")
            there.append(Sample(value, quality, historical))


class Host:
    """Follows the nodes of a group. With a `name` the broker keeps the session, so that a test
    misses nothing while the broker is away. `primary` is the id of the host, if it is one."""

    quiet = Subscriber.quiet

    def __init__(self, port, host="127.0.0.1", group="plant", name="", primary="", **named):
        self.group, self.primary = group, primary
        self.joins_late = named.pop("joins_late", False)
        self.show = named.pop("show", lambda event: None)
        self.clock_set = named.pop("clock_set", False)
        self.messages, self.unfollowed, self.nodes = [], [], {}
        self.unheard = set()
        self.is_online, self.stamp = bool(primary), 0
        self.asked = {}
        self.subscribed = threading.Event()
        self.client = mqtt.Client(name, clean_session=not name)
        self.client.reconnect_delay_set(1, 1)
        self.client.on_connect, self.client.on_message = self.connected, self.receive
        self.client.on_subscribe = self.ready
        self.client.on_disconnect = self.disconnected
        self.set_will()
        self.client.connect(host, port, 60)
        self.client.loop_start()
        need(self.subscribed.wait(10), "the broker does not answer a subscription")

    @property
    def faults(self):
        return sum((node.faults for node in list(self.nodes.values())), self.unfollowed)

    def set_will(self):
        self.stamp = max(round(time.time() * 1000), self.stamp + 1)
        if self.primary:
            self.client.will_set(*self.told(False, self.stamp))

    def told(self, online, stamp):
        text = json.dumps({"online": online, "timestamp": stamp})
        return f"{NAMESPACE}/STATE/{self.primary}", text, 1, True

    def connected(self, client, *_):
        topics = [f"{NAMESPACE}/{self.group}/#"]
        topics += [f"{NAMESPACE}/STATE/{self.primary}"] if self.primary else []
        client.subscribe([(topic, 1) for topic in topics])

    def disconnected(self, *_):
        self.unheard.update(self.nodes)
        self.set_will()

    def ready(self, *_):
        self.subscribed.set()
        if self.primary and self.is_online:
            self.client.publish(*self.told(True, self.stamp))

    def leave(self):
        """A primary host says that it goes, and goes."""
        self.is_online = False
        self.stamp = max(self.stamp, round(time.time() * 1000))
        if self.primary and self.client.is_connected():
            with contextlib.suppress(RuntimeError):  # the connection is gone, so the will is told
                self.client.publish(*self.told(False, self.stamp)).wait_for_publish(5)
        self.client.disconnect()
        self.client.loop_stop()

    def come_back(self):
        self.is_online = True
        self.set_will()
        self.client.reconnect()
        self.client.loop_start()

    def send(self, node, payload):
        self.client.publish(f"{NAMESPACE}/{self.group}/NCMD/{node}", payload, 0, False)

    def rebirth(self, node):
        self.send(node, command())

    def receive(self, _client, _context, message):
        made = Message(time.time(), message.topic, message.payload, message.qos, message.retain)
        try:
            self.follow(made)
        except Wrong as wrong:
            self.unfollowed.append(f"{made.topic}: {wrong}")
        self.messages.append(made)

    def follow(self, message):
        parts = message.topic.split("/")
        need(all(parts) and parts[0] == NAMESPACE and len(parts) in (3, 4, 5), "another topic")
        if parts[1] == "STATE":
            if self.is_online and b"false" in message.payload:  # of a session that is over
                self.client.publish(*self.told(True, self.stamp))
            return
        kind, name = parts[2], parts[3]
        if kind in ("NCMD", "DCMD"):
            return
        if name not in self.nodes:
            if self.joins_late and kind != "NBIRTH":
                if time.time() - self.asked.get(name, 0) > 1:
                    self.asked[name] = time.time()
                    self.rebirth(name)
                return
            self.nodes[name] = Node(name, self.clock_set)
        node = self.nodes[name]
        events = len(node.events)
        node.take(message, kind, parts[4] if len(parts) == 5 else "", name in self.unheard)
        self.unheard.discard(name)
        for event in node.events[events:]:
            self.show(event)

    def close(self):
        self.leave()
        return self.messages


def summary(host):
    for node in host.nodes.values():
        devices = [device for name, device in node.devices.items() if name]
        metrics = [history for device in devices for history in device.history.values()]
        yield (
            f"{node.name}, {'online' if node.online else 'offline'}, bdSeq {node.bdseq}: "
            f"{sum(d.online for d in devices)} of {len(devices)} devices online, {node.messages} "
            f"messages, {sum(len(there) for history in metrics for there in history.values())} "
            f"values, {node.historical} historical, {node.twice} twice"
        )


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--host", default="127.0.0.1")
    parser.add_argument("--port", type=int, default=1883)
    parser.add_argument("--group", default="plant")
    parser.add_argument("--seconds", type=float, default=10)
    parser.add_argument("--primary", default="", metavar="HOST_ID", help="be the primary host")
    parser.add_argument("--rebirth", metavar="NODE", help="ask this edge node for a rebirth")
    parser.add_argument("--values", action="store_true", help="show all values in the end")
    given = parser.parse_args()

    def show(event):
        print(f"{event.kind} {event.device}, bdSeq {event.bdseq}", flush=True)

    host = Host(given.port, given.host, given.group, "", given.primary, joins_late=True, show=show)
    if given.rebirth:
        host.rebirth(given.rebirth)
    time.sleep(given.seconds)
    if given.values:
        for node in host.nodes.values():
            for name, device in node.devices.items():
                for metric in device.metrics.values():
                    value, quality = json.dumps(metric.value), device.quality(metric)
                    print(node.name, name, metric.name, value, metric.unit, quality)
    print(*summary(host), sep="\n")
    host.close()
    if host.faults or not host.nodes:
        sys.exit("\n".join(host.faults[:10]) or "sparkplug_host.py: nothing came")


if __name__ == "__main__":
    main()
