"""Draws a growth curve as SVG: two logarithmic axes, the measured points, and a line of linear growth."""

import math

width, height, left, top, right, bottom = 520, 340, 76, 44, 32, 48
ink, curve, guide, grid = "#333333", "#0a60cc", "#999999", "#e2e2e2"


def decades(values):
    low, high = math.floor(math.log10(min(values))), math.ceil(math.log10(max(values)))
    return list(range(low, max(high, low + 1) + 1))


def label(exponent):
    return f"{10 ** exponent:,}" if exponent >= 0 else f"{10.0 ** exponent:.{-exponent}f}"


def text(x, y, words, anchor="middle", size=12):
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-family="sans-serif" font-size="{size}" '
            f'fill="{ink}">{words}</text>')


def line(points, colour, dashed=False):
    path = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
    dashes = ' stroke-dasharray="5 4"' if dashed else ""
    return f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="1.5"{dashes}/>'


def growth(title, unit, points):
    """The drawing of (count, value) pairs, all above zero."""
    across = decades([count for count, _ in points])
    largest, _ = points[-1]
    linear = [(count, points[-1][1] * count / largest) for count, _ in points]
    up = decades([value for _, value in points])

    def place(count, value):
        x = left + (math.log10(count) - across[0]) / (across[-1] - across[0]) * (width - left - right)
        y = height - bottom - (math.log10(value) - up[0]) / (up[-1] - up[0]) * (height - top - bottom)
        return x, y

    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
             f'width="{width}" height="{height}">', f'<rect width="{width}" height="{height}" fill="#ffffff"/>',
             text(left, 24, f"{title} ({unit})", "start", 14)]
    for exponent in across:
        x, _ = place(10 ** exponent, 10 ** up[0])
        parts += [line([(x, top), (x, height - bottom)], grid), text(x, height - bottom + 18, label(exponent))]
    for exponent in up:
        _, y = place(10 ** across[0], 10 ** exponent)
        parts += [line([(left, y), (width - right, y)], grid), text(left - 8, y + 4, label(exponent), "end")]
    floor = 10 ** up[0]
    drawn = [pair for pair in linear if pair[1] >= floor]
    if len(drawn) == 1:
        drawn.insert(0, (drawn[0][0] * floor / drawn[0][1], floor))
    parts += [line([place(*pair) for pair in drawn], guide, dashed=True),
              line([place(*pair) for pair in points], curve)]
    for pair in points:
        x, y = place(*pair)
        parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" fill="{curve}"/>')
    parts += [text((left + width - right) / 2, height - 10, "stored tokens; dashed: linear growth"), "</svg>"]
    return "\n".join(parts) + "\n"
