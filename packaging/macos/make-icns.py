#!/usr/bin/env python3
"""Writes the app's icon for macOS in all of its sizes, as the program that draws it has them.

    make-icns.py DRAWING-PROGRAM OUTPUT
"""
import os
import struct
import subprocess
import sys
import zlib

# The kind of each picture in the file, and its side in pixels. The kinds of twice the resolution differ.
PLAIN = {b'ic04': 16, b'ic05': 32}
COMPRESSED = {b'ic07': 128, b'ic08': 256, b'ic09': 512, b'ic10': 1024, b'ic11': 32, b'ic12': 64, b'ic13': 256,
              b'ic14': 512}


def png(side, pixels):
    def chunk(kind, content):
        return struct.pack('>I', len(content)) + kind + content + struct.pack('>I', zlib.crc32(kind + content))

    rows = b''.join(b'\0' + pixels[4 * side * row:4 * side * (row + 1)] for row in range(side))
    return (b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', side, side, 8, 6, 0, 0, 0))
            + chunk(b'IDAT', zlib.compress(rows, 9)) + chunk(b'IEND', b''))


def packed(channel):
    """Runs of 3 to 130 equal bytes, and pieces of 1 to 128 as they are."""
    out, literal, at = b'', b'', 0

    def flushed(bytes_):
        return b''.join(bytes([len(bytes_[i:i + 128]) - 1]) + bytes_[i:i + 128] for i in range(0, len(bytes_), 128))

    while at < len(channel):
        run = 1
        while run < 130 and at + run < len(channel) and channel[at + run] == channel[at]:
            run += 1
        if run >= 3:
            out += flushed(literal) + bytes([run + 125, channel[at]])
            literal = b''
        else:
            literal += channel[at:at + run]
        at += run
    return out + flushed(literal)


def argb(_, pixels):
    return b'ARGB' + b''.join(packed(pixels[offset::4]) for offset in (3, 0, 1, 2))


def main():
    program, output = sys.argv[1:]
    pictures = b''
    for kinds, encoded in ((PLAIN, argb), (COMPRESSED, png)):
        for kind, side in kinds.items():
            content = encoded(side, subprocess.check_output([program, str(side)]))
            pictures += kind + struct.pack('>I', 8 + len(content)) + content
    os.makedirs(os.path.dirname(output), exist_ok=True)
    with open(output, 'wb') as file:
        file.write(b'icns' + struct.pack('>I', 8 + len(pictures)) + pictures)


main()
