#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Tematica contributors
# SPDX-License-Identifier: MIT
"""Chooses the colours of a thematic map's classes out of the drawing's palette.

Reads the palette from embedded/base/Palette.cpp and prints the 24 indexes of `ClassColours` with what
they keep: every colour stands out from white and from a dark ground, and of any two of the first eight
the difference is as large as can be found for normal sight, deutan and protan sight and without colour.
Differences are distances in Oklab times 100; without colour only lightness counts, twice, since a map
printed in grey has nothing else. Sight is simulated with the matrices of Machado, Oliveira and
Fernandes (2009) at full severity.
"""
import itertools
import pathlib
import random
import re

FIRST, ALL = 8, 24
DARK_GROUND = 0x202020
LEAST_CONTRAST = 1.9
NO_CLASS_COLOURS = (0, 7, 8, 9, *range(250, 256))  # foreground and greys: they stand for "no value"
PROTAN = ((0.152286, 1.052583, -0.204868), (0.114503, 0.786281, 0.099216), (-0.003882, -0.048116, 1.051998))
DEUTAN = ((0.367322, 0.860646, -0.227968), (0.280085, 0.672501, 0.047413), (-0.011820, 0.042940, 0.968881))


def linear(colour):
    channels = ((colour >> shift & 255) / 255 for shift in (16, 8, 0))
    return [c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4 for c in channels]


def luminance(rgb):
    return 0.2126 * rgb[0] + 0.7152 * rgb[1] + 0.0722 * rgb[2]


def contrast(a, b):
    light, dark = sorted((luminance(linear(a)), luminance(linear(b))), reverse=True)
    return (light + 0.05) / (dark + 0.05)


def seen(rgb, matrix):
    return [min(1.0, max(0.0, sum(m * c for m, c in zip(row, rgb)))) for row in matrix]


def oklab(rgb):
    r, g, b = rgb
    l = (0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b) ** (1 / 3)
    m = (0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b) ** (1 / 3)
    s = (0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b) ** (1 / 3)
    return (0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s)


def sights(colour):
    rgb = linear(colour)
    grey = luminance(rgb)
    return [oklab(rgb), oklab(seen(rgb, DEUTAN)), oklab(seen(rgb, PROTAN)), oklab([grey] * 3)]


def difference(a, b, with_grey):
    by_sight = [100 * sum((x - y) ** 2 for x, y in zip(p, q)) ** 0.5 for p, q in zip(a, b)]
    return min(by_sight[:3] + [2 * by_sight[3]] if with_grey else by_sight[:3])


def least(chosen, table):
    return min(table[a][b] for a, b in itertools.combinations(chosen, 2))


def quality(chosen, table):
    """The smallest difference, then the next smallest and so on."""
    return sorted(table[a][b] for a, b in itertools.combinations(chosen, 2))


def best_first(candidates, table):
    """Exchanges one colour at a time while that widens the smallest difference, from many beginnings."""
    source, best = random.Random(1), None
    for _ in range(60):
        chosen = source.sample(candidates, FIRST)
        better = True
        while better:
            better = False
            for place, new in itertools.product(range(FIRST), candidates):
                trial = chosen[:place] + [new] + chosen[place + 1:]
                if new not in chosen and quality(trial, table) > quality(chosen, table):
                    chosen, better = trial, True
        if best is None or quality(chosen, table) > quality(best, table):
            best = chosen
    return best


def in_order(chosen, candidates, table, count):
    """Each next colour is the one farthest from those before it."""
    while len(chosen) < count:
        rest = [c for c in candidates if c not in chosen]
        chosen.append(max(rest, key=lambda c: (min(table[c][d] for d in chosen), -c)))
    return chosen


def main():
    source = pathlib.Path(__file__).resolve().parent.parent / "embedded/base/Palette.cpp"
    colours = [int(text, 16) for text in re.findall(r"0x([0-9A-F]{6}),", source.read_text())]
    assert len(colours) == 256, len(colours)
    candidates = [i for i, c in enumerate(colours) if i not in NO_CLASS_COLOURS
                  and contrast(c, 0xFFFFFF) >= LEAST_CONTRAST and contrast(c, DARK_GROUND) >= LEAST_CONTRAST]
    looks = {i: sights(colours[i]) for i in candidates}
    def all_differences(with_grey):
        return {a: {b: difference(looks[a], looks[b], with_grey) for b in candidates} for a in candidates}

    # More than eight cannot be told apart in grey as well: from there on only the coloured sights count.
    in_all_sights, in_colour = all_differences(True), all_differences(False)
    first = best_first(candidates, in_all_sights)
    start = max(first, key=lambda c: (max(abs(looks[c][0][1]), abs(looks[c][0][2])), -c))
    ordered = in_order([start], first, in_all_sights, FIRST)
    ordered = in_order(ordered, candidates, in_colour, ALL)
    print(", ".join(map(str, ordered)))
    print(f"first {FIRST}: smallest difference {least(ordered[:FIRST], in_all_sights):.2f}, "
          f"all {ALL} in colour: {least(ordered, in_colour):.2f}")


if __name__ == "__main__":
    main()
