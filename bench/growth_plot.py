"""Draws cost over the number of destinations: both axes as they grow, the horizontal one by powers of ten."""

WIDTH, HEIGHT, LEFT, BOTTOM, TOP, GAP = 420, 300, 60, 40, 40, 40
COLOURS = ["#1b6ca8", "#c0392b", "#6c7a89"]


def panel(x, title, unit, sizes, series):
    """One set of axes at `x`; `series` maps a name to its values, one for each of `sizes`."""
    highest = 1.1 * max(max(values) for values in series.values())
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
    for quarter in range(5):
        value = highest * quarter / 4
        _, y = at(0, value)
        parts.append(f'<text x="{x + LEFT - 6}" y="{y + 4:.1f}" text-anchor="end">{value:.0f}</text>'
                     f'<path d="M{x + LEFT},{y:.1f} h{width}" stroke="#ddd"/>')
    parts.append(f'<text x="{x + LEFT - 6}" y="{TOP - 8}" text-anchor="end">{unit}</text>')
    for number, (name, values) in enumerate(series.items()):
        colour = COLOURS[number % len(COLOURS)]
        points = " ".join("{:.1f},{:.1f}".format(*at(index, value)) for index, value in enumerate(values))
        parts.append(f'<polyline points="{points}" fill="none" stroke="{colour}" stroke-width="2"/>'
                     f'<text x="{x + LEFT + 10}" y="{TOP + 14 + 16 * number}" fill="{colour}">{name}</text>')
    return "\n".join(parts)


def plot(panels):
    """An SVG of panels side by side, each (title, unit, sizes, series)."""
    body = "\n".join(panel(WIDTH * number, *arguments) for number, arguments in enumerate(panels))
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH * len(panels)}" height="{HEIGHT}" '
            f'font-family="sans-serif" font-size="12">\n<rect width="100%" height="100%" fill="white"/>\n{body}\n</svg>\n')
