"""Time per item against the number of items, an operation with its floor: drawn without anything but text."""

from math import ceil, floor, log10

WIDTH, HEIGHT = 500, 280
LEFT, RIGHT, TOP, BOTTOM = 76, 470, 40, 230
COLOURS = ("#1f5fa8", "#c0392b")


def curve(times, name):
    return sorted((size, time) for (which, size), time in times.items() if which == name and size)


def svg(name, limit, times):
    """Both axes logarithmic; the limit is dashed."""
    lines = [(name, curve(times, name)), (f"limit: {limit}", curve(times, limit))]
    if not all(points for _, points in lines):
        raise SystemExit(f"{name} or {limit} was not measured")
    every = [time for _, points in lines for _, time in points]
    low, high = floor(log10(min(every))), ceil(log10(max(every) * 1.001))
    across = lambda size: LEFT + (log10(size) - 2) / 3 * (RIGHT - LEFT)
    up = lambda time: BOTTOM - (log10(time) - low) / (high - low) * (BOTTOM - TOP)

    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" font-family="sans-serif" '
             f'font-size="12">', f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>']
    for power in range(2, 6):
        parts.append(f'<text x="{across(10 ** power):.0f}" y="{BOTTOM + 18}" text-anchor="middle">{10 ** power:,}</text>')
    for power in range(low, high + 1):
        height = up(10 ** power)
        parts.append(f'<path d="M{LEFT} {height:.0f}H{RIGHT}" stroke="#ddd"/>'
                     f'<text x="{LEFT - 6}" y="{height + 4:.0f}" text-anchor="end">{10 ** power:,g} ns</text>')
    for (title, points), colour, dashes, x in zip(lines, COLOURS, ("none", "6 3"), (LEFT, 250)):
        path = " ".join(f"{across(size):.1f},{up(time):.1f}" for size, time in points)
        parts.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2" '
                     f'stroke-dasharray="{dashes}"/>')
        parts.append(f'<text x="{x}" y="20" fill="{colour}">{title}</text>')
    parts.append(f'<text x="{(LEFT + RIGHT) // 2}" y="{HEIGHT - 10}" text-anchor="middle">items; processor time per item'
                 f'</text></svg>')
    return "\n".join(parts) + "\n"
