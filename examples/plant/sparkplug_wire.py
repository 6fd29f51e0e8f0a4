"""The wire format of Sparkplug B, as far as it is needed to follow an edge node."""

import struct
import time

from subscriber import Wrong, need

REBIRTH = "Node Control/Rebirth"
GOOD, STALE, REFUSED = 192, 500, 0
SIGNED = {1: 8, 2: 16, 3: 32, 4: 64}  # bits of the signed datatypes
VALUES = {  # datatype: the field that has its value
    **dict.fromkeys((1, 2, 3, 5, 6, 7), "int_value"),
    **dict.fromkeys((4, 8, 13), "long_value"),
    **{9: "float_value", 10: "double_value", 11: "boolean_value"},
    **dict.fromkeys((12, 14, 15), "string_value"),
}

# Fields by number: their name, and what they are, which may be a message with fields of its own.
PROPERTY = {
    1: ("type", "varint"),
    2: ("is_null", "bool"),
    3: ("int_value", "varint"),
    4: ("long_value", "varint"),
    5: ("float_value", "float"),
    6: ("double_value", "double"),
    7: ("boolean_value", "bool"),
    8: ("string_value", "text"),
}
METRIC = {
    1: ("name", "text"),
    2: ("alias", "varint"),
    3: ("timestamp", "varint"),
    4: ("datatype", "varint"),
    5: ("is_historical", "bool"),
    6: ("is_transient", "bool"),
    7: ("is_null", "bool"),
    9: ("properties", {1: ("keys", "text"), 2: ("values", PROPERTY)}),
    10: ("int_value", "varint"),
    11: ("long_value", "varint"),
    12: ("float_value", "float"),
    13: ("double_value", "double"),
    14: ("boolean_value", "bool"),
    15: ("string_value", "text"),
}
PAYLOAD = {1: ("timestamp", "varint"), 2: ("metrics", METRIC), 3: ("seq", "varint")}
REPEATED = ("metrics", "keys", "values")
WIRE_TYPES = {"varint": 0, "bool": 0, "double": 1, "float": 5}  # all others 2, with a length


def varint(data, at):
    value = shift = 0
    while True:
        need(at < len(data) and shift < 70, "a number that does not end")
        value |= (data[at] & 0x7F) << shift
        at, shift = at + 1, shift + 7
        if data[at - 1] < 0x80:
            return value, at


def decode(data, fields=None):
    """The message as a dictionary by field names; what the schema does not have is a fault."""
    fields = fields or PAYLOAD
    found, at = {}, 0
    while at < len(data):
        key, at = varint(data, at)
        need(key >> 3 in fields, f"field {key >> 3} where only {sorted(fields)} are known")
        name, kind = fields[key >> 3]
        wire_type = WIRE_TYPES.get(str(kind), 2)
        need(key & 7 == wire_type, f"{name} is of wire type {key & 7}, not {wire_type}")
        if wire_type == 0:
            value, at = varint(data, at)
            need(kind != "bool" or value < 2, f"{name} is {value}")
            value = value == 1 if kind == "bool" else value
        else:
            length, at = {1: (8, at), 5: (4, at)}.get(wire_type) or varint(data, at)
            part, at = bytes(data[at : at + length]), at + length
            need(at <= len(data), f"{name} is cut off")
            if wire_type != 2:
                (value,) = struct.unpack("<d" if wire_type == 1 else "<f", part)
            elif isinstance(kind, dict):
                value = decode(part, kind)
            else:
                try:
                    value = part.decode()
                except UnicodeDecodeError as error:
                    raise Wrong(f"{name} is no UTF-8: {part!r}") from error
        if name in REPEATED:
            found.setdefault(name, []).append(value)
        else:
            need(name not in found, f"{name} stands there twice")
            found[name] = value
    return found


def encode(message, fields=None):
    """The other way round."""

    def number(value):
        coded = b""
        while value > 0x7F:
            value, coded = value >> 7, coded + bytes([value & 0x7F | 0x80])
        return coded + bytes([value])

    made = b""
    for field, (name, kind) in (fields or PAYLOAD).items():
        for each in message.get(name, []) if name in REPEATED else [message.get(name)]:
            if each is None:
                continue
            made += number(field << 3 | WIRE_TYPES.get(str(kind), 2))
            if kind in ("varint", "bool"):
                made += number(each)
            elif kind in ("float", "double"):
                made += struct.pack(f"<{kind[0]}", each)
            else:
                part = encode(each, kind) if isinstance(kind, dict) else each.encode()
                made += number(len(part)) + part
    return made


def command(name=REBIRTH, value=True):
    """A payload with one metric of boolean value, as hosts send them."""
    now = round(time.time() * 1000)
    metric = {"name": name, "timestamp": now, "datatype": 11, "boolean_value": value}
    return encode({"timestamp": now, "metrics": [metric]})


def value_of(metric, datatype):
    """Of a metric or property: the value that its datatype allows, None for null."""
    given = [name for name in metric if name.endswith("_value")]
    if metric.get("is_null"):
        need(not given, f"null, and has a value: {metric}")
        return None
    need(given == [VALUES.get(datatype)], f"{given} for datatype {datatype}: {metric}")
    value, bits = metric[given[0]], SIGNED.get(datatype)
    if given[0] in ("int_value", "long_value"):
        need(value < 1 << (32 if given[0] == "int_value" else 64), f"too large: {metric}")
    return value - (1 << bits) if bits and value >= 1 << (bits - 1) else value


def properties_of(metric, birth):
    found = metric.get("properties", {})
    keys, values = found.get("keys", []), found.get("values", [])
    need(len(keys) == len(values) == len(set(keys)), f"properties: {found}")
    need(all("type" in each for each in values) or not birth, f"no type: {found}")
    result = {
        key: value_of(each, each.get("type", 3 if key == "Quality" else 12))
        for key, each in zip(keys, values)
    }
    if "Quality" in result:
        each = values[keys.index("Quality")]
        need(each.get("type", 3) == 3 and result["Quality"] in (GOOD, STALE, REFUSED), f"{each}")
    return result
