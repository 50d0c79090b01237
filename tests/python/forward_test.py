"""Bodies, and what they give at stations."""
import copy
import pickle
import threading
import tracemalloc
import unittest
import warnings

import anomalis
import numpy

FIELD = (52000.0, -61.0, 5.0)


def line(count=41, step=25.0):
    distance = numpy.arange(count) * step
    return 450000 + distance * 0.96, 7600000 + distance * 0.28, 320 + 4 * numpy.sin(distance / 90)


def dyke(**values):
    start = dict(distance=480, top=240, strike=12, dip=70, width=18, depth_extent=0, length=0, susc=31000, density=0.3)
    return anomalis.Body("thin_sheet", **{**start, **values})


class Bodies(unittest.TestCase):
    def test_take_their_parameters_by_name_and_show_them(self):
        body = anomalis.Body("sphere", name="Lens", distance=120, top=-30.5, width=40)
        self.assertEqual((body.type, body.name, body.top), ("sphere", "Lens", -30.5))
        self.assertEqual(eval(repr(body)), body)
        self.assertEqual(body.parameters()["width"], 40)
        self.assertEqual(len(body.parameters()), 15)

    def test_are_kept_in_single_precision(self):
        self.assertEqual(dyke(dip=70.1).dip, float(numpy.float32(70.1)))

    def test_know_their_types_in_both_spellings(self):
        self.assertEqual(anomalis.Body("Cylinder/pipe").type, "pipe")
        self.assertEqual(anomalis.Body("Thick Sheet").type, "thick_sheet")

    def test_refuse_what_is_no_name_and_no_number(self):
        with self.assertRaisesRegex(TypeError, "nearest in name is 'width'"):
            anomalis.Body("sphere", witdh=3)
        with self.assertRaisesRegex(ValueError, "there is no type 'cube'.*thin_sheet"):
            anomalis.Body("cube")
        with self.assertRaisesRegex(TypeError, "dip must be a number, not str"):
            dyke(dip="steep")
        for value in (float("nan"), float("inf"), 1e300):
            with self.assertRaisesRegex(ValueError, "top must be a finite number"):
                dyke(top=value)
        with self.assertRaisesRegex(ValueError, "no parameter 'dipp'"):
            dyke(vary={"dipp"})
        with self.assertRaisesRegex(ValueError, "#rrggbb"):
            dyke(colour="red")

    def test_tell_a_fit_what_it_may_change(self):
        body = dyke(vary=["dip", "top"])
        self.assertEqual(body.vary, {"dip", "top"})
        body.set_limits("dip", 40, 120)
        self.assertEqual(body.limits("dip"), (40, 120))
        self.assertEqual(body.limits("top"), (None, None))
        with self.assertRaisesRegex(ValueError, "low must be below high"):
            body.set_limits("dip", 50, 40)

    def test_are_copied_whole(self):
        body = dyke(name="one", vary={"susc"}, on=False, colour="#a1b2c3")
        body.set_limits("susc", 0, 9e4)
        for other in (body.copy(), pickle.loads(pickle.dumps(body)), copy.deepcopy(body)):
            self.assertEqual(other, body)
            other.dip = 10
            self.assertNotEqual(other, body)


class Forward(unittest.TestCase):
    def test_is_the_sum_of_the_bodies(self):
        east, north, up = line()
        bodies = [dyke(), dyke(distance=700, dip=110), anomalis.Body("sphere", distance=300, top=200, width=60)]
        whole = anomalis.forward(bodies, east, north, up, field=FIELD)
        parts = sum(anomalis.forward([one], east, north, up, field=FIELD) for one in bodies)
        numpy.testing.assert_allclose(whole, parts, rtol=1e-13)
        self.assertEqual((whole.dtype, whole.shape), (numpy.float64, (41,)))

    def test_gives_both_channels_or_one(self):
        east, north, up = line()
        mag, grav = anomalis.forward([dyke()], east, north, up, field=FIELD, channel="both")
        numpy.testing.assert_array_equal(mag, anomalis.forward([dyke()], east, north, up, field=FIELD))
        numpy.testing.assert_array_equal(grav, anomalis.forward([dyke()], east, north, up, channel="grav"))
        self.assertGreater(grav.max(), 0)

    def test_hangs_neither_on_cores_nor_on_the_way_of_the_line(self):
        east, north, up = line(301, 4)
        bodies = [dyke(distance=60 * i, dip=60 + i) for i in range(20)]
        for formulas in ("exact", "classic"):
            there = anomalis.forward(bodies, east, north, up, field=FIELD, formulas=formulas)
            back = anomalis.forward(bodies, east[::-1].copy(), north[::-1].copy(), up[::-1].copy(), field=FIELD,
                                    formulas=formulas)
            numpy.testing.assert_array_equal(there, back[::-1])
            anomalis.limit_threads(1)
            alone = anomalis.forward(bodies, east, north, up, field=FIELD, formulas=formulas)
            anomalis.limit_threads(0)
            numpy.testing.assert_array_equal(there, alone)

    def test_places_bodies_along_a_line_that_is_given(self):
        east, north = (grid.ravel() for grid in numpy.meshgrid(numpy.arange(-200, 201, 50.0), numpy.arange(0, 101, 50.0)))
        sphere = anomalis.Body("sphere", distance=100, top=-80, width=50)
        along_east = anomalis.forward([sphere], east, north, 0.0, channel="grav", line=(-100, 50, 90))
        self.assertEqual(east[along_east.argmax()], 0)
        self.assertEqual(north[along_east.argmax()], 50)
        along_north = anomalis.forward([sphere], east, north, 0, channel="grav", line=(50, -100, 0))
        self.assertEqual(east[along_north.argmax()], 50)
        self.assertEqual(north[along_north.argmax()], 0)

    def test_says_what_is_no_line(self):
        with self.assertRaisesRegex(anomalis.Error, "station 3 does not advance.*give line="):
            anomalis.forward([dyke()], [0.0, 2, 1, 3], [0.0] * 4, 0, field=FIELD)
        with self.assertRaisesRegex(anomalis.Error, "at one place"):
            anomalis.forward([dyke()], [5.0, 5], [1.0, 1], 0, field=FIELD)
        with self.assertRaisesRegex(anomalis.Error, "one station is no line"):
            anomalis.forward([dyke()], [5.0], [1.0], 0, field=FIELD)
        with self.assertRaisesRegex(anomalis.Error, "classic formulas.*leave out line"):
            anomalis.forward([dyke()], [5.0], [1.0], 0, field=FIELD, formulas="classic", line=(0, 0, 0))

    def test_reads_doubles_in_place_and_copies_what_is_none(self):
        east, north, up = line(20001, 1)

        def peak(*arrays):
            tracemalloc.start()
            anomalis.forward([dyke()], *arrays, field=FIELD)
            size = tracemalloc.get_traced_memory()[1]
            tracemalloc.stop()
            return size

        in_place = peak(east, north, up)
        self.assertLess(in_place, east.nbytes // 4)
        strided = [numpy.repeat(values, 2)[::2] for values in (east, north, up)]
        self.assertGreater(peak(*strided), 3 * east.nbytes)
        expected = anomalis.forward([dyke()], east, north, up, field=FIELD)
        numpy.testing.assert_array_equal(expected, anomalis.forward([dyke()], *strided, field=FIELD))
        numpy.testing.assert_array_equal(
            expected, anomalis.forward([dyke()], east.tolist(), north.tolist(), up.tolist(), field=FIELD))

    def test_leaves_its_input_and_owns_its_result(self):
        arrays = [values.copy() for values in line()]
        for values in arrays:
            values.setflags(write=False)
        result = anomalis.forward([dyke()], *arrays, field=FIELD)
        kept = result.copy()
        del arrays
        for _ in range(50):
            anomalis.forward([dyke(dip=30)], *line(), field=FIELD)
        numpy.testing.assert_array_equal(result, kept)
        result += 1
        for values, before in zip(line(), line()):
            numpy.testing.assert_array_equal(values, before)

    def test_refuses_arrays_that_are_no_stations(self):
        east, north, up = line()
        with self.assertRaisesRegex(TypeError, "east must be an array of real numbers"):
            anomalis.forward([dyke()], east.astype(str), north, up, field=FIELD)
        with self.assertRaisesRegex(TypeError, "elevation must be an array of real numbers"):
            anomalis.forward([dyke()], east, north, None, field=FIELD)
        with self.assertRaisesRegex(TypeError, "complex"):
            anomalis.forward([dyke()], east + 0j, north, up, field=FIELD)
        with self.assertRaisesRegex(ValueError, "one dimension"):
            anomalis.forward([dyke()], east.reshape(1, -1), north, up, field=FIELD)
        with self.assertRaisesRegex(ValueError, "north has 40 values for 41 stations"):
            anomalis.forward([dyke()], east, north[1:], up, field=FIELD)
        north[3] = numpy.nan
        with self.assertRaisesRegex(anomalis.Error, "north coordinate of station 4 is not a number"):
            anomalis.forward([dyke()], east, north, up, field=FIELD)

    def test_refuses_what_it_does_not_know(self):
        stations = line()
        for wrong, words in ((dict(), "magnetics need field"), (dict(field=(1, 2)), "three numbers"),
                             (dict(field=(0, 1, 2)), "nT above 0"), (dict(field=(5e4, 95, 2)), "-90 to 90"),
                             (dict(field=FIELD, formulas="best"), "'exact' or 'classic'"),
                             (dict(field=FIELD, channel="both channels"), "'mag', 'grav' or 'both'"),
                             (dict(field=FIELD, line="east"), "three numbers")):
            with self.assertRaisesRegex((ValueError, TypeError), words):
                anomalis.forward([dyke()], *stations, **wrong)
        with self.assertRaisesRegex(TypeError, "bodies must be anomalis.Body, not str"):
            anomalis.forward(["dyke"], *stations, field=FIELD)

    def test_warns_of_a_body_that_counts_as_zero(self):
        east, north, up = line()
        with warnings.catch_warnings(record=True) as told:
            warnings.simplefilter("always")
            result = anomalis.forward([anomalis.Body("polygon", distance=400)], east, north, up, field=FIELD)
        self.assertEqual(abs(result).max(), 0)
        self.assertTrue(any(issubclass(one.category, anomalis.AnomalisWarning) for one in told))
        with warnings.catch_warnings():
            warnings.simplefilter("error")
            with self.assertRaises(anomalis.AnomalisWarning):
                anomalis.forward([anomalis.Body("polygon", distance=400)], east, north, up, field=FIELD)

    def test_no_bodies_and_no_stations_give_zeros_and_nothing(self):
        self.assertEqual(anomalis.forward([], *line(), field=FIELD).tolist(), [0] * 41)
        self.assertEqual(anomalis.forward([dyke()], [], [], [], field=FIELD).shape, (0,))

    def test_runs_in_several_threads_with_the_same_bits(self):
        stations = line(401, 3)
        bodies = [dyke(distance=40 * i) for i in range(25)]
        expected = anomalis.forward(bodies, *stations, field=FIELD)
        results = []
        threads = [threading.Thread(target=lambda: results.append(anomalis.forward(bodies, *stations, field=FIELD)))
                   for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(len(results), 4)
        for result in results:
            numpy.testing.assert_array_equal(result, expected)


if __name__ == "__main__":
    unittest.main()
