"""Packets of a transport stream, and sections that are put into them."""
SIZE = 188
NULL = b"\x47\x1f\xff\x10" + b"\xff" * 184


def cut(stream):
    return [bytearray(stream[at:at + SIZE]) for at in range(0, len(stream) - SIZE + 1, SIZE)]


def pid_of(packet):
    return (packet[1] & 0x1f) << 8 | packet[2]


def crc(data):
    value = 0xffffffff
    for byte in data:
        value ^= byte << 24
        for _ in range(8):
            value = (value << 1 ^ 0x04c11db7 if value & 0x80000000 else value << 1) & 0xffffffff
    return value


def section(table, extension, body, number=0, last=0, version=0):
    head = bytes([table]) + (0xb000 | len(body) + 9).to_bytes(2, "big") + extension.to_bytes(2, "big")
    head += bytes([0xc1 | version << 1, number, last]) + body
    return head + crc(head).to_bytes(4, "big")


def in_packets(sections, pid):
    packets = []
    for data in sections:
        data = b"\0" + data
        for at in range(0, len(data), SIZE - 4):
            head = bytes([0x47, (0 if at else 0x40) | pid >> 8, pid & 0xff, 0x10 | len(packets) & 0x0f])
            packets.append((head + data[at:at + SIZE - 4]).ljust(SIZE, b"\xff"))
    return packets


def with_tables(packets, tables):
    """Other sections on these PIDs, again and again in the place of null packets. None: the PID falls silent."""
    packets = [bytearray(NULL) if pid_of(packet) in tables else packet for packet in packets]
    waiting = [packet for pid, sections in tables.items() for packet in in_packets(sections or [], pid)]
    counts = {}
    free = [index for index, packet in enumerate(packets) if pid_of(packet) == 0x1fff]
    for turn, index in enumerate(free if waiting else []):
        packet = bytearray(waiting[turn % len(waiting)])
        counts[pid_of(packet)] = counts.get(pid_of(packet), -1) + 1
        packet[3] = packet[3] & 0xf0 | counts[pid_of(packet)] & 0x0f
        packets[index] = packet
    return packets
