# %% [markdown]
# A line over a swarm of dykes: read with pandas, explained without a start, fitted, and asked how sure it is.
# Each cell stands by itself in an editor that knows `# %%`; as a script: `first_line.py [PICTURE]`.

# %%
import pathlib
import sys

import matplotlib.pyplot as plt
import numpy
import pandas

import anomalis

examples = pathlib.Path(__file__).resolve().parent.parent
table = pandas.read_csv(examples / "dyke_swarm.dat", sep=r"\s+", comment="!")

# %% The readings in nT, heights and places in m; the field of the survey in nT and degrees.
line = anomalis.Workspace.from_arrays(
    table["east"],
    table["north"],
    table["sensor"],
    ground=table["ground"],
    mag=table["tmi"],
    field=(51940, -53.1, 6.7),
    name="dyke_swarm",
)
print(f"{len(table)} stations over {line.distances[-1] / 1000:.1f} km, noise {line.noise('mag'):.1f} nT")

# %% What bodies explain the line? The best model is taken; the others stay at hand in `found.models`.
found = line.find()
print(found.label)
for model in found.models:
    print(f"  {model.kind}: rms {model.rms:.2f} nT, criterion {model.criterion:.1f}")

# %% The fit tells values with their 90 % intervals: one row a parameter.
fit = line.fit()
parameters = pandas.DataFrame(fit.parameters)
print(fit.label)
print(parameters[["body", "name", "value", "lower", "upper", "unit"]].to_string(index=False))

# %% How far do the data let the model move? Models that explain them as well, drawn anew.
sure = line.uncertainty(samples=100)
for words in sure.words:
    print(words)

# %% The curves, what is left of them, and the section below the line.
distance = numpy.asarray(line.distances) / 1000
fan_distance, lower, upper = sure.fan("mag")
figure, (curves, rest, section) = plt.subplots(
    3, 1, figsize=(10, 8.5), sharex=True, height_ratios=(3, 1, 2), layout="constrained"
)
observed, calculated = line.observed("mag"), line.calculated("mag")
curves.fill_between(fan_distance / 1000, lower, upper, color="#f2c14e", alpha=0.6, label="90 % of the models")
curves.plot(distance, observed, ".", markersize=3, color="#444444", label="observed less regional")
curves.plot(distance, calculated, color="#c0392b", linewidth=1.2, label="calculated")
curves.set_ylabel("Magnetics, nT")
curves.legend(frameon=False)
rest.axhline(0, color="#bbbbbb", linewidth=0.8)
rest.plot(distance, observed - calculated, color="#2c5f8a", linewidth=0.8)
rest.set_ylabel(f"Residual, nT\n(rms {fit.rms['mag']:.2f})")

section.plot(distance, line.ground, color="#5b4a2f", linewidth=1.2)
section.plot(distance, line.elevation, color="#8899aa", linewidth=0.8, linestyle=":")
bottom = float(numpy.min(line.ground)) - 400
bearing = numpy.degrees(numpy.arctan2(line.east[-1] - line.east[0], line.north[-1] - line.north[0]))
for body in line.bodies:
    # A sheet crosses the section at the apparent dip; dips rise from 0 towards the right.
    across = numpy.sin(numpy.radians(bearing - body.strike))
    lean = (body.top - bottom) / numpy.tan(numpy.radians(body.dip)) / across
    half = body.width / 2 / abs(across)
    corners = [(-half, body.top), (half, body.top), (half + lean, bottom), (-half + lean, bottom)]
    section.fill(*zip(*[((body.distance + x) / 1000, z) for x, z in corners]), color=body.colour, alpha=0.85)
    depth = body.depth_below_ground
    section.annotate(
        f"{depth:.0f} m",
        (body.distance / 1000, body.top),
        xytext=(6, -4),
        textcoords="offset points",
        fontsize=8,
        va="top",
    )
section.set_ylabel("Elevation, m")
section.set_xlabel("Distance along the profile, km")
section.set_ylim(bottom, float(numpy.max(line.elevation)) + 60)
section.set_xlim(distance[0], distance[-1])
figure.align_ylabels()

picture = sys.argv[1] if len(sys.argv) > 1 else "first_line.png"
figure.savefig(picture, dpi=130)
print(f"The picture is in {picture}")
