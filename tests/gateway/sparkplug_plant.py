"""A plant whose gateway is an edge node of Sparkplug, with a host application that follows it."""

import time
from datetime import datetime, timezone

from plant import Plant, until
from sparkplug_host import Host
from sparkplug_wire import GOOD, REFUSED, STALE
from subscriber import Seen, need, retained

QUALITIES = {GOOD: "good", STALE: "stale", REFUSED: "refused"}


class SparkplugPlant(Plant):
    def __init__(self, *arguments, protocol="3.1.1", primary="", **named):
        super().__init__(*arguments, **named)
        self.primary = primary
        self.began = []  # when gateways were started, in ms
        self.kills = 0
        self.config["broker"]["protocol"] = protocol
        self.config["topics"] = {"form": "sparkplug", "group": "plant"}
        self.config["topics"] |= {"primary_host": primary} if primary else {}
        # The host misses nothing while it is away, not even messages of QoS 0.
        with open("broker.conf", "a", encoding="utf-8") as file:
            file.write("queue_qos0_messages true\n")

    @property
    def node(self):
        return self.subscriber.nodes["hall1"]

    def subscribe(self):
        clock_set = "LD_PRELOAD" in self.environment
        return Host(self.port, name="checker", primary=self.primary, clock_set=clock_set)

    def start_gateway(self):
        self.began.append(round(time.time() * 1000))
        super().start_gateway()

    def kill_gateway(self):
        super().kill_gateway()
        self.kills += 1

    def all_up(self, most=40.0):
        super().all_up(most)
        until("all cells are born", lambda: all(self.states(c)[-1] == "up" for c in self.cells()))

    def events(self, *kinds):
        faults = self.subscriber.faults
        need(not faults, f"{len(faults)} faults: {faults[:5]}")
        node = self.subscriber.nodes.get("hall1")
        return [event for event in list(node.events if node else ()) if event.kind in kinds]

    def states(self, cell):
        """What its births and deaths tell, and those of the node."""
        found = ["connecting"]
        for event in self.events("DBIRTH", "DDEATH", "NBIRTH", "NDEATH"):
            if event.device == cell:
                found.append("up" if event.kind == "DBIRTH" else "dead")
            elif not event.device and found[-1] == "up":
                found.append("connecting")
        return found

    def session(self):
        return self.began[-1]

    def read(self):
        host, node = self.subscriber, self.node
        host.close()
        kept = retained(self.port, prefix="spBv1.0/plant")
        need(not kept, f"the broker keeps {list(kept)}")
        births, deaths = self.events("NBIRTH"), self.events("NDEATH")
        need(deaths and deaths[-1].arrived > births[-1].arrived, "the end is not told")
        need(deaths[-1].bdseq == births[-1].bdseq, f"{deaths[-1]} ends {births[-1]}")
        need(not self.kills or any(d.qos == 1 for d in deaths), f"no last will: {deaths}")
        need(node.messages < 256 or node.wraps, f"{node.messages} messages and no wrap")
        for cell in self.cells():
            end = [e.kind for e in self.events("DBIRTH", "DDEATH") if e.device == cell][-1]
            need(end == "DDEATH", f"{cell}: {end} is the last of it")
        seen = Seen()
        seen.late, seen.duplicates = node.historical, node.twice
        for cell, device in node.devices.items():
            for name, history in device.history.items() if cell else ():
                for stamp, samples in history.items():
                    told = datetime.fromtimestamp(stamp // 1000, timezone.utc)
                    when = f"{told:%Y-%m-%dT%H:%M:%S}.{stamp % 1000:03}Z"
                    for index, (value, quality, _) in enumerate(samples):
                        reading = {"value": value, "quality": QUALITIES[quality], "time": when}
                        seen.rows[cell].setdefault(stamp + index / 10, {})[name] = reading
        return seen

    def last_row(self, cell, session=None):
        """How many rows came of one start of the gateway: each has a time of its own. That a cell
        is lost is a row, too, which its death may tell."""
        since = session or self.began[-1]
        then = min((began for began in self.began if began > since), default=float("inf"))
        since = 0 if len(self.began) == 1 else since
        deaths = [e.arrived * 1000 for e in self.events("DDEATH") if e.device == cell]
        return sum(since <= time < then for time in [*self.seen.rows[cell], *deaths])

    def count(self, told):
        if not self.dropped:
            super().count(told)
            return
        came = sum(self.last_row(cell) for cell in self.cells())
        counted = sum(told["orif_cell_rows_total", cell] for cell in self.cells())
        self.seen.missing = counted - came
        need(self.seen.missing <= self.dropped, f"{self.seen.missing:g} rows are missing")

    def times_stale(self, cell):
        return sum(event.device == cell for event in self.events("DDEATH")) - 1

    def born_again(self, since, most=10.0):
        """Waits until the node and all cells are born, after so many births of the node."""

        def born():
            births = self.events("NBIRTH")
            return len(births) > since and all(self.states(c)[-1] == "up" for c in self.cells())

        until("births of the node and all cells", born, most)
