"""Draws cost over the number of destinations: both axes as they grow, the horizontal one by powers of ten."""

import math

WIDTH, HEIGHT, LEFT, BOTTOM, TOP, GAP = 420, 300, 60, 40, 40, 40
COLOURS = ["#1b6ca8", "#c0392b", "#6c7a89"]


def tick_step(highest):
    """The smallest of 1, 2, 5, 10, 20, ... that reaches `highest` in six steps."""
    power = 10 ** math.floor(math.log10(highest / 6))
    return next(factor * power for factor in (1, 2, 5, 10) if 6 * factor * power >= highest)


def panel(x, title, sizes, series):
    """One set of axes at `x`; `series` maps a name to its values, one for each of `sizes`."""
    largest = max(max(values) for values in series.values())
    tick = tick_step(largest)
    highest = tick * math.ceil(largest / tick)
    width, height = WIDTH - LEFT - GAP, HEIGHT - TOP - BOTTOM
    step = width / (len(sizes) - 1)

    def at(index, value):
        return x + LEFT + index * step, TOP + height * (1 - value / highest)

    parts = [f'<text x="{x + LEFT}" y="20" font-weight="bold">{title}</text>',
             f'<path d="M{x + LEFT},{TOP} V{TOP + height} H{x + LEFT + width}" fill="none" stroke="#333"/>']
    for index, size in enumerate(sizes):
        exponent = len(str(size)) - 1
        parts.append(f'<text x="{x + LEFT + index * step}" y="{TOP + height + 18}" text-anchor="middle">10'
                     f'<tspan dy="-5" font-size="9">{exponent}</tspan></text>')
    for value in range(0, highest + 1, tick):
        _, y = at(0, value)
        parts.append(f'<text x="{x + LEFT - 6}" y="{y + 4:.1f}" text-anchor="end">{value}</text>'
                     f'<path d="M{x + LEFT},{y:.1f} h{width}" stroke="#ddd"/>')
    parts.append(f'<text x="{x + LEFT + width / 2}" y="{HEIGHT - 6}" text-anchor="middle">destinations</text>')
    for number, (name, values) in enumerate(series.items()):
        colour = COLOURS[number % len(COLOURS)]
        points = " ".join("{:.1f},{:.1f}".format(*at(index, value)) for index, value in enumerate(values))
        parts.append(f'<polyline points="{points}" fill="none" stroke="{colour}" stroke-width="2"/>'
                     f'<text x="{x + LEFT + 10}" y="{TOP + height / 2 + 16 * number}" fill="{colour}">{name}</text>')
    return "\n".join(parts)


def plot(panels):
    """An SVG of panels side by side, each (title, sizes, series)."""
    body = "\n".join(panel(WIDTH * number, *arguments) for number, arguments in enumerate(panels))
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH * len(panels)}" height="{HEIGHT}" '
            f'font-family="sans-serif" font-size="12">\n<rect width="100%" height="100%" fill="white"/>\n{body}\n</svg>\n')
