"""Magnetic and gravity anomalies along a survey profile, explained by simple bodies."""

from os import PathLike
from typing import Any, Callable, Iterable, Literal, Mapping, Optional, Tuple, Union, overload

import numpy
from numpy.typing import ArrayLike, NDArray

_Field = Tuple[float, float, float]
_Path = Union[str, PathLike[str]]
_Doubles = NDArray[numpy.float64]
_Singles = NDArray[numpy.float32]
_Range = Tuple[float, float]
_Channel = Literal["mag", "grav"]
_Fitted = Literal["mag", "grav", "joint"]
_Row = Literal["raw", "smoothed", "residual", "gradient", "horizontal", "total_gradient"]
_Export = Literal[
    "profile_table",
    "model_table",
    "mesh",
    "clean_profile",
    "clean_model",
    "dxf_3d",
    "dxf_plan",
    "geojson",
    "geopackage",
]

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

class Fit:
    @property
    def ok(self) -> bool: ...
    @property
    def label(self) -> str: ...
    @property
    def iterations(self) -> int: ...
    @property
    def evaluations(self) -> int: ...
    @property
    def seconds(self) -> float: ...
    @property
    def rms(self) -> dict[str, float]: ...
    @property
    def parameters(self) -> list[dict[str, Any]]: ...
    @property
    def remarks(self) -> list[str]: ...
    @property
    def messages(self) -> list[str]: ...
    def to_dict(self) -> dict[str, Any]: ...

class FoundModel:
    @property
    def kind(self) -> str: ...
    @property
    def rms(self) -> float: ...
    @property
    def criterion(self) -> float: ...
    @property
    def found(self) -> int: ...
    @property
    def bodies(self) -> Tuple[Body, ...]: ...

class Found:
    @property
    def label(self) -> str: ...
    @property
    def models(self) -> Tuple[FoundModel, ...]: ...
    @property
    def channel(self) -> str: ...
    @property
    def rms_of_none(self) -> float: ...
    @property
    def seconds(self) -> float: ...
    @property
    def remarks(self) -> list[str]: ...
    @property
    def messages(self) -> list[str]: ...
    def to_dict(self) -> dict[str, Any]: ...

class Uncertainty:
    @property
    def parameters(self) -> list[dict[str, Any]]: ...
    @property
    def samples(self) -> _Singles: ...
    def fan(self, channel: _Channel = ...) -> Tuple[_Doubles, _Singles, _Singles]: ...
    @property
    def words(self) -> list[str]: ...
    @property
    def seconds(self) -> float: ...
    @property
    def messages(self) -> list[str]: ...
    def to_dict(self) -> dict[str, Any]: ...

class Workspace:
    def __init__(self) -> None: ...
    @staticmethod
    def read(path: _Path) -> Workspace: ...
    @staticmethod
    def from_arrays(
        east: ArrayLike,
        north: ArrayLike,
        elevation: Optional[ArrayLike] = ...,
        *,
        mag: Optional[ArrayLike] = ...,
        grav: Optional[ArrayLike] = ...,
        ground: Optional[ArrayLike] = ...,
        field: Optional[_Field] = ...,
        formulas: str = ...,
        name: str = ...,
    ) -> Workspace: ...
    def set_line(
        self,
        east: ArrayLike,
        north: ArrayLike,
        elevation: Optional[ArrayLike] = ...,
        *,
        mag: Optional[ArrayLike] = ...,
        grav: Optional[ArrayLike] = ...,
        ground: Optional[ArrayLike] = ...,
        name: str = ...,
    ) -> None: ...
    def load(self) -> Workspace: ...
    def write(self, path: _Path) -> None: ...
    def forward(self) -> Workspace: ...
    def export(self, kind: _Export, path: _Path) -> None: ...
    @property
    def bodies(self) -> Tuple[Body, ...]: ...
    @bodies.setter
    def bodies(self, bodies: Iterable[Body]) -> None: ...
    @property
    def messages(self) -> list[str]: ...
    @property
    def distances(self) -> _Doubles: ...
    @property
    def east(self) -> _Doubles: ...
    @property
    def north(self) -> _Doubles: ...
    @property
    def elevation(self) -> _Doubles: ...
    @property
    def ground(self) -> _Doubles: ...
    def observed(self, channel: _Channel = ..., row: _Row = ...) -> _Singles: ...
    def calculated(self, channel: _Channel = ..., row: _Row = ...) -> _Singles: ...
    def regional(self, channel: _Channel = ...) -> _Doubles: ...
    @property
    def field(self) -> Optional[_Field]: ...
    @field.setter
    def field(self, field: _Field) -> None: ...
    formulas: str
    @property
    def source(self) -> dict[str, str]: ...
    @property
    def path(self) -> str: ...
    @property
    def data_file(self) -> str: ...
    @property
    def load_report(self) -> dict[str, str]: ...
    @property
    def window(self) -> _Range: ...
    @window.setter
    def window(self, window: Optional[_Range]) -> None: ...
    sensor_offset: float
    surface_elevation: float
    station_spacing: float
    min_station_spacing: float
    gap_distance: float
    def rms(self, channel: _Channel = ...) -> Optional[float]: ...
    def noise(self, channel: _Channel = ...) -> Optional[float]: ...
    def set_noise(self, channel: _Channel, value: Optional[float]) -> None: ...
    def regional_degree(self, channel: _Channel = ...) -> Optional[int]: ...
    def set_regional_degree(self, channel: _Channel, degree: Optional[int]) -> None: ...
    def fit(
        self,
        *,
        channel: Optional[_Fitted] = ...,
        target: Literal["data", "gradient"] = ...,
        method: Literal["least-squares", "sweep"] = ...,
        iterations: int = ...,
        body: Optional[int] = ...,
        starts: int = ...,
        regional_degree: Optional[int] = ...,
        mag_noise: Optional[float] = ...,
        grav_noise: Optional[float] = ...,
        progress: Optional[Callable[[int, int, float, float], object]] = ...,
    ) -> Fit: ...
    def find(
        self,
        *,
        channel: Optional[_Fitted] = ...,
        most: Optional[int] = ...,
        bodies: Optional[int] = ...,
        kinds: Literal["thin", "thick", "both"] = ...,
        free_present: bool = ...,
        alternatives: int = ...,
        window: Optional[_Range] = ...,
        regional_degree: Optional[int] = ...,
        mag_noise: Optional[float] = ...,
        grav_noise: Optional[float] = ...,
        progress: Optional[Callable[[int, float], object]] = ...,
    ) -> Found: ...
    def uncertainty(
        self,
        *,
        samples: int = ...,
        seed: int = ...,
        channel: Optional[_Fitted] = ...,
        target: Literal["data", "gradient"] = ...,
        strike_within: float = ...,
        vary_bodies: bool = ...,
        same_regional: bool = ...,
        window: Optional[_Range] = ...,
        regional_degree: Optional[int] = ...,
        mag_noise: Optional[float] = ...,
        grav_noise: Optional[float] = ...,
        progress: Optional[Callable[[int, int], object]] = ...,
    ) -> Uncertainty: ...
    def take(self, model: FoundModel) -> None: ...

class SurveyFile:
    @property
    def lines(self) -> list[dict[str, Any]]: ...
    @property
    def coordinate_system(self) -> str: ...
    @property
    def remarks(self) -> list[str]: ...
    def read(self, line: str) -> dict[str, _Doubles]: ...
    def import_line(
        self,
        line: str,
        path: _Path,
        *,
        date: str = ...,
        field: Optional[_Field] = ...,
        sensor_height: Optional[float] = ...,
        formulas: str = ...,
        replace: bool = ...,
    ) -> Workspace: ...

@overload
def forward(
    bodies: Iterable[Body],
    east: ArrayLike,
    north: ArrayLike,
    elevation: ArrayLike,
    *,
    field: Optional[_Field] = ...,
    formulas: str = ...,
    channel: Literal["mag", "grav"] = ...,
    line: Optional[Tuple[float, float, float]] = ...,
) -> _Doubles: ...
@overload
def forward(
    bodies: Iterable[Body],
    east: ArrayLike,
    north: ArrayLike,
    elevation: ArrayLike,
    *,
    field: Optional[_Field] = ...,
    formulas: str = ...,
    channel: Literal["both"],
    line: Optional[Tuple[float, float, float]] = ...,
) -> Tuple[_Doubles, _Doubles]: ...
def thread_count() -> int: ...
def limit_threads(most: int) -> None: ...
def read_survey_file(
    path: _Path,
    *,
    crs: str = ...,
    file_crs: str = ...,
    roles: Mapping[str, Union[str, int]] = ...,
    units: Mapping[str, str] = ...,
    nulls: Mapping[str, float] = ...,
) -> SurveyFile: ...
def read_results(folder: _Path) -> dict[str, Any]: ...
def run_survey(
    plan: _Path,
    folder: _Path,
    *,
    jobs: int = ...,
    again_failed: bool = ...,
    shard: Optional[Tuple[int, int]] = ...,
    progress: Optional[Callable[[dict[str, Any]], object]] = ...,
) -> dict[str, Any]: ...
