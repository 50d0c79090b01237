"""What `to_dict` gives is the report of the command of that name: it holds to the same schema."""
import os
import sys
import unittest

import anomalis

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "reports"))
from schemas import Schemas  # noqa: E402

EXAMPLES = os.environ["ANOMALIS_EXAMPLES"]


class Reports(unittest.TestCase):
    def setUp(self):
        self.schemas = Schemas()
        self.line = anomalis.Workspace.read(os.path.join(EXAMPLES, "buried_cable.axm")).load()

    def test_of_a_fit(self):
        self.assertEqual(self.schemas.faults("invert", self.line.fit(iterations=2, starts=1).to_dict()), [])

    def test_of_an_ensemble(self):
        self.assertEqual(self.schemas.faults("uncertainty", self.line.uncertainty(samples=3).to_dict()), [])

    def test_of_a_search(self):
        self.line.bodies = []
        self.assertEqual(self.schemas.faults("find", self.line.find(bodies=1, kinds="thin").to_dict()), [])

    def test_another_name_is_found(self):
        report = dict(self.line.fit(iterations=1, starts=1).to_dict(), depth=1)
        self.assertIn("depth", " ".join(self.schemas.faults("invert", report)))


if __name__ == "__main__":
    unittest.main()
