"""What the host application has to find wrong, and what it has to make of what is right."""

import copy

from sparkplug_host import Message, Node
from sparkplug_wire import GOOD, REBIRTH, STALE, decode, encode
from subscriber import Wrong, need


def metric(**fields):
    return {"timestamp": 1000, **fields}


def quality(code):
    return {"keys": ["Quality"], "values": [{"type": 3, "int_value": code}]}


def sent(kind, device, seq, *metrics, **fields):
    payload = {"timestamp": 9000, "seq": seq, "metrics": list(metrics), **fields}
    return [kind, device, payload]


def death(bdseq):
    bdseq = {"name": "bdSeq", "datatype": 4, "long_value": bdseq}
    return ["NDEATH", "", {"timestamp": 1000, "metrics": [bdseq]}]


def node(bdseq):
    return sent(
        "NBIRTH",
        "",
        0,
        metric(name="bdSeq", alias=1, datatype=4, long_value=bdseq, timestamp=1000 + bdseq),
        metric(name=REBIRTH, datatype=11, boolean_value=False),
    )


def cell(seq, device="press", first=10, **fields):
    count = metric(name="R[1]", alias=first, datatype=3, int_value=7, properties=quality(GOOD))
    text = metric(name="SR[1]", alias=first + 1, datatype=12, is_null=True)
    return sent("DBIRTH", device, seq, {**count, **fields}, text)


def data(seq, stamp=2000, value=8, alias=10, **fields):
    made = {**metric(alias=alias, timestamp=stamp), "int_value": value, **fields}
    return sent("DDATA", "press", seq, made)


BORN = [node(5), cell(1)]
RIGHT = [
    *BORN,
    sent("DBIRTH", "lathe", 2, metric(name="DO[1]", alias=20, datatype=11, boolean_value=True)),
    data(3, 2000, 2**32 - 8),
    data(4, 2500, 9, properties=quality(STALE)),
    data(5, 500, 1, is_historical=True),
    node(5),
    sent("DDEATH", "lathe", 1),
    cell(2, timestamp=2600),
    death(5),
    death(6),
    node(7),
    cell(1, timestamp=2700),
    data(2, 2800, 10),
    data(3, 2000, 2**32 - 8, is_historical=True),
]
WITHOUT_BDSEQ = copy.deepcopy(node(5))
del WITHOUT_BDSEQ[2]["metrics"][0]
FAULTS = {
    "data before a birth": [data(0)],
    "a device before its node": [cell(0)],
    "a gap": [*BORN, data(3)],
    "seq twice": [*BORN, data(2), data(2)],
    "seq beyond 255": [*BORN, *(data(seq) for seq in range(2, 257))],
    "a birth with another seq": [sent("NBIRTH", "", 1, *node(5)[2]["metrics"])],
    "a birth without bdSeq": [WITHOUT_BDSEQ],
    "bdSeq that jumps": [*BORN, death(5), node(7)],
    "bdSeq that stays": [*BORN, death(5), node(5)],
    "a new bdSeq, and no death": [*BORN, node(6)],
    "data after the death": [*BORN, death(5), data(2)],
    "data of a dead device": [*BORN, sent("DDEATH", "press", 2), data(3)],
    "data in a rebirth": [*RIGHT[:3], node(5), cell(1), data(2)],
    "an unknown alias": [*BORN, data(2, alias=99)],
    "an alias twice": [*BORN, cell(2, "lathe", 11)],
    "a name in data": [*BORN, data(2, name="R[1]")],
    "a datatype in data": [*BORN, data(2, datatype=3)],
    "a birth without an alias": [node(5), cell(1, alias=None)],
    "a birth without a datatype": [node(5), cell(1, datatype=None)],
    "a historical birth": [node(5), cell(1, is_historical=True)],
    "names that differ in case": [node(5), cell(1, name="sr[1]")],
    "a value of another type": [*BORN, data(2, int_value=None, float_value=1.0)],
    "null with a value": [*BORN, data(2, is_null=True)],
    "no value": [*BORN, data(2, int_value=None)],
    "no time of a metric": [*BORN, data(2, timestamp=None)],
    "no time of a payload": [*BORN, sent("DDATA", "press", 2, metric(alias=10), timestamp=None)],
    "read after it was sent": [*BORN, data(2, 9001)],
    "time that runs backward": [*BORN, data(2, 2000), data(3, 1999)],
    "three values at one time": [*BORN, data(2, value=1), data(3, value=2), data(4, value=3)],
    "a quality that is none": [*BORN, data(2, properties=quality(1))],
    "properties without values": [*BORN, data(2, properties={"keys": ["Quality"]})],
    "a death with seq": [*BORN, ["NDEATH", "", {**death(5)[2], "seq": 2}]],
    "a death with more": [*BORN, ["NDEATH", "", {"metrics": node(5)[2]["metrics"]}]],
    "an empty message": [*BORN, sent("DDATA", "press", 2)],
}


def follow(made, qos=0, retained=False):
    followed = Node("hall1")
    for kind, device, payload in made:
        payload = payload if isinstance(payload, bytes) else encode(payload)
        followed.take(Message(9.5, kind, payload, qos, retained), kind, device, False)
    need(not followed.faults, str(followed.faults))
    return followed


def refused(what, *arguments, **named):
    try:
        follow(*arguments, **named)
    except Wrong:
        return
    raise SystemExit(f"not found: {what}")


seen = follow(RIGHT)
press, lathe = seen.devices["press"], seen.devices["lathe"]
had = {stamp: tuple(there[0]) for stamp, there in press.history["R[1]"].items()}
wanted = {
    1000: (7, GOOD, False),
    2000: (-8, GOOD, False),
    2500: (9, STALE, False),
    500: (1, GOOD, True),
    2600: (7, GOOD, False),
    2700: (7, GOOD, False),
    2800: (10, GOOD, False),
}
if had != wanted or (seen.historical, seen.twice, seen.bdseq) != (2, 6, 7):
    raise SystemExit(f"{had}, {seen.historical} historical, {seen.twice} twice")
if not press.online or lathe.online or press.metrics[10].value != 10:
    raise SystemExit("who is online, and what is told last")
wraps = follow([*BORN, *(data(seq % 256) for seq in range(2, 600))])
if wraps.wraps != 2:
    raise SystemExit(f"{wraps.wraps} wraps")
follow([death(254), death(255), node(0)])
for fault, made in FAULTS.items():
    refused(fault, made)
refused("another QoS", BORN, qos=1)
refused("retained", BORN, retained=True)
whole = encode({"metrics": [metric(name="R[1]", alias=300, float_value=1.5, is_null=False)]})
if encode(decode(whole)) != whole or decode(whole)["metrics"][0]["float_value"] != 1.5:
    raise SystemExit("what is coded is not decoded")
for end in range(1, len(whole)):
    refused(f"cut off after {end}", [*BORN, ["DDATA", "press", whole[:end]]])
refused("a field that is none", [*BORN, ["DDATA", "press", whole + b"\x7a\x00"]])
