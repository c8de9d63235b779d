#!/usr/bin/env python3
"""The guard of the instruction counts notices growth and tells small changes from it."""

import unittest

from check_instructions import growth

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


if __name__ == "__main__":
    unittest.main()
