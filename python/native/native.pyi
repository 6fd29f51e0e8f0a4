from collections.abc import Sequence
from enum import IntEnum
from typing import Any, Literal, Protocol, SupportsFloat, SupportsIndex

__version__: str

# Numbers and texts that convert to what a register or a variable holds.
_Value = bool | SupportsIndex | SupportsFloat | str | bytes

# Any sequence of numbers: a list, an array.array, a NumPy array.
class _Numbers(Protocol):
    def __len__(self) -> int: ...
    def __getitem__(self, index: int, /) -> Any: ...

# A writable buffer, or a list.
class _Buffer(_Numbers, Protocol):
    def __setitem__(self, index: int, value: Any, /) -> None: ...

# Within a class the name is its member's.
_DataTable = DataTable
