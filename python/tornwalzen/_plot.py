"""The picture of a result: part, blank, strain diagram."""
from __future__ import annotations

from typing import TYPE_CHECKING, Any, Dict, Tuple

import numpy as np
from numpy.typing import NDArray

from .errors import InputError
from .limits import ZONES

if TYPE_CHECKING:
    from matplotlib.figure import Figure

    from .result import Result

_LABELS: Dict[str, str] = {
    "thickness_ratio": "thickness ratio t/t0",
    "thickness": "thickness (mm)",
    "equivalent": "equivalent strain",
    "flow_stress": "flow stress (MPa)",
    "smallest_angle": "smallest corner (degrees)",
    "zones": "forming limit",
    "major": "major strain",
    "minor": "minor strain",
}
#: Colours of the zones: safe, marginal, split, wrinkling tendency; told apart without red and green, too.
_ZONE_COLOURS = {-1: "#b0b0b0", 0: "#2b83ba", 1: "#fdae61", 2: "#a50026", 3: "#8073ac"}
_LIGHT = np.array([0.3, -0.5, 0.81])  # towards it, of length about 1


def plot(result: "Result", field: str) -> "Figure":
    """See Result.plot."""
    if field not in _LABELS:
        raise InputError(f"there is no field {field!r}; known are {', '.join(_LABELS)}", place="field")
    try:
        from matplotlib import rc_context
        from matplotlib.figure import Figure as NewFigure
    except ImportError as problem:
        raise InputError("plot needs matplotlib", place="plot",
                         advice="install it (Debian: python3-matplotlib)") from problem
    with rc_context({"font.size": 9}):
        figure = NewFigure(figsize=(13.5, 4.6), layout="constrained")
        figure.suptitle(f"{len(result.triangles)} triangles; {result.settings.thickness:g} mm; verdict {result.verdict}",
                        fontsize=9)
        part, blank, diagram = (figure.add_subplot(1, 3, k, **options) for k, options in
                                ((1, {"projection": "3d"}), (2, {}), (3, {})))
        colours, scale = _coloured(result, field)
        draw_part(part, result.points, result.triangles, colours)
        draw_blank(blank, result, colours)
        if scale is not None:
            figure.colorbar(scale, ax=blank, label=_LABELS[field], shrink=0.8)
        draw_diagram(diagram, result)
    return figure


def _coloured(result: "Result", field: str) -> Tuple[NDArray[np.float64], Any]:
    """A colour (m, 4) per triangle, and what a colour bar is made from; None for zones, which the diagram explains."""
    from matplotlib import cm, colors
    if field == "zones":
        return np.array([colors.to_rgba(_ZONE_COLOURS[int(zone)]) for zone in result.zones]), None
    values = {"major": result.strains[:, 0], "minor": result.strains[:, 1]}.get(field)
    if values is None:
        values = getattr(result, field)
    known = values[np.isfinite(values)]
    low, high = (float(known.min()), float(known.max())) if len(known) else (0.0, 1.0)
    if high - low < 1e-9 * max(abs(high), 1.0):
        low, high = low - 0.5, high + 0.5
    scale = cm.ScalarMappable(colors.Normalize(low, high), "viridis")
    return np.asarray(scale.to_rgba(np.where(np.isfinite(values), values, low))), scale


def draw_part(axes: Any, points: NDArray[np.float64], triangles: NDArray[np.int32], colours: Any) -> None:
    """The part in space, shaded from above."""
    from mpl_toolkits.mplot3d.art3d import Poly3DCollection
    corners = points[triangles]
    normal = np.cross(corners[:, 1] - corners[:, 0], corners[:, 2] - corners[:, 0])
    length = np.linalg.norm(normal, axis=1, keepdims=True)
    shade = 0.55 + 0.45 * np.abs((normal / np.where(length > 0.0, length, 1.0)) @ _LIGHT)
    lit = np.array(colours, copy=True)
    lit[:, :3] *= np.minimum(shade, 1.0)[:, None]
    axes.add_collection3d(Poly3DCollection(corners, facecolors=lit, edgecolors=lit, linewidths=0.2))
    low, high = points.min(axis=0), points.max(axis=0)
    axes.set(xlim=(low[0], high[0]), ylim=(low[1], high[1]), zlim=(low[2], high[2]),
             title=f"part (mm), {high[2] - low[2]:.4g} high")
    sides = np.maximum(high - low, 0.05 * (high - low).max())
    axes.set_box_aspect(sides)
    axes.set_zticks([])  # the height stands in the title: its labels would lie on the blank's axis
    axes.view_init(elev=28, azim=-60)


def draw_blank(axes: Any, result: "Result", colours: Any) -> None:
    """The blank in the plane, with its outline."""
    from matplotlib.collections import PolyCollection
    if np.isfinite(result.blank).all():
        axes.add_collection(PolyCollection(list(result.blank[result.triangles]), facecolors=colours,
                                           edgecolors=colours, linewidths=0.2))
        for loop in result.outline():
            closed = np.vstack((loop.points, loop.points[:1]))
            axes.plot(closed[:, 0], closed[:, 1], color="black", linewidth=0.8)
        axes.autoscale_view()
    axes.set_aspect("equal")
    axes.set(title="blank (mm)", xlabel="u (mm)", ylabel="v (mm)")


def draw_diagram(axes: Any, result: "Result") -> None:
    """Major over minor strain, in the colours of their zones, with the limit curve and the line of its margin."""
    minor, major = result.strains[:, 1], result.strains[:, 0]
    for zone, words in ZONES.items():
        of = (result.zones == zone) & np.isfinite(major)
        if of.any():
            label = f"{words}: {int(of.sum())}" if zone >= 0 else "strains"
            axes.scatter(minor[of], major[of], s=3, color=_ZONE_COLOURS[zone], label=label)
    known = np.isfinite(major)
    left = min(-0.1, float(minor[known].min()) * 1.1) if known.any() else -0.1
    right = max(0.1, float(minor[known].max()) * 1.1) if known.any() else 0.1
    top = max(0.1, float(major[known].max()) * 1.1) if known.any() else 0.1
    if result.limit is not None:
        x = np.linspace(left, right, 200)
        y = result.limit.curve.at(x)
        top = max(top, 1.1 * float(y.max()))
        axes.plot(x, y, color="black", linewidth=1.2, label="limit curve")
        below = np.log1p(np.expm1(y) - 0.01 * result.limit.margin)
        axes.plot(x, below, color="black", linewidth=0.8, linestyle="--",
                  label=f"{result.limit.margin:g} % below it")
    axes.set(xlim=(left, right), ylim=(-0.05 * top, top), title="strain diagram (logarithmic)",
             xlabel="minor strain", ylabel="major strain")
    axes.axhline(0.0, color="grey", linewidth=0.5)
    axes.axvline(0.0, color="grey", linewidth=0.5)
    if axes.get_legend_handles_labels()[0]:
        axes.legend(fontsize=8, loc="upper right")
