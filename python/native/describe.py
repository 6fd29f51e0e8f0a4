#!/usr/bin/env python3
"""Reads the headers of the object model: the names of its members' parameters and what their
comments say, so that both stand once.

    describe.py HEADERS... --members FILE   the descriptions that the native module compiles
    describe.py HEADERS... --stub FILE      the types of the object model, behind the stub given as
                                            --before
"""

from __future__ import annotations

import argparse
import re
import textwrap
from dataclasses import dataclass, field
from pathlib import Path


@dataclass
class Parameter:
    type: str
    name: str
    default: str = ""

    @property
    def is_output(self) -> bool:
        return self.type.endswith("&") and not self.type.startswith("const ")

    @property
    def element(self) -> str:
        """The type of an array's elements, "" if this is none."""
        match = re.fullmatch(r"ArrayView<(?:const )?(.+)>", self.type)
        return match.group(1) if match else ""

    @property
    def is_filled(self) -> bool:
        return bool(self.element) and "const" not in self.type


@dataclass
class Member:
    name: str
    result: str
    parameters: list[Parameter]
    comment: str

    @property
    def inputs(self) -> list[Parameter]:
        return [p for p in self.parameters if not p.is_output]

    @property
    def outputs(self) -> list[Parameter]:
        return [p for p in self.parameters if p.is_output]


@dataclass
class Class:
    name: str
    base: str
    comment: str
    members: dict[str, list[Member]] = field(default_factory=dict)


@dataclass
class Kind:
    name: str
    value: int
    comment: str


# What the types of parameters and results are in a stub, and what arrays of them are called.
INPUT_TYPES = {
    "std::int16_t": "int",
    "std::int32_t": "int",
    "ORIF_DATA_TYPE": "int",
    "bool": "bool",
    "float": "float",
    "std::string_view": "str | bytes",
    "const Variant&": "_Value",
}
OUTPUT_TYPES = {
    "std::int16_t": "int",
    "std::int32_t": "int",
    "bool": "bool",
    "float": "float",
    "std::string": "str",
    "Variant": "Any",
    "ORIF_DATA_TYPE": "ORIF_DATA_TYPE",
    "void": "None",
}
# Within a class, a class whose name is also a member's needs another one.
ALIASES = {"DataTable": "_DataTable", "Dispatch": "LowerCore"}
ELEMENTS = {
    "std::int16_t": "16-bit integers (NumPy's int16)",
    "std::int32_t": "32-bit integers (NumPy's int32)",
    "float": "32-bit reals (NumPy's float32)",
}

# What differs in Python from what the comments say.
THREADS = (
    "Threads: a Core, its tables and their items are one unit. Threads that use one unit wait for "
    "each other; different units may be used at the same time. The interpreter's lock is given up "
    "during every call that may wait for the controller."
)
# Members that Python has beyond those of the headers.
ADDED = {
    "DataNumReg": [
        Member(
            "GetValues",
            "bool",
            [
                Parameter("std::int32_t", "Index"),
                Parameter("_Buffer", "Values"),
                Parameter("std::int32_t", "Count"),
            ],
            "The values of `Count` (1 or more) registers from `Index` on at the last refresh, in the "
            "first elements of `Values`. That is a writable buffer of 32-bit integers for NUMREG_INT "
            "(NumPy's int32), of 32-bit reals for NUMREG_REAL (NumPy's float32), which is filled in "
            "place. Returns false in the cases of GetValue, with the elements before the first "
            "register that has no value filled, and, with none filled, if `Values` has fewer than "
            "`Count` elements.",
        )
    ],
}


# Parameters that are something else in Python than a type of the headers says, by class and member.
TAKEN_OTHERWISE = {"DataNumReg": {"SetValues": Parameter("_Numbers", "Value")}}

# A class that has no header of its own in the object model.
LOWER_CORE = Class(
    "LowerCore",
    "",
    "The lower core object of a Core, from Core.GetLib: an operation of the lower communication layer "
    "is invoked by its number (docs/lower-layer.md). Only for what the object model has no member for.",
    {
        "Invoke": [
            Member(
                "Invoke",
                "Variant",
                [
                    Parameter("std::int32_t", "Id"),
                    Parameter("std::int32_t", "Call"),
                    Parameter("Sequence[Any]", "Arguments", "()"),
                ],
                "Carries out the operation with the number `Id`. `Call` is 1 for a method, 2 to get "
                "and 4 to put a property. An int among the arguments is passed as a 32-bit integer, a "
                "float as a 32-bit real; a NumPy or ctypes scalar (int16, int32, float32) as what it "
                "is, and a writable array of one of these by reference. Raises RuntimeError for an "
                "unknown number, for wrong arguments and for a broken component; a refusal by the "
                "controller is a status in the result.",
            )
        ],
        "Lookup": [
            Member(
                "Lookup",
                "std::int32_t",
                [Parameter("std::string_view", "Name")],
                "The number of the operation `Name`. Raises RuntimeError if there is none.",
            )
        ],
    },
)


def parse_members(body: str, class_name: str) -> dict[str, list[Member]]:
    members: dict[str, list[Member]] = {}
    pattern = re.compile(r"((?:^ *///.*\n)+)((?:^ +[^/\s#].*\n)+?)(?<=;\n)", re.MULTILINE)
    for comment, declaration in pattern.findall(body):
        text = " ".join(declaration.split())
        match = re.fullmatch(r"(\S.*?) (\w+)\((.*?)\)(?: const)? noexcept;", text)
        if not match or match.group(2) == class_name:
            continue
        result, name, parameters = match.groups()
        member = Member(name, result, parse_parameters(parameters), plain(comment))
        members.setdefault(name, []).append(member)
    return members


def parse_parameters(text: str) -> list[Parameter]:
    found = []
    for part in filter(None, re.split(r",\s*", text)):
        match = re.fullmatch(r"(.+?)\s*\b(\w+)(?: = (\S+))?", part)
        assert match, part
        found.append(Parameter(match.group(1), match.group(2), match.group(3) or ""))
    return found


def plain(comment: str) -> str:
    """The text of a comment, a line for each paragraph."""
    lines = [line.strip().removeprefix("///").strip() for line in comment.splitlines()]
    return "\n\n".join(" ".join(p.split("\n")) for p in "\n".join(lines).strip().split("\n\n"))


def parse(headers: list[Path]) -> tuple[list[Class], list[Kind]]:
    classes: list[Class] = []
    kinds: list[Kind] = []
    for header in headers:
        text = header.read_text(encoding="utf-8")
        for comment, name, base, body in re.findall(
            r"((?:^///.*\n)+)class ORIF_EXPORT (\w+)(?: : public (\w+))? \{\n public:\n(.*?)^\};",
            text,
            re.MULTILINE | re.DOTALL,
        ):
            public = re.split(r"^ (?:protected|private):$", body, flags=re.MULTILINE)[0]
            classes.append(Class(name, base, plain(comment), parse_members(public, name)))
        for name, value, comment in re.findall(r"^  (\w+) = (\d+), +///< (.+)$", text, re.MULTILINE):
            kinds.append(Kind(name, int(value), comment))
    for one in classes:
        for member, parameter in TAKEN_OTHERWISE.get(one.name, {}).items():
            (taken,) = one.members[member]
            taken.parameters = [parameter if p.name == parameter.name else p for p in taken.parameters]
    for added in classes:
        for member in ADDED.get(added.name, []):
            added.members[member.name] = [member]
    classes.append(LOWER_CORE)
    # A base class stands before those that derive from it.
    order = {c.name: c for c in classes}

    def depth(one: Class) -> int:
        return 1 + depth(order[one.base]) if one.base else 0

    return sorted(classes, key=depth), kinds


def in_python(text: str) -> str:
    for said, instead in SAID_OTHERWISE.items():
        text = text.replace(said, instead)
    text = re.sub(r"\b(\w+)::(\w)", r"\1.\2", text)
    text = re.sub(r"\bfalse\b", "False", text)
    text = re.sub(r"\btrue\b", "True", text)
    text = re.sub(r"\b([Aa])n empty reference\b|\bempty on failure\b", none_for, text)
    return re.sub(r"^Threads: .*$", THREADS, text, flags=re.MULTILINE)


# What the headers say of C++ alone.
SAID_OTHERWISE = {
    "Members throw nothing: a failure shows in what they return, and": "Members raise TypeError "
    "and OverflowError for arguments of a wrong kind alone: a failure shows in what they "
    "return, and",
    "which one thread uses at a time.": "whose threads wait for each other.",
    "It must be an array of 32-bit integers for NUMREG_INT, of 32-bit reals for NUMREG_REAL.": "For "
    "NUMREG_INT these have to be integers. `Value` is any sequence of numbers.",
}


def none_for(match: re.Match[str]) -> str:
    return "None on failure" if match.group(0) == "empty on failure" else "None"


def docstring(text: str) -> str:
    paragraphs = [textwrap.fill(p, 88, break_on_hyphens=False) for p in text.split("\n\n")]
    return "\n\n".join(paragraphs)


def describe(members: list[Member]) -> str:
    """What help shows of one member, or of a property that is read and set."""
    text = "\n\n".join(in_python(m.comment) for m in members)
    member = members[0]
    for parameter in member.inputs:
        if parameter.is_filled:
            text += (
                f"\n\n`{parameter.name}` is filled in place: a writable buffer of "
                f"{ELEMENTS[parameter.element]}, or a list of numbers."
            )
        elif parameter.element:
            text += (
                f"\n\n`{parameter.name}` is any sequence of numbers; a buffer of "
                f"{ELEMENTS[parameter.element]} is used without a copy."
            )
    if member.outputs:
        names = ", ".join(p.name for p in member.outputs)
        text += f"\n\nReturns a tuple: whether it succeeded, {names}."
    elif member.result.startswith("std::shared_ptr") and "None" not in text:
        text += "\n\nAn empty result is None."
    return docstring(text)


def signature(member: Member) -> str:
    return ", ".join(p.name + ("=" + p.default if p.default else "") for p in member.inputs)


def literal(text: str) -> str:
    return 'R"~(' + text + ')~"'


def write_members(classes: list[Class], kinds: list[Kind]) -> str:
    rows = []
    for one in classes:
        rows.append(f'{{"{one.name}", "", "", {literal(docstring(in_python(one.comment)))}}},')
        for name, members in one.members.items():
            rows.append(
                f'{{"{one.name}", "{name}", "{signature(members[0])}", {literal(describe(members))}}},'
            )
    listed = "".join(f'{{"{kind.name}", {kind.value}}},\n' for kind in kinds)
    return (
        "// Made from the headers of the object model.\n"
        "constexpr Description Descriptions[] = {\n" + "\n".join(rows) + "\n};\n"
        "constexpr NamedKind Kinds[] = {\n" + listed + "};\n"
    )


def output_type(text: str) -> str:
    match = re.fullmatch(r"std::shared_ptr<(?:orif::)?(\w+)>", text)
    if match:
        return ALIASES.get(match.group(1), match.group(1)) + " | None"
    return OUTPUT_TYPES[text]


def input_type(parameter: Parameter) -> str:
    if parameter.element:
        return "_Buffer" if parameter.is_filled else "_Numbers"
    return INPUT_TYPES.get(parameter.type, parameter.type)


def write_stub(classes: list[Class], kinds: list[Kind]) -> str:
    lines = ["", "class ORIF_DATA_TYPE(IntEnum):"]
    lines += [f"    {kind.name} = {kind.value}" for kind in kinds]
    lines.append("")
    lines += [f"{kind.name}: Literal[ORIF_DATA_TYPE.{kind.name}]" for kind in kinds]
    for one in classes:
        lines += ["", f"class {one.name}{f'({one.base})' if one.base else ''}:"]
        if one.name == "Core":
            lines += [
                "    def __new__(",
                "        cls, component: str | bytes | None = None, *, simulate: object = None",
                "    ) -> Core: ...",
            ]
        for name, members in one.members.items():
            getter = members[0]
            if len(members) > 1:
                kind = output_type(getter.result)
                lines += ["    @property", f"    def {name}(self) -> {kind}: ..."]
                lines += [f"    @{name}.setter", f"    def {name}(self, value: {kind}) -> None: ..."]
                continue
            types = [output_type(getter.result)]
            types += [output_type(p.type.rstrip("&")) for p in getter.outputs]
            result = types[0] if len(types) == 1 else f"tuple[{', '.join(types)}]"
            arguments = ["self"]
            for parameter in getter.inputs:
                kind = input_type(parameter)
                default = " = " + parameter.default if parameter.default else ""
                arguments.append(f"{parameter.name}: {kind}{default}")
            lines.append(f"    def {name}({', '.join(arguments)}) -> {result}: ...")
    return "\n".join(lines) + "\n"


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("headers", nargs="+", type=Path)
    parser.add_argument("--members", type=Path)
    parser.add_argument("--stub", type=Path)
    parser.add_argument("--before", type=Path)
    given = parser.parse_args()
    classes, kinds = parse(given.headers)
    if given.members:
        given.members.write_text(write_members(classes, kinds), encoding="utf-8")
    if given.stub:
        before = given.before.read_text(encoding="utf-8") if given.before else ""
        given.stub.write_text(before + write_stub(classes, kinds), encoding="utf-8")


if __name__ == "__main__":
    main()
