#!/usr/bin/env python3
"""The chart as matplotlib draws it with its Agg painter, not smoothed. Arguments as in peer.h."""

import sys
import time

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as pyplot
import numpy


def main():
    path, values, samples, styles, repeats = sys.argv[1:6]
    count = int(samples)
    series = numpy.fromfile(path, dtype=numpy.float32).reshape(int(values), count)
    matplotlib.rcParams["path.simplify"] = False
    figure = pyplot.figure(figsize=(19.2, 10.8), dpi=100)
    axes = figure.add_axes([0.05, 0.05, 0.9, 0.9])
    x = numpy.arange(count)
    for number, y in enumerate(series):
        colour = matplotlib.colors.hsv_to_rgb((number * 47 % 360 / 360, 0.8, 0.7))
        if "b" in styles:
            # One collection of rectangles: a patch for each bar takes minutes.
            left, right = x - 0.4, x + 0.4
            zero = numpy.zeros_like(y)
            corners = numpy.stack(
                [numpy.stack(pair, axis=-1) for pair in ((left, zero), (left, y), (right, y), (right, zero))],
                axis=1,
            )
            axes.add_collection(
                matplotlib.collections.PolyCollection(
                    corners, facecolors=[colour], alpha=0.5, linewidths=0, antialiased=False
                )
            )
        line = dict(color=colour, antialiased=False)
        points = dict(color=colour, linestyle="none", antialiased=False)
        if "l" in styles:
            axes.plot(x, y, linewidth=1.44, **line)
        if "c" in styles:
            axes.plot(x, y, marker="o", markersize=5.76, **points)
        if "s" in styles:
            axes.plot(x, y, marker="s", markersize=4.32, **points)
        if "p" in styles:
            axes.plot(y[1:] * count * 0.56, y[:-1], marker="o", markersize=2.88, **points)
        if "m" in styles:
            axes.plot([0, count], [y.mean(), y.mean()], **line)
        if "t" in styles:
            axes.plot([0, count], [0.4, 0.6], color="red", antialiased=False)
    axes.set_xlim(0, count)
    axes.set_ylim(0, 1)
    times = []
    for _ in range(int(repeats)):
        start = time.process_time()
        figure.canvas.draw()
        times.append(1000 * (time.process_time() - start))
    print(f"{sorted(times)[len(times) // 2]:.2f}")


main()
