"""Kinds of damage to the demonstration's multiplex. Each says what the TV browser must make of it."""
import random
from collections import namedtuple

from sections import NULL, SIZE, cut, in_packets, pid_of, section, with_tables

# `make` gets the packets and a source of chance, and returns the bytes of the stream, or None for a folder. `starts`:
# whether the television must start with it (None: either will do). `says`: what the TV browser must say then.
Damage = namedtuple("Damage", "make starts says")
ALL = {}
PRESENTED = "is presented"
NO_PICTURE = "brought no picture"  # said after three seconds
NO_STREAM = "is not an MPEG transport stream"
NO_PAT = "no programme association table"
FIRST_MAP, FIRST_SID = 0x100, 0x6e01
ELEMENTARY = (0x101, 0x102, 0x103, 0x201, 0x202, 0x301, 0x302, 0x402)


def damage(starts, says=""):
    def add(make):
        ALL[make.__name__.replace("_", "-")] = Damage(make, starts, says)
        return make
    return add


def joined(packets):
    return b"".join(bytes(packet) for packet in packets)


@damage(True, PRESENTED)
def no_damage(packets, chance):
    return joined(packets)


@damage(False, NO_STREAM)
def no_packets(packets, chance):
    return b""


@damage(False, NO_STREAM)
def a_text(packets, chance):
    return b"This is no stream, but a letter.\n" * 20000


@damage(False, "is a folder")
def a_folder(packets, chance):
    return None


@damage(False, NO_STREAM)
def half_a_packet(packets, chance):
    return joined(packets[:1])[:SIZE // 2]


@damage(False, NO_STREAM)
def noise(packets, chance):
    return chance.randbytes(2_000_000)


@damage(True, PRESENTED)
def packets_of_204_bytes(packets, chance):
    return b"".join(bytes(packet) + b"\0" * 16 for packet in packets)


@damage(True, PRESENTED)
def packets_of_192_bytes(packets, chance):
    return b"".join(count.to_bytes(4, "big") + bytes(packet) for count, packet in enumerate(packets))


@damage(False, "has no clock")
def null_packets(packets, chance):
    return NULL * len(packets)


@damage(False, NO_PAT)
def no_table_of_services(packets, chance):
    return joined(with_tables(packets, {0: None}))


@damage(True, NO_PICTURE)
def no_maps(packets, chance):
    return joined(with_tables(packets, {pid: None for pid in (0x100, 0x200, 0x300, 0x400)}))


@damage(False, NO_PAT)
def scrambled_tables(packets, chance):
    for packet in packets:
        packet[3] |= 0x80
    return joined(packets)


@damage(True, "is scrambled")
def scrambled_pictures(packets, chance):
    for packet in packets:
        if pid_of(packet) in ELEMENTARY:
            packet[3] |= 0xc0
    return joined(packets)


@damage(True, NO_PICTURE)
def a_map_of_nonsense(packets, chance):
    body = b"\xe1\x01\xff\xff" + chance.randbytes(1008)
    return joined(with_tables(packets, {FIRST_MAP: [section(2, FIRST_SID, body)]}))


@damage(None)
def a_map_of_random_descriptors(packets, chance):
    streams = b"".join(bytes([chance.choice((2, 3, 6, 0x1b)), 0xe1, index & 0xff, 0xf0, 8, chance.randrange(256), 6])
                       + chance.randbytes(6) for index in range(70))
    return joined(with_tables(packets, {FIRST_MAP: [section(2, FIRST_SID, b"\xe1\x01\xf0\x00" + streams)]}))


def table_of(services):
    entries = [sid.to_bytes(2, "big") + (0xe000 | FIRST_MAP).to_bytes(2, "big") for sid in services]
    pieces = [b"".join(entries[at:at + 250]) for at in range(0, len(entries), 250)]
    return [section(0, 0x401, piece, number, len(pieces) - 1) for number, piece in enumerate(pieces)]


@damage(True)
def eight_thousand_services(packets, chance):
    return joined(with_tables(packets, {0: table_of(range(1, 8193))}))


@damage(None)
def every_service_again_and_again(packets, chance):
    return joined(with_tables(packets, {0: table_of([FIRST_SID] * 8000)}))


@damage(None)
def a_new_version_each_time(packets, chance):
    versions = [section(0, 0x401, FIRST_SID.to_bytes(2, "big") + bytes([0xe1, count & 0xff]), version=count & 31)
                for count in range(64)]
    return joined(with_tables(packets, {0: versions}))


@damage(None)
def services_that_come_and_go(packets, chance):
    tables = [section(0, 0x401, sid.to_bytes(2, "big") + b"\xe1\x00", version=count & 31)
              for count, sid in enumerate(chance.sample(range(1, 65535), 500))]
    return joined(with_tables(packets, {0: tables}))


@damage(True)
def events_of_every_service(packets, chance):
    events = [section(0x4e, sid, bytes(6) + chance.randbytes(10) + b"\x80\x10" + b"\x4d\x0e" + chance.randbytes(14))
              for sid in range(0, 65536, 50)]
    return joined(with_tables(packets, {0x12: events}))


@damage(None)
def random_sections(packets, chance):
    return joined(with_tables(packets, {pid: [section(table, chance.randrange(4), chance.randbytes(300), version=i & 31)
                                              for i in range(20)]
                                        for pid, table in ((0x10, 0x40), (0x11, 0x42), (0x12, 0x4e), (0x104, 0x3d))}))


def flipped(packets, chance, share):
    stream = bytearray(joined(packets))
    for _ in range(int(len(stream) * 8 * share)):
        stream[chance.randrange(len(stream))] ^= 1 << chance.randrange(8)
    return bytes(stream)


@damage(True)
def some_flipped_bits(packets, chance):
    return flipped(packets, chance, 1e-6)


@damage(None)
def flipped_bits(packets, chance):
    return flipped(packets, chance, 1e-4)


@damage(None)
def many_flipped_bits(packets, chance):
    return flipped(packets, chance, 1e-2)


@damage(None)
def flipped_bits_in_headers(packets, chance):
    for packet in chance.sample(packets, len(packets) // 20):
        packet[chance.randrange(1, 20)] ^= 1 << chance.randrange(8)
    return joined(packets)


@damage(None)
def lost_bytes(packets, chance):
    stream = joined(packets)
    places = sorted(chance.sample(range(len(stream)), 200))
    return b"".join(stream[begin + chance.randrange(1, 400):end] for begin, end in zip([0] + places, places))


@damage(True, PRESENTED)
def lost_packets(packets, chance):
    return joined(packet for packet in packets if chance.random() > 0.05)


@damage(None)
def packets_that_come_twice(packets, chance):
    return joined(packet for packet in packets for _ in range(chance.choice((1, 1, 2))))


@damage(None)
def packets_out_of_order(packets, chance):
    for at in range(0, len(packets) - 20, 20):
        part = packets[at:at + 20]
        chance.shuffle(part)
        packets[at:at + 20] = part
    return joined(packets)


@damage(None)
def a_short_turn(packets, chance):
    begin = chance.randrange(len(packets) // 2)
    return joined(packets[begin:begin + 1500])


@damage(None)
def a_torn_end(packets, chance):
    return joined(packets)[:chance.randrange(1_000_000, 3_000_000)]


def clocks(packets):
    return (packet for packet in packets if packet[3] & 0x20 and packet[4] >= 7 and packet[5] & 0x10)


@damage(None)
def jumping_clocks(packets, chance):
    for packet in clocks(packets):
        if chance.random() < 0.2:
            packet[6:10] = chance.randbytes(4)
    return joined(packets)


@damage(None)
def a_clock_that_stands_still(packets, chance):
    for packet in clocks(packets):
        packet[6:12] = b"\0\0\0\0\x7e\0"
    return joined(packets)


@damage(None)
def a_clock_that_runs_backwards(packets, chance):
    for count, packet in enumerate(clocks(packets)):
        packet[6:10] = (0x70000000 - count * 1000).to_bytes(4, "big")
    return joined(packets)


@damage(None)
def adaptation_fields_of_every_length(packets, chance):
    for packet in chance.sample(packets, len(packets) // 10):
        packet[3] |= 0x20
        packet[4] = chance.randrange(256)
    return joined(packets)


@damage(None)
def random_packets(packets, chance):
    stream = [bytearray(b"\x47" + chance.randbytes(SIZE - 1)) for _ in range(len(packets) // 2)]
    return joined(packet for pair in zip(packets, stream) for packet in pair)


@damage(None)
def swapped_pids(packets, chance):
    others = dict(zip(ELEMENTARY, chance.sample(ELEMENTARY, len(ELEMENTARY))))
    for packet in packets:
        packet[2] = others.get(pid_of(packet), packet[2]) & 0xff
    return joined(packets)


@damage(None)
def pictures_of_noise(packets, chance):
    for packet in packets:
        if pid_of(packet) in ELEMENTARY and not packet[1] & 0x40:
            packet[40:] = chance.randbytes(SIZE - 40)
    return joined(packets)
