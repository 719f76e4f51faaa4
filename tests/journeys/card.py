"""Building cards byte by byte, knowing nothing of the program but the formats it must read."""

import calendar
import os
import struct

TREE = os.path.join("data", "result", "ergo_bike")
INDEX = "dictionary.2"

RECORD = struct.Struct("<Qi64s2i6fi2fi5f2i")
SAMPLE = struct.Struct("<i2f5h2b7h2bf")
assert (RECORD.size, SAMPLE.size) == (152, 44)


def seconds(year, month, day, hour=0, minute=0, second=0):
    """The device's date value: seconds since 1970 on its wall clock, without any time zone."""
    return calendar.timegm((year, month, day, hour, minute, second))


def file_name(number):
    return f"{number:016x}"


def record(
    number,
    start,
    description="",
    *,
    training_type=1,
    end=None,
    watt=100.0,
    unknown1=0.0,
    pulse=120.0,
    rpm=80.0,
    speed=25.0,
    kjoule_per_minute=5.0,
    ride_time=1800,
    distance=12500.0,
    max_speed=30.0,
    unknown2=0,
    max_rpm=95.0,
    unknown3=0.0,
    max_kjoule_per_minute=9.0,
    kjoule=300.0,
    unknown4=0.0,
    unknown5=0,
    unknown6=0,
):
    """One training's entry of the index, 152 bytes."""
    return RECORD.pack(
        number, training_type, description.encode("latin-1"), start,
        start + ride_time if end is None else end,
        watt, unknown1, pulse, rpm, speed, kjoule_per_minute, ride_time, distance, max_speed,
        unknown2, max_rpm, unknown3, max_kjoule_per_minute, kjoule, unknown4, unknown5, unknown6,
    )


def sample(
    elapsed,
    *,
    distance=0.0,
    kjoule=0.0,
    slope=0,
    torque=0,
    rpm=800,
    speed=250,
    watt=100,
    gear=5,
    active=1,
    pulse=120,
    pulse_times=(0, 0, 0, 0, 0, 0),
    training_type=1,
    pulse_type=2,
    training_value=0.0,
):
    """One sample of a training file, 44 bytes."""
    return SAMPLE.pack(
        elapsed, distance, kjoule, slope, torque, rpm, speed, watt, gear, active,
        pulse, *pulse_times, training_type, pulse_type, training_value,
    )


def some_samples(count=5):
    return b"".join(
        sample(10 * i, distance=80.0 * i, kjoule=float(i), watt=90 + 5 * i, pulse=110 + i)
        for i in range(count)
    )


class Card:
    """A directory that holds the tree, as the card's root does."""

    def __init__(self, root):
        self.root = root
        self.tree = os.path.join(root, TREE)
        os.makedirs(self.tree, exist_ok=True)
        self.index = b""

    def add(self, entry, samples=None):
        """Appends an entry to the index and writes its training file."""
        self.index += entry
        number = struct.unpack_from("<Q", entry)[0]
        self.write(file_name(number), some_samples() if samples is None else samples)
        self.write(INDEX, self.index)

    def path(self, name):
        return os.path.join(self.tree, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def names(self):
        return sorted(os.listdir(self.tree))
