"""A line in Python: its files, its arrays, its views, and the same numbers as the command line gives."""
import gc
import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import warnings

import anomalis
import numpy
import pandas

EXAMPLES = pathlib.Path(os.environ["ANOMALIS_EXAMPLES"])
FIELD = (51940, -53.1, 6.7)


def dykes():
    return anomalis.Workspace.read(EXAMPLES / "dyke_swarm.axm").load()


def frame():
    return pandas.read_csv(EXAMPLES / "dyke_swarm.dat", sep=r"\s+", comment="!")


def from_frame(table, **more):
    return anomalis.Workspace.from_arrays(table["east"], table["north"], table["sensor"], ground=table["ground"],
                                          mag=table["tmi"], field=FIELD, **more)


def short_line(stations=81):
    """A line over one dyke, its readings those of the dyke and a little noise."""
    east = 25.0 * numpy.arange(stations)
    dyke = anomalis.Body("thin_sheet", distance=1000, top=240, strike=0, dip=80, width=20, depth_extent=0, length=0,
                         susc=40000)
    mag = anomalis.forward([dyke], east, 0 * east, 300.0, field=FIELD)
    mag += 52000 + 0.5 * numpy.random.default_rng(7).standard_normal(stations)
    return dyke, anomalis.Workspace.from_arrays(east, 0 * east, 300.0, ground=250.0, mag=mag, field=FIELD)


class InFolder(unittest.TestCase):
    def setUp(self):
        held = tempfile.TemporaryDirectory()
        self.addCleanup(held.cleanup)
        self.folder = pathlib.Path(held.name)


class Files(InFolder):
    def test_a_workspace_comes_back_as_it_was_written(self):
        ws = dykes()
        ws.bodies[0].top = 291.5
        for name in ("dyke_swarm.axm", "dyke_swarm.dat"):
            shutil.copy(EXAMPLES / name, self.folder)
        ws.write(self.folder / "changed.axm")
        again = anomalis.Workspace.read(self.folder / "changed.axm").load()
        self.assertEqual(again.bodies, ws.bodies)
        numpy.testing.assert_array_equal(again.calculated("mag", "raw"), ws.forward().calculated("mag", "raw"))

    def test_files_that_are_not_there_raise_what_python_raises(self):
        with self.assertRaises(FileNotFoundError) as raised:
            anomalis.Workspace.read(self.folder / "none.axm")
        self.assertEqual(raised.exception.filename, str(self.folder / "none.axm"))
        with self.assertRaises(IsADirectoryError):
            anomalis.Workspace.read(self.folder)
        with self.assertRaises(FileNotFoundError):
            dykes().write(self.folder / "no" / "folder.axm")
        with self.assertRaises(FileNotFoundError):
            anomalis.read_survey_file(self.folder / "none.csv")

    def test_what_is_no_workspace_is_told_in_the_words_of_the_program(self):
        (self.folder / "a.axm").write_text("this is no workspace\n")
        with self.assertRaisesRegex(anomalis.Error, "a.axm"):
            anomalis.Workspace.read(self.folder / "a.axm")
        (self.folder / "b.axm").write_bytes((EXAMPLES / "dyke_swarm.axm").read_bytes())
        with self.assertWarnsRegex(anomalis.AnomalisWarning, "Could not find profile data file"):
            homeless = anomalis.Workspace.read(self.folder / "b.axm")
        with self.assertRaisesRegex(anomalis.Error, "No data file|data file does not exist"):
            homeless.load()

    def test_exports_are_those_of_the_program(self):
        ws = dykes()
        ws.export("clean_profile", self.folder / "profile.csv")
        ws.export("clean_model", self.folder / "model.csv")
        profile = pandas.read_csv(self.folder / "profile.csv")
        numpy.testing.assert_allclose(profile["distance_m"], ws.distances)
        self.assertEqual(list(pandas.read_csv(self.folder / "model.csv")["name"]), [b.name for b in ws.bodies])
        with self.assertRaisesRegex(ValueError, "no export 'png'; there are profile_table"):
            ws.export("png", self.folder / "a.png")
        with self.assertRaisesRegex(anomalis.Error, "coordinate system"):
            short_line()[1].export("geojson", self.folder / "a.geojson")


class Arrays(InFolder):
    def test_a_frame_gives_the_numbers_of_its_file(self):
        loaded, table = dykes(), frame()
        ws = from_frame(table)
        ws.set_regional_degree("mag", loaded.regional_degree("mag"))
        ws.bodies = loaded.bodies
        ws.forward()
        for name in ("distances", "east", "north", "elevation", "ground"):
            numpy.testing.assert_array_equal(getattr(ws, name), getattr(loaded, name), name)
        for row in ("raw", "gradient"):
            numpy.testing.assert_array_equal(ws.observed("mag", row), loaded.observed("mag", row), row)
            numpy.testing.assert_array_equal(ws.calculated("mag", row), loaded.calculated("mag", row), row)

    def test_what_is_written_reads_back_to_the_last_bit(self):
        table = frame()
        table["tmi"] += numpy.random.default_rng(3).random(len(table)) / 3
        table.loc[[4, 90], "tmi"] = numpy.nan
        table.loc[7, "ground"] = numpy.nan
        ws = from_frame(table)
        ws.bodies = [anomalis.Body("thin_sheet", distance=900, top=280)]
        ws.forward().write(self.folder / "mine.axm")
        self.assertEqual(ws.data_file, str(self.folder / "mine.csv"))
        again = anomalis.Workspace.read(self.folder / "mine.axm").load()
        for name in ("distances", "east", "ground"):
            numpy.testing.assert_array_equal(getattr(ws, name), getattr(again, name), name)
        # A workspace file keeps the base level, and so the residual, in seven digits.
        for row in ("raw", "gradient"):
            numpy.testing.assert_array_equal(ws.observed("mag", row), again.observed("mag", row), row)
            numpy.testing.assert_array_equal(ws.calculated("mag", row), again.calculated("mag", row), row)
        self.assertLess(again.observed("mag", "raw")[4], -1e30)
        ws.forward()
        with self.assertRaisesRegex(ValueError, "must end in .axm"):
            from_frame(table).write(self.folder / "mine.csv")

    def test_the_rows_are_the_sums_of_the_bodies_in_single_precision(self):
        for formulas in ("exact", "classic"):
            ws = dykes()
            ws.formulas = formulas
            ws.forward()
            total = numpy.zeros(len(ws.distances), numpy.float32)
            for body in ws.bodies:
                total += anomalis.forward([body], ws.east, ws.north, ws.elevation, field=ws.field,
                                          formulas=formulas).astype(numpy.float32)
            numpy.testing.assert_array_equal(total, ws.calculated("mag", "raw"), formulas)

    def test_lines_that_are_none_are_refused(self):
        east = numpy.arange(10.0)
        with self.assertRaisesRegex(ValueError, "needs readings"):
            anomalis.Workspace.from_arrays(east, east)
        with self.assertRaisesRegex(ValueError, "mag has 9 values for 10 stations"):
            anomalis.Workspace.from_arrays(east, east, mag=east[1:])
        with self.assertRaisesRegex(TypeError, "mag must be an array of real numbers"):
            anomalis.Workspace.from_arrays(east, east, mag=["a"] * 10)
        gone = east.copy()
        gone[2] = numpy.nan
        with self.assertRaisesRegex(anomalis.Error, "east of station 3 is not a number"):
            anomalis.Workspace.from_arrays(gone, east, mag=east)
        with self.assertRaisesRegex(anomalis.Error, "No valid mag values"):
            anomalis.Workspace.from_arrays(east, east, mag=east * numpy.nan, field=FIELD)
        with self.assertRaisesRegex(anomalis.Error, "does not fit single precision"):
            anomalis.Workspace.from_arrays(east, east, mag=east * 1e300, field=FIELD)
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            with self.assertRaisesRegex(anomalis.Error, "There is no line|no stations|not long enough"):
                anomalis.Workspace.from_arrays(0 * east, 0 * east, mag=east, field=FIELD).find()

    def test_magnetics_without_a_field_say_so(self):
        ws = anomalis.Workspace.from_arrays(25.0 * numpy.arange(40), numpy.zeros(40), 10.0, mag=numpy.arange(40.0) ** 2)
        self.assertIsNone(ws.field)
        with self.assertRaisesRegex(anomalis.Error, "field"):
            ws.find()
        ws.field = FIELD
        self.assertEqual(ws.field[0], 51940)


class Views(unittest.TestCase):
    def test_are_read_only_and_show_what_stands_there(self):
        ws = dykes()
        row = ws.calculated("mag", "raw")
        before = row.copy()
        with self.assertRaises(ValueError):
            row[0] = 1
        ws.bodies[0].susc *= 2
        ws.forward()
        self.assertFalse(numpy.array_equal(row, before))
        self.assertTrue(numpy.shares_memory(row, ws.calculated("mag", "raw")))

    def test_outlive_their_workspace_and_its_next_load(self):
        ws = dykes()
        row, distances = ws.observed("mag", "raw"), ws.distances
        kept = row.copy()
        ws.station_spacing = 40
        ws.load()
        self.assertNotEqual(len(ws.distances), len(distances))
        numpy.testing.assert_array_equal(row, kept)
        del ws
        gc.collect()
        numpy.testing.assert_array_equal(row, kept)
        self.assertEqual(distances[0], 0)

    def test_of_a_channel_that_is_not_there_are_refused(self):
        ws = dykes()
        with self.assertRaisesRegex(anomalis.Error, "no gravity"):
            ws.observed("grav")
        with self.assertRaisesRegex(ValueError, "row must be"):
            ws.observed("mag", "rough")
        with self.assertRaisesRegex(anomalis.Error, "no stations"):
            anomalis.Workspace().distances


class Model(unittest.TestCase):
    def test_bodies_are_those_of_the_workspace(self):
        ws = dykes()
        body = ws.bodies[1]
        rms = ws.rms("mag")
        body.top -= 100
        self.assertEqual(ws.bodies[1].top, body.top)
        self.assertGreater(ws.forward().rms("mag"), rms)
        self.assertAlmostEqual(body.copy().top, body.top)
        ws.bodies = ws.bodies[:1]
        with self.assertRaisesRegex(anomalis.Error, "body 2 is gone"):
            body.top
        self.assertIsNotNone(ws.bodies[0].depth_below_ground)

    def test_settings_that_read_the_line_anew_ask_for_a_load(self):
        ws = dykes()
        ws.gap_distance = 30
        ws.forward()
        ws.min_station_spacing = 100
        with self.assertRaisesRegex(anomalis.Error, "load"):
            ws.forward()
        self.assertGreater(len(ws.load().distances), 10)

    def test_the_window_is_that_of_the_fit(self):
        ws = dykes()
        ws.window = (500, 1500)
        first, last = ws.window
        self.assertTrue(500 <= first < last <= 1500)
        with self.assertRaisesRegex(anomalis.Error, "station"):
            ws.window = (1, 2)
        ws.window = None
        self.assertEqual(ws.window, (0, ws.distances[-1]))


class Steps(InFolder):
    def test_find_fit_and_uncertainty_tell_the_dyke_that_is_there(self):
        dyke, ws = short_line()
        growth = []
        found = ws.find(progress=lambda bodies, rms: growth.append((bodies, rms)))
        self.assertGreater(len(growth), 0)
        self.assertEqual(len(ws.bodies), 1)
        self.assertEqual(found.models[0].bodies[0].parameters(), ws.bodies[0].parameters())
        self.assertLess(abs(ws.bodies[0].distance - dyke.distance), 10)
        self.assertEqual(found.to_dict()["alternatives"][0]["bodies"][0]["type"][-5:], "Sheet")

        fit = ws.fit()
        table = pandas.DataFrame(fit.parameters).set_index("name")
        self.assertTrue(table.loc["distance", "lower"] < table.loc["distance", "value"] < table.loc["distance", "upper"])
        self.assertLess(abs(fit.rms["mag"] - 0.5), 0.15)
        self.assertEqual(fit.to_dict()["label"], fit.label)

        sure = ws.uncertainty(samples=25, seed=3)
        self.assertEqual(sure.samples.shape, (25, len(sure.parameters)))
        distances, lower, upper = sure.fan("mag")
        self.assertTrue(numpy.all(lower <= upper))
        self.assertEqual(len(distances), len(ws.distances))
        self.assertTrue(any("Top of body 1" in words for words in sure.words))
        with self.assertRaisesRegex(anomalis.Error, "gravity"):
            sure.fan("grav")

    def test_another_proposal_can_be_taken(self):
        ws = short_line()[1]
        found = ws.find(alternatives=3)
        other = found.models[-1]
        ws.take(other)
        self.assertEqual([b.parameters() for b in ws.bodies], [b.parameters() for b in other.bodies])

    def test_refusals_are_errors_and_wrong_words_are_values(self):
        ws = short_line()[1]
        with self.assertRaisesRegex(anomalis.Error, "no bodies to invert"):
            ws.fit()
        with self.assertRaisesRegex(anomalis.Error, "needs a gravity column"):
            ws.find(channel="grav")
        for wrong in (dict(channel="both"), dict(most=0), dict(kinds="fat"), dict(mag_noise=-1), dict(regional_degree=7)):
            with self.assertRaises(ValueError):
                ws.find(**wrong)
        with self.assertRaises(ValueError):
            ws.fit(method="guess")
        with self.assertRaises(ValueError):
            ws.uncertainty(strike_within=100)

    def test_what_progress_raises_ends_the_work(self):
        class Enough(Exception):
            pass

        def leave(*_):
            raise Enough

        dyke, ws = short_line(41)
        with self.assertRaises(Enough):
            ws.find(progress=leave)
        ws.bodies = [dyke]
        for step in (ws.fit, lambda **more: ws.uncertainty(samples=20, **more)):
            with self.assertRaises(Enough):
                step(progress=leave)
            self.assertEqual(len(ws.forward().bodies), 1)

    def test_a_workspace_at_work_is_closed_to_others(self):
        ws = dykes()
        told = []

        def look(*_):
            try:
                ws.bodies
            except anomalis.Error as error:
                told.append(str(error))

        ws.fit(progress=look, starts=1)
        self.assertIn("at work", told[0])

    def test_other_threads_go_on_meanwhile(self):
        ws = dykes()
        working, beats = threading.Event(), []

        def beat():
            while not working.is_set():
                beats.append(time.monotonic())
                time.sleep(0.001)

        thread = threading.Thread(target=beat)
        thread.start()
        ws.uncertainty(samples=40)
        working.set()
        thread.join()
        self.assertGreater(len(beats), 20)


class Interrupted(unittest.TestCase):
    def test_ctrl_c_ends_long_work_within_a_moment(self):
        # In a program of its own: the signal is for the whole process.
        script = """
import os, signal, sys, threading, time
import anomalis
ws = anomalis.Workspace.read(sys.argv[1]).load()
raised = []
def interrupt():
    time.sleep(0.3)
    raised.append(time.monotonic())
    os.kill(os.getpid(), signal.SIGINT)
threading.Thread(target=interrupt).start()
try:
    while True:
        STEP
except KeyboardInterrupt:
    print(time.monotonic() - raised[0])
    print(len(ws.forward().bodies))
"""
        for step in ("ws.fit(starts=400)", "ws.find(most=20)", "ws.uncertainty(samples=100000)"):
            run = subprocess.run([sys.executable, "-c", script.replace("STEP", step), EXAMPLES / "dyke_swarm.axm"],
                                 capture_output=True, text=True, check=False, timeout=120)
            self.assertEqual(run.returncode, 0, step + "\n" + run.stderr)
            seconds, bodies = run.stdout.split()
            self.assertGreater(int(bodies), 0, step)
            self.assertGreaterEqual(float(seconds), 0, step)


class Forked(unittest.TestCase):
    def test_work_goes_on_in_a_forked_process_and_both_end(self):
        ws = dykes()
        ws.uncertainty(samples=20)  # the threads of the pool are there
        pid = os.fork()
        if pid == 0:
            ok = False
            try:
                ok = dykes().fit(starts=1).iterations > 0
            finally:
                os._exit(0 if ok else 1)
        self.assertEqual(os.waitpid(pid, 0)[1], 0)


class Surveys(InFolder):
    def setUp(self):
        super().setUp()
        rows = ["line,east,north,sensor,ground,mag"]
        for line in (10, 20):
            dyke = anomalis.Body("thin_sheet", distance=600, top=250, strike=0, dip=90, width=20, depth_extent=0,
                                 length=0, susc=30000)
            east = 20.0 * numpy.arange(61)
            values = anomalis.forward([dyke], east, 0 * east, 300.0, field=FIELD) + 51900
            values += 0.4 * numpy.random.default_rng(line).standard_normal(61)
            rows += [f"{line},{x:.1f},{1000 + 10 * line:.1f},300,280,{value:.2f}" for x, value in zip(east, values)]
        self.file = self.folder / "survey.csv"
        self.file.write_text("\n".join(rows) + "\n")

    def test_lines_are_listed_read_and_imported(self):
        survey = anomalis.read_survey_file(self.file)
        self.assertEqual([row["line"] for row in survey.lines], ["10", "20"])
        columns = survey.read("20")
        self.assertEqual((len(columns["east_m"]), columns["ground_m"][0]), (61, 280))
        with self.assertRaisesRegex(anomalis.Error, "no line 30; nearest in name are"):
            survey.read("30")
        ws = survey.import_line("10", self.folder / "ten.axm", field=FIELD)
        self.assertEqual((len(ws.distances), ws.source["line"]), (61, "10"))
        self.assertTrue((self.folder / "ten.csv").exists())
        (self.folder / "ten.csv").write_text("something else\n")
        with self.assertRaises(anomalis.Error):
            survey.import_line("10", self.folder / "ten.axm", field=FIELD)
        survey.import_line("10", self.folder / "ten.axm", field=FIELD, replace=True)

    def test_a_run_gives_the_results_that_frames_take(self):
        (self.folder / "plan.toml").write_text(
            'name = "two lines"\n[source]\nfile = "survey.csv"\nfield = [51940, -53.1, 6.7]\n[find]\nmost = 2\n[invert]\n')
        states = []
        done = anomalis.run_survey(self.folder / "plan.toml", self.folder / "results", jobs=2, progress=states.append)
        self.assertEqual((done["outcome"], done["done"], done["failed"]), ("all done", 2, 0))
        self.assertGreater(len(states), 0)
        again = anomalis.run_survey(self.folder / "plan.toml", self.folder / "results")
        self.assertEqual((again["kept"], again["done"]), (2, 0))
        results = anomalis.read_results(self.folder / "results")
        self.assertEqual((results["name"], results["missing"]), ("two lines", []))
        lines, bodies = pandas.DataFrame(results["lines"]), pandas.DataFrame(results["bodies"])
        table = pandas.read_csv(self.folder / "results" / "bodies.csv", float_precision="round_trip")
        self.assertEqual(list(bodies.columns), list(table.columns))
        for name in ("top_elevation_m", "dip_deg", "width_m"):
            numpy.testing.assert_array_equal(bodies[name], table[name], name)
        self.assertEqual(list(lines["line"]), ["10", "20"])

    def test_folders_and_plans_that_are_none_are_refused(self):
        with self.assertRaisesRegex(anomalis.Error, "no results of a survey|no survey.json"):
            anomalis.read_results(self.folder)
        with self.assertRaises(FileNotFoundError):
            anomalis.run_survey(self.folder / "none.toml", self.folder / "results")
        (self.folder / "plan.toml").write_text('name = "x"\nsorce = 1\n')
        with self.assertRaisesRegex(anomalis.Error, "sorce"):
            anomalis.run_survey(self.folder / "plan.toml", self.folder / "results")


if __name__ == "__main__":
    unittest.main()
