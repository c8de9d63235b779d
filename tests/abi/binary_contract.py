"""Checks the shared library as callers and platforms meet it: from the compiled files, not from the sources.

usage: binary_contract.py LIBRARY OBJECTS_DIRECTORY PLATFORM_SYMBOLS MAJOR_VERSION MAX_TEXT [unittest arguments]
"""
import re
import subprocess
import sys
import unittest
import xml.etree.ElementTree
from pathlib import Path

LIBRARY, OBJECTS, PLATFORM_SYMBOLS, MAJOR_VERSION, MAX_TEXT = sys.argv[1:6]

INTERFACE = "31HalL3MplsEncapsulationInterface"
UPDATE_INTERFACE = "N9hal_encap28HalL3MplsEncapsulationUpdItf"
MODULE = "25HalL3MplsEncapsulationBcm"
UPDATE = "N9hal_encap25HalL3MplsEncapsulationUpd"

EXPORTS = {
    *(f"_ZN{INTERFACE}{member}Ev" for member in ("11GetInstance", "D0", "D1", "D2")),
    *(f"_Z{UPDATE_INTERFACE}{member}Ev" for member in ("11GetInstance", "D0", "D1", "D2")),
    *(f"_Z{kind}{INTERFACE}" for kind in ("TV", "TI", "TS")),
    *(f"_Z{kind}{UPDATE_INTERFACE}E" for kind in ("TV", "TI", "TS")),
}

OPERATIONS = [
    "InitEncapsulationModule", "InstallVrf", "DestroyVrf",
    "InstallVlanOutgoingEncapsulation", "DestroyVlanOutgoingEncapsulation", "ReplaceVlanOutgoingEncapsulation",
    "InstallHostOutgoingEncapsulation", "DestroyHostOutgoingEncapsulation", "ReplaceHostOutgoingEncapsulation",
    "InstallMplsUnprotectedOutgoingEncapsulation", "DestroyMplsUnprotectedOutgoingEncapsulation",
    "ReplaceMplsUnprotectedOutgoingEncapsulation",
]


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def readelf(option, file=LIBRARY):
    return run("readelf", "--wide", option, file)


def symbols(option, file):
    """(name, section, value, size) of each symbol; the name with its version."""
    for line in readelf(option, file).splitlines():
        fields = line.split()
        if len(fields) >= 8 and re.fullmatch(r"\d+:", fields[0]) and fields[3] != "SECTION":
            yield fields[7], fields[6], int(fields[1], 16), int(fields[2], 0)


def dynamic(tag):
    return re.findall(rf"\({tag}\).*\[(.*)\]", readelf("--dynamic"))


def demangled(names):
    return set(run("c++filt", *names).splitlines()) if names else set()


def slots(table):
    """What each word of the table refers to, None for plain numbers, read from the object that holds the table."""
    for file in sorted(Path(OBJECTS).rglob("*.o")):
        for name, section, value, size in symbols("--symbols", file):
            if name == table and section != "UND":
                word = 8 if "ELF64" in readelf("--file-header", file) else 4
                found = relocations(file, section, value, size)
                return [found.get(value + offset) for offset in range(0, size, word)]
    raise AssertionError(f"no object holds {table}")


def relocations(file, section_index, start, size):
    """Symbols by the place in the section where they are filled in."""
    section = re.search(rf"\[ *{section_index}\] (\S+)", readelf("--section-headers", file)).group(1)
    found, inside = {}, False
    for line in readelf("--relocs", file).splitlines():
        if line.startswith("Relocation section"):
            inside = re.search(rf"'\.rela?{re.escape(section)}'", line) is not None
        elif inside and re.match(r"[0-9a-f]{8}", line):
            fields = line.split()
            if start <= int(fields[0], 16) < start + size:
                found[int(fields[0], 16)] = fields[4]
    return found


def member_name(symbol):
    """The last name of a mangled member: "InstallVrf"; "D1" and "D0" for destructors."""
    destructor = re.search(r"D[01]Ev$", symbol)
    if destructor:
        return destructor.group()[:2]
    nested = re.match(r"_Z(?:Thn\d+_)?NK?(.*)", symbol).group(1)
    name = ""
    while length := re.match(r"\d+", nested):
        end = length.end() + int(length.group())
        name, nested = nested[length.end():end], nested[end:]
    return name


class Symbols(unittest.TestCase):
    def test_exports_are_the_two_entry_points_and_their_classes(self):
        defined = {name for name, section, *_ in symbols("--dyn-syms", LIBRARY) if section not in ("UND", "ABS")}
        self.assertEqual(defined, {f"{name}@@HAL_ENCAPSULATION_1" for name in EXPORTS})

    def test_undefined_symbols_are_the_platforms_and_the_runtimes(self):
        undefined = {name for name, section, *_ in symbols("--dyn-syms", LIBRARY) if section == "UND"}
        runtime = {name for name in undefined if re.search(r"@(GLIBC|GLIBCXX|CXXABI|GCC)_[\d.]+$", name)}
        start_up = {"__gmon_start__", "_ITM_registerTMCloneTable", "_ITM_deregisterTMCloneTable"}
        platform = set(Path(PLATFORM_SYMBOLS).read_text().splitlines())
        self.assertEqual(demangled(undefined - runtime - start_up), platform)

    def test_soname_carries_the_major_version(self):
        self.assertEqual(dynamic("SONAME"), [f"libhal_switch_l3_mpls_encapsulation_ll_bcm.so.{MAJOR_VERSION}"])

    def test_needs_the_language_runtimes_alone(self):
        self.assertEqual(set(dynamic("NEEDED")), {"libstdc++.so.6", "libgcc_s.so.1", "libc.so.6"})


class Hardening(unittest.TestCase):
    def test_relocations_are_read_only_from_the_start(self):
        self.assertIn("GNU_RELRO", readelf("--program-headers"))
        self.assertRegex(readelf("--dynamic"), r"\(FLAGS\).*BIND_NOW|\(FLAGS_1\).*NOW")

    def test_code_is_not_relocated(self):
        self.assertNotIn("TEXTREL", readelf("--dynamic"))

    def test_nothing_is_writable_and_executable(self):
        headers = readelf("--program-headers")
        self.assertRegex(headers, r"GNU_STACK .* RW ")
        self.assertNotRegex(headers, r" RWE ")

    def test_stacks_are_protected(self):
        self.assertTrue(any(name.startswith("__stack_chk_fail") for name, *_ in symbols("--dyn-syms", LIBRARY)))

    def test_every_object_is_fortified(self):
        commands = (Path(OBJECTS) / "../../../compile_commands.json").resolve().read_text()
        compiled = [line for line in commands.splitlines() if '"command"' in line and "encapsulation_objects" in line]
        self.assertTrue(compiled)
        self.assertEqual([line for line in compiled if not re.search(r"-O[2s] .*-D_FORTIFY_SOURCE=2", line)], [])

    def test_text_fits_the_card(self):
        text, data, bss = map(int, run("size", LIBRARY).splitlines()[1].split()[:3])
        print(f"size of the library: text {text} (at most {MAX_TEXT}), data {data}, bss {bss} bytes")
        self.assertLess(text, int(MAX_TEXT))


class Tables(unittest.TestCase):
    def test_module_slots(self):
        table = slots(f"_ZTV{MODULE}")
        primary, secondary = table[:17], table[17:]
        self.assertEqual(primary[:2], [None, f"_ZTI{MODULE}"])
        self.assertEqual([member_name(slot) for slot in primary[2:]], ["D1", "D0", *OPERATIONS, "ToString"])
        self.assertEqual(secondary[:2], [None, f"_ZTI{MODULE}"])
        self.assertTrue(all(slot.startswith("_ZThn") for slot in secondary[2:]), secondary)
        self.assertEqual([member_name(slot) for slot in secondary[2:]], ["D1", "D0", "ToString"])

    def test_update_registry_slots(self):
        self.assertEqual([member_name(slot) for slot in slots(f"_ZTV{UPDATE}E")[2:]],
                         ["D1", "D0", "RegisterMplsUpdateClient"])

    def test_interfaces_have_the_same_slots_and_leave_their_operations_open(self):
        """The compiler leaves the two destructors of a class that cannot be built empty."""
        for table, operations in ((f"_ZTV{INTERFACE}", len(OPERATIONS)), (f"_ZTV{UPDATE_INTERFACE}E", 1)):
            self.assertEqual(slots(table), [None, table.replace("_ZTV", "_ZTI"), None, None] +
                             operations * ["__cxa_pure_virtual"])

    def test_bases_in_order(self):
        bases = [slot for slot in slots(f"_ZTI{MODULE}") if slot and slot.startswith("_ZTI")]
        self.assertEqual(bases, [f"_ZTI{INTERFACE}", "_ZTI31HalL3MplsEncapsulationPrintable"])


class Layout(unittest.TestCase):
    """From the debug information, in words of the target: a pointer is one word."""

    @classmethod
    def setUpClass(cls):
        cls.abi = xml.etree.ElementTree.fromstring(run("abidw", "--load-all-types", LIBRARY))
        cls.word = int(cls.abi.find(".//abi-instr").get("address-size"))

    def layout(self, name):
        """Size and (member, offset) pairs, in bits."""
        found = next(decl for decl in self.abi.iter("class-decl")
                     if decl.get("name") == name and decl.get("is-declaration-only") != "yes")
        members = [(member.find("var-decl").get("name"), int(member.get("layout-offset-in-bits")))
                   for member in found.findall("data-member") if member.get("static") != "yes"]
        return int(found.get("size-in-bits")), members

    def test_record_has_12_bytes(self):
        self.assertEqual(self.layout("DestinationIdCorrelator"),
                         (96, [("destination_id", 0), ("intf_id", 32), ("egress_id", 64)]))

    def test_module_members_follow_the_two_bases(self):
        bases = 2 * self.word
        pointers = bases + 96 + (self.word - 32)
        self.assertEqual(self.layout("HalL3MplsEncapsulationBcm"),
                         (pointers + 2 * self.word,
                          [("mpls_ttl_", bases), ("vlan_mask_", bases + 32), ("invalid_intf_", bases + 64),
                           ("hal_bcm_common_", pointers), ("resource_manager_", pointers + self.word)]))

    def test_update_registry_holds_its_clients_alone(self):
        self.assertEqual(self.layout("HalL3MplsEncapsulationUpd")[1], [("clients_", self.word)])

    def test_common_object_begins_with_the_unit(self):
        tree = 6 * self.word
        self.assertEqual(self.layout("HalBcmCommon"),
                         (self.word + 3 * tree,
                          [("unit", 0), ("port_table", self.word), ("lag_table", self.word + tree),
                           ("destination_id_correlators", self.word + 2 * tree)]))

    def test_label_record_is_the_sdks(self):
        self.assertEqual(self.layout("bcm_mpls_egress_label_s"),
                         (128, [("flags", 0), ("label", 32), ("qos_map_id", 64), ("exp", 96), ("ttl", 104)]))

    def test_lim_id_is_a_word_of_32_bits(self):
        self.assertEqual(self.layout("limid_s"), (32, [("word", 0)]))


unittest.main(argv=["binary_contract", *sys.argv[6:]], verbosity=2)
