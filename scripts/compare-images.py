#!/usr/bin/env python3
"""Compares two renderings of one chart that may differ by a pixel here and there: the same
chart drawn by GDI (under Wine) and by the Cairo backend in aliased mode.

    compare-images.py a.png b.png [--min-match PERCENT]

Ink is every pixel that is not the background (white). For each image it counts the share of
its ink pixels that have ink of the other image within one pixel (in the 3 x 3 block around
them). Line geometry, the places of texts and the opaque text cells that blank the lines
beneath them agree to the pixel or within one; glyph shapes of two rasterisers and two faces
do not, so text accounts for most of what is left. Exits 1 when either share is below
--min-match (default 90), 2 when a file cannot be read.
"""
import struct
import sys
import zlib


def read_png(path):
    data = open(path, "rb").read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError(f"{path}: not a PNG")
    at, idat, width = 8, b"", 0
    while at < len(data):
        n, kind = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + n]
        if kind == b"IHDR":
            width, height, depth, ctype = struct.unpack(">IIBB", body[:10])
            if depth != 8 or ctype not in (2, 6):
                raise ValueError(f"{path}: only 8-bit RGB or RGBA")
            bpp = 3 if ctype == 2 else 4
        elif kind == b"IDAT":
            idat += body
        at += 12 + n
    raw = zlib.decompress(idat)
    stride = width * bpp
    rows, prev = [], bytearray(stride)
    for y in range(height):
        f, line = raw[y * (stride + 1)], bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for i in range(stride):
            a = line[i - bpp] if i >= bpp else 0
            b = prev[i]
            c = prev[i - bpp] if i >= bpp else 0
            if f == 1: line[i] = (line[i] + a) & 255
            elif f == 2: line[i] = (line[i] + b) & 255
            elif f == 3: line[i] = (line[i] + (a + b) // 2) & 255
            elif f == 4:
                p = a + b - c
                pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
                line[i] = (line[i] + (a if pa <= pb and pa <= pc else b if pb <= pc else c)) & 255
        rows.append(line)
        prev = line
    ink = set()
    for y, line in enumerate(rows):
        for x in range(width):
            if line[x * bpp:x * bpp + 3] != b"\xff\xff\xff":
                ink.add((x, y))
    return width, height, ink


def matched(ink, other):
    hit = sum(1 for (x, y) in ink if any((x + dx, y + dy) in other for dx in (-1, 0, 1) for dy in (-1, 0, 1)))
    return 100.0 * hit / max(1, len(ink))


def main():
    args = sys.argv[1:]
    minimum = 90.0
    if "--min-match" in args:
        i = args.index("--min-match")
        minimum = float(args[i + 1])
        del args[i:i + 2]
    try:
        (wa, ha, a), (wb, hb, b) = read_png(args[0]), read_png(args[1])
    except (OSError, ValueError, IndexError, zlib.error) as e:
        print(f"compare-images: {e}", file=sys.stderr)
        return 2
    if (wa, ha) != (wb, hb):
        print(f"compare-images: sizes differ: {wa}x{ha} and {wb}x{hb}", file=sys.stderr)
        return 1
    exact = 100.0 * len(a & b) / max(1, len(a | b))
    ma, mb = matched(a, b), matched(b, a)
    print(f"ink pixels: {len(a)} and {len(b)}; same pixel: {exact:.1f}% of either's ink; "
          f"within one pixel: {ma:.1f}% of the first's, {mb:.1f}% of the second's (at least {minimum:.0f}% each)")
    return 0 if ma >= minimum and mb >= minimum else 1


if __name__ == "__main__":
    sys.exit(main())
