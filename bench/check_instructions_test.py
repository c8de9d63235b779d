#!/usr/bin/env python3
"""The guards of the instruction counts notice growth and tell small changes from it."""

import unittest

from check_instructions import growth
from check_recorder import judge

KEPT = {"vlan install": 1000.0, "vlan destroy": 500.0}


class Growth(unittest.TestCase):
    def test_equal_counts_pass(self):
        self.assertEqual(growth(KEPT, KEPT), [])

    def test_five_percent_more_pass(self):
        self.assertEqual(growth(KEPT, {**KEPT, "vlan install": 1050.0}), [])

    def test_more_than_five_percent_name_the_request(self):
        self.assertEqual(growth(KEPT, {**KEPT, "vlan install": 1060.0}),
                         ["vlan install: 1000 -> 1060 instructions (+6.0 %)"])

    def test_less_passes(self):
        self.assertEqual(growth(KEPT, {**KEPT, "vlan install": 610.0}), [])

    def test_a_request_that_is_no_longer_counted_is_an_error(self):
        with self.assertRaises(KeyError):
            growth(KEPT, {})


class Recorder(unittest.TestCase):
    CHEAP = {"without": 1000, "lines": 10, "off": 1040, "paused": 1140, "nowhere": 1000 + 10 * 3900}

    def refused(self, **counts):
        return judge({"card": {**self.CHEAP, **counts}})[1]

    def test_what_is_cheap_passes(self):
        self.assertEqual(self.refused(), [])

    def test_each_way_that_takes_too_much_is_named(self):
        self.assertEqual(self.refused(off=1060), ["card: nothing recorded: +6.0%, but +5.0% at most"])
        self.assertEqual(self.refused(paused=1160), ["card: paused: +16.0%, but +15.0% at most"])
        self.assertEqual(self.refused(nowhere=1000 + 10 * 4100), ["card: a recorded line: 4100, but 4000 at most"])


if __name__ == "__main__":
    unittest.main()
