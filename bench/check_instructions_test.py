#!/usr/bin/env python3
"""The guard of the instruction counts notices growth, tells small changes from it, and names the function."""

import unittest

from check_instructions import growth

KEPT = {"vlan install": {"instructions": 1000.0, "functions": {"Install": 600.0, "Find": 400.0}},
        "vlan destroy": {"instructions": 500.0, "functions": {"Destroy": 500.0}}}


def with_install(find):
    return {**KEPT, "vlan install": {"instructions": 600.0 + find, "functions": {"Install": 600.0, "Find": find}}}


class Growth(unittest.TestCase):
    def test_equal_counts_pass(self):
        self.assertEqual(growth(KEPT, KEPT), [])

    def test_five_percent_more_pass(self):
        self.assertEqual(growth(KEPT, with_install(450.0)), [])

    def test_more_than_five_percent_name_the_operation_and_its_function(self):
        self.assertEqual(growth(KEPT, with_install(460.0)),
                         ["vlan install: 1000 -> 1060 instructions (+6.0 %)", "    Find +60"])

    def test_a_function_that_is_new_is_named(self):
        present = {**KEPT, "vlan destroy": {"instructions": 600.0, "functions": {"Destroy": 500.0, "Check": 100.0}}}
        self.assertEqual(growth(KEPT, present)[1:], ["    Check +100"])

    def test_less_passes(self):
        self.assertEqual(growth(KEPT, with_install(10.0)), [])

    def test_an_operation_that_is_no_longer_counted_is_an_error(self):
        with self.assertRaises(KeyError):
            growth(KEPT, {})


if __name__ == "__main__":
    unittest.main()
