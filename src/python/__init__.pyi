"""Magnetic and gravity anomalies along a survey profile, explained by simple bodies."""

from typing import Collection, Iterable, Literal, Optional, Sequence, Tuple, Union, overload

import numpy
from numpy.typing import ArrayLike, NDArray

Field = Tuple[float, float, float]

__version__: str

class Error(Exception): ...
class FileError(Error, OSError): ...
class AnomalisWarning(UserWarning): ...

class Body:
    def __init__(
        self,
        type: str = "thick_sheet",
        *,
        name: str = ...,
        distance: float = ...,
        top: float = ...,
        strike: float = ...,
        dip: float = ...,
        plunge: float = ...,
        slope: float = ...,
        width: float = ...,
        depth_extent: float = ...,
        length: float = ...,
        offset: float = ...,
        susc: float = ...,
        rem_q: float = ...,
        rem_d: float = ...,
        rem_i: float = ...,
        density: float = ...,
        vary: Iterable[str] = ...,
        fixed: bool = ...,
        on: bool = ...,
        demagnetisation: bool = ...,
        colour: str = ...,
        description: str = ...,
        rock_type: str = ...,
        shell_thickness: float = ...,
        end_thickness: float = ...,
        num_sectors: int = ...,
        num_segments: int = ...,
        max_triangle_size: float = ...,
    ) -> None: ...
    type: str
    name: str
    distance: float
    top: float
    strike: float
    dip: float
    plunge: float
    slope: float
    width: float
    depth_extent: float
    length: float
    offset: float
    susc: float
    rem_q: float
    rem_d: float
    rem_i: float
    density: float
    @property
    def vary(self) -> frozenset[str]: ...
    @vary.setter
    def vary(self, names: Iterable[str]) -> None: ...
    fixed: bool
    on: bool
    demagnetisation: bool
    colour: str
    description: str
    rock_type: str
    shell_thickness: float
    end_thickness: float
    num_sectors: int
    num_segments: int
    max_triangle_size: float
    @property
    def number(self) -> Optional[int]: ...
    @property
    def east(self) -> Optional[float]: ...
    @property
    def north(self) -> Optional[float]: ...
    @property
    def depth_below_ground(self) -> Optional[float]: ...
    def parameters(self) -> dict[str, float]: ...
    def to_dict(self) -> dict[str, object]: ...
    def copy(self) -> Body: ...
    def limits(self, name: str) -> Tuple[Optional[float], Optional[float]]: ...
    def set_limits(self, name: str, low: Optional[float] = ..., high: Optional[float] = ...) -> None: ...

@overload
def forward(
    bodies: Iterable[Body],
    east: ArrayLike,
    north: ArrayLike,
    elevation: ArrayLike,
    *,
    field: Optional[Field] = ...,
    formulas: str = ...,
    channel: Literal["mag", "grav"] = ...,
    line: Optional[Tuple[float, float, float]] = ...,
) -> NDArray[numpy.float64]: ...
@overload
def forward(
    bodies: Iterable[Body],
    east: ArrayLike,
    north: ArrayLike,
    elevation: ArrayLike,
    *,
    field: Optional[Field] = ...,
    formulas: str = ...,
    channel: Literal["both"],
    line: Optional[Tuple[float, float, float]] = ...,
) -> Tuple[NDArray[numpy.float64], NDArray[numpy.float64]]: ...
def thread_count() -> int: ...
def limit_threads(most: int) -> None: ...
