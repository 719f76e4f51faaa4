"""What a disk was given before its power went: read from a log of its writes, and cut anywhere.

The log is that of the kernel's dm-log-writes: every write in the order in which it was completed, and
every flush behind all that it covers. A write that no flush covers yet may have reached the disk or
not, whatever became of those before and behind it; of several sectors any may have arrived.
"""

import itertools
import random
import struct

SECTOR = 512
FLUSH, DISCARD, MARK = 1, 4, 8


class Recording:
    """`sectors` is what was written, sector by sector: (number, content). `epochs` are the spans
    between two flushes, each a list of writes, each a range of indexes of `sectors`. From the epoch
    of `finished` on, the command had told that it was done."""

    def __init__(self, log):
        magic, _version, entries, size = struct.unpack_from("<QQQI", log)
        if magic != 0x6A736677736872 or size != SECTOR:
            raise ValueError("not a log of writes")
        self.sectors, self.epochs, self.finished = [], [[]], None
        at = SECTOR
        for _ in range(entries):
            sector, count, flags, length = struct.unpack_from("<QQQQ", log, at)
            mark = log[at + 32:at + 32 + length]
            at += SECTOR
            if flags & MARK:
                if mark.startswith(b"finished"):
                    self.finished = len(self.epochs) - 1
                continue
            if flags & FLUSH:
                self.epochs.append([])
            if count and not flags & DISCARD:
                first = len(self.sectors)
                for i in range(count):
                    self.sectors.append((sector + i, log[at:at + SECTOR]))
                    at += SECTOR
                self.epochs[-1].append(range(first, first + count))
        if self.finished is None:
            raise ValueError("the command did not come to its end")

    def bytes_of_sectors(self):
        return b"".join(struct.pack("<Q", number) + content for number, content in self.sectors)

    def flushes(self):
        return len(self.epochs) - 1


def subsets_of(writes, limit, chance):
    """Lists of sectors of these writes that may have arrived: all while they are few, else those of
    each prefix, of each write that is missing or alone, and random ones."""
    sectors = [index for write in writes for index in write]
    if 2 ** len(sectors) <= limit:
        for count in range(len(sectors) + 1):
            yield from map(list, itertools.combinations(sectors, count))
        return
    for count in range(len(sectors) + 1):
        yield sectors[:count]
    if 2 ** len(writes) <= limit:
        for arrived in itertools.product([False, True], repeat=len(writes)):
            yield [index for write, there in zip(writes, arrived) if there for index in write]
    else:
        for some in writes:
            yield list(some)
            yield [index for write in writes if write is not some for index in write]
        for _ in range(limit // 2):
            end = chance.randint(1, len(writes))
            part = chance.random()
            yield [index for write in writes[:end] if chance.random() < part for index in write]
    for _ in range(limit // 2):
        end = chance.randint(1, len(sectors))
        part = chance.random()
        yield [index for index in sectors[:end] if chance.random() < part]


def states_of(recording, limit, seed):
    """Every different content of the disk among what a cut may leave, `limit` or a few more of each
    epoch: as (name, finished). The name is "PREFIX:SECTOR,SECTOR", all of the first PREFIX sectors
    and these."""
    chance = random.Random(seed)
    contents, base = {}, {}
    flushed = 0
    for number, writes in enumerate(recording.epochs):
        for arrived in subsets_of(writes, limit, chance):
            changed = dict(base)
            changed.update(recording.sectors[index] for index in arrived)
            key = hash(frozenset(changed.items()))
            prefix, rest = flushed, list(arrived)
            while rest and rest[0] == prefix:
                prefix += 1
                rest.pop(0)
            name = f"{prefix}:{','.join(map(str, rest))}" if rest else str(prefix)
            finished = number >= recording.finished
            # Of what may be there before the message and after it, what holds after it must hold.
            if key not in contents or finished:
                contents[key] = (contents.get(key, (name,))[0], finished)
        for write in writes:
            base.update(recording.sectors[index] for index in write)
            flushed = write.stop
    return list(contents.values())
