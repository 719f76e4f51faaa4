"""What a disk was given before its power went: read from a log of its writes, and cut anywhere.

The log is that of the kernel's dm-log-writes: every write in the order in which it was completed, and
every flush behind all that it covers. A write that no flush covers yet may have reached the disk or
not, whatever became of those before and behind it; of several sectors any may have arrived. What is
written past the disk's cache is there at once.
"""

import itertools
import random
import struct

SECTOR = 512
# Sectors that are none of the file system's, counted from the end of the disk: to write the first says
# that a flush has returned, to write the second that the command has told its end.
FLUSHED, ENDED = 8, 7
FLUSH, PAST_CACHE, DISCARD, MARK = 1, 2, 4, 8


class Recording:
    """`sectors` is what was written, sector by sector: (number, content). `epochs` are the spans
    between two flushes, each a list of writes, each a list of pieces that arrive as a whole, each a
    range of indexes of `sectors`; a piece ends where the disk's own sectors of `unit` bytes do. From
    the epoch of `finished` on, the command had told that it was done. A disk of `length` sectors has
    those that tell by being written."""

    def __init__(self, log, unit=SECTOR, length=None):
        magic, _version, entries, size = struct.unpack_from("<QQQI", log)
        if magic != 0x6A736677736872 or size != SECTOR:
            raise ValueError("not a log of writes")
        self.sectors, self.epochs, self.finished = [], [[]], None
        at = SECTOR
        for _ in range(entries):
            sector, count, flags, extra = struct.unpack_from("<QQQQ", log, at)
            mark = log[at + 32:at + 32 + extra]
            at += SECTOR
            if flags & MARK:
                if mark.startswith(b"finished"):
                    self.finished = len(self.epochs) - 1
                continue
            if flags & FLUSH:
                self.epochs.append([])
            if length and count and sector >= length - FLUSHED:
                at += count * SECTOR
                if sector == length - FLUSHED:
                    self.epochs.append([])
                elif sector == length - ENDED:
                    self.finished = len(self.epochs) - 1
                continue
            if count and not flags & DISCARD:
                pieces = []
                for i in range(count):
                    if not pieces or (sector + i) * SECTOR % unit == 0:
                        pieces.append([])
                    pieces[-1].append(len(self.sectors))
                    self.sectors.append((sector + i, log[at:at + SECTOR]))
                    at += SECTOR
                self.epochs[-1].append(pieces)
            if flags & PAST_CACHE:
                self.epochs.append([])
        if self.finished is None:
            raise ValueError("the command did not come to its end")

    def bytes_of_sectors(self):
        return b"".join(struct.pack("<Q", number) + content for number, content in self.sectors)

    def flushes(self):
        return len(self.epochs) - 1


def subsets_of(writes, limit, chance):
    """Lists of pieces of these writes that may have arrived: all while they are few, else those of
    each prefix, of each write that is missing or alone, and random ones."""
    pieces = [piece for write in writes for piece in write]
    if 2 ** len(pieces) <= limit:
        for count in range(len(pieces) + 1):
            yield from itertools.combinations(pieces, count)
        return
    for count in range(len(pieces) + 1):
        yield pieces[:count]
    if 2 ** len(writes) <= limit:
        for arrived in itertools.product([False, True], repeat=len(writes)):
            yield [piece for write, there in zip(writes, arrived) if there for piece in write]
    else:
        for some in writes:
            yield some
            yield [piece for write in writes if write is not some for piece in write]
        for _ in range(limit // 2):
            end = chance.randint(1, len(writes))
            part = chance.random()
            yield [piece for write in writes[:end] if chance.random() < part for piece in write]
    for _ in range(limit // 2):
        end = chance.randint(1, len(pieces))
        part = chance.random()
        yield [piece for piece in pieces[:end] if chance.random() < part]


def spans_of(indexes):
    """"3", or "5-8" for what follows one another."""
    spans = []
    for index in indexes:
        if spans and spans[-1][1] + 1 == index:
            spans[-1][1] = index
        else:
            spans.append([index, index])
    return [str(first) if first == last else f"{first}-{last}" for first, last in spans]


def states_of(recording, limit, seed):
    """Every different content of the disk among what a cut may leave, `limit` or a few more of each
    epoch: as (name, finished). The name is "PREFIX:SECTOR,FIRST-LAST", all of the first PREFIX
    sectors and these."""
    chance = random.Random(seed)
    contents, base = {}, {}
    flushed = 0
    for number, writes in enumerate(recording.epochs):
        for arrived in subsets_of(writes, limit, chance):
            indexes = [index for piece in arrived for index in piece]
            changed = dict(base)
            changed.update(recording.sectors[index] for index in indexes)
            key = hash(frozenset(changed.items()))
            prefix, rest = flushed, indexes
            while rest and rest[0] == prefix:
                prefix += 1
                rest.pop(0)
            name = f"{prefix}:{','.join(spans_of(rest))}" if rest else str(prefix)
            finished = number >= recording.finished
            # Of what may be there before the message and after it, what holds after it must hold.
            if key not in contents or finished:
                contents[key] = (contents.get(key, (name,))[0], finished)
        for index in (index for write in writes for piece in write for index in piece):
            base.update([recording.sectors[index]])
            flushed = index + 1
    return list(contents.values())
