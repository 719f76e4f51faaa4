#!/usr/bin/env python3
"""Shows that a log of writes is cut where a disk may be, on small logs made word by word."""

import struct
import sys
import unittest

sys.dont_write_bytecode = True  # the checkout stays as it is
import recording  # noqa: E402

FINISHED = ("mark", b"finished")
FLUSH = ("flush",)


def log_of(*entries):
    """Entries: ("write", SECTOR, CONTENT of each sector, one letter), the same with "past", FLUSH, and
    marks."""
    body = b""
    for kind, *rest in entries:
        sector, letters, flags, data = 0, "", 0, b""
        if kind == "flush":
            flags = recording.FLUSH
        elif kind == "mark":
            flags, data = recording.MARK, rest[0]
        else:
            sector, letters = rest
            flags = recording.PAST_CACHE if kind == "past" else 0
        header = struct.pack("<QQQQ", sector, len(letters), flags, len(data)) + data
        body += header.ljust(recording.SECTOR, b"\0")
        body += b"".join(letter.encode() * recording.SECTOR for letter in letters)
    head = struct.pack("<QQQI", 0x6A736677736872, 1, len(entries), recording.SECTOR)
    return head.ljust(recording.SECTOR, b"\0") + body


def indexes_of(name):
    """The sectors that a state's name stands for."""
    prefix, _colon, more = name.partition(":")
    yield from range(int(prefix))
    for span in filter(None, more.split(",")):
        first, _dash, last = span.partition("-")
        yield from range(int(first), int(last or first) + 1)


def disks_of(*entries, limit=64, unit=recording.SECTOR, length=None):
    """What the disk may hold: {sector: letter} as text, and whether the command was finished."""
    made = recording.Recording(log_of(*entries), unit, length)
    disks = {}
    for name, finished in recording.states_of(made, limit, seed=1):
        disk = {}
        for index in indexes_of(name):
            number, content = made.sectors[index]
            disk[number] = chr(content[0])
        text = " ".join(f"{number}{letter}" for number, letter in sorted(disk.items()))
        assert text not in disks, f"{text} is there twice"
        disks[text] = finished
    return disks


class States(unittest.TestCase):
    def test_what_no_flush_covers_may_have_arrived_in_any_part(self):
        self.assertEqual(set(disks_of(("write", 1, "a"), ("write", 2, "b"), FINISHED)),
                         {"", "1a", "2b", "1a 2b"})

    def test_what_a_flush_covers_is_there_with_everything_behind_it(self):
        self.assertEqual(set(disks_of(("write", 1, "a"), FLUSH, ("write", 2, "b"), FINISHED)),
                         {"", "1a", "1a 2b"})

    def test_of_several_sectors_each_may_be_missing(self):
        self.assertEqual(set(disks_of(("write", 1, "ab"), FLUSH, FINISHED)),
                         {"", "1a", "2b", "1a 2b"})

    def test_nothing_within_a_larger_sector_is_torn(self):
        self.assertEqual(set(disks_of(("write", 8, "abcdefghi"), FLUSH, FINISHED, unit=4096)),
                         {"", "8a 9b 10c 11d 12e 13f 14g 15h", "16i",
                          "8a 9b 10c 11d 12e 13f 14g 15h 16i"})

    def test_a_sector_written_twice_holds_the_last_that_arrived(self):
        self.assertEqual(set(disks_of(("write", 1, "a"), ("write", 1, "b"), FINISHED)),
                         {"", "1a", "1b"})

    def test_what_goes_past_the_cache_is_there_before_what_follows(self):
        self.assertEqual(set(disks_of(("past", 1, "a"), ("write", 2, "b"), FINISHED)),
                         {"", "1a", "1a 2b"})

    def test_a_command_is_finished_from_the_last_flush_before_its_end(self):
        self.assertEqual(disks_of(("write", 1, "a"), FLUSH, FINISHED, ("write", 2, "b")),
                         {"": False, "1a": True, "1a 2b": True})

    def test_a_command_that_flushes_nothing_may_have_done_nothing(self):
        self.assertEqual(disks_of(FINISHED, ("write", 1, "a")), {"": True, "1a": True})

    def test_a_written_sector_at_the_end_tells_of_a_flush_and_of_the_end(self):
        flushed, finished = ("write", 92, "f"), ("write", 93, "f")
        self.assertEqual(disks_of(("write", 1, "a"), flushed, ("write", 2, "b"), finished, length=100),
                         {"": False, "1a": True, "1a 2b": True})

    def test_sectors_that_follow_one_another_are_named_by_the_first_and_the_last(self):
        self.assertEqual(recording.spans_of([1, 3, 4, 5, 8, 9]), ["1", "3-5", "8-9"])

    def test_of_many_writes_every_prefix_is_tried(self):
        writes = [("write", number, "x") for number in range(30)]
        disks = disks_of(*writes, FINISHED, limit=8)
        for count in range(31):
            self.assertIn(" ".join(f"{number}x" for number in range(count)), disks)

    def test_of_many_writes_every_one_is_missing_and_alone_in_some_state(self):
        writes = [("write", number, "x") for number in range(30)]
        disks = disks_of(*writes, FINISHED, limit=8)
        for missing in range(30):
            self.assertIn(f"{missing}x", disks)
            self.assertIn(" ".join(f"{n}x" for n in range(30) if n != missing), disks)

    def test_the_same_seed_gives_the_same_states(self):
        made = recording.Recording(log_of(*[("write", n, "xyz") for n in range(0, 60, 3)], FINISHED))
        self.assertEqual(recording.states_of(made, 16, 5), recording.states_of(made, 16, 5))

    def test_a_command_without_an_end_is_refused(self):
        with self.assertRaises(ValueError):
            recording.Recording(log_of(("write", 1, "a"), FLUSH))


if __name__ == "__main__":
    unittest.main()
