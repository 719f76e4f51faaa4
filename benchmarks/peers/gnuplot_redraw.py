#!/usr/bin/env python3
"""The chart as gnuplot draws it with its cairo painter. Arguments as in peer.h. The time is that of
the whole process less that of one that draws an empty chart."""

import resource
import subprocess
import sys


def processor_time(commands):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(["gnuplot"], input=commands, text=True, check=True, stdout=subprocess.DEVNULL)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return 1000 * (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime)


def main():
    path, values, samples, styles, repeats = sys.argv[1:6]
    count = int(samples)
    head = 'set terminal pngcairo size 1920,1080 noenhanced\nset output "/dev/null"\nunset key\n'
    head += f"set xrange [0:{count}]\nset yrange [0:1]\nset style fill transparent solid 0.5 noborder\nset boxwidth 0.83\n"
    plots = []
    bars = []
    for number in range(int(values)):
        data = f'"{path}" binary array=({count}) format="%float" skip={4 * count * number}'
        colour = f'lc rgb "#{(number * 2654435 + 4000000) % 0xFFFFFF:06x}"'
        if "b" in styles:
            bars.append(f"{data} using 0:1 with boxes {colour}")
        if "l" in styles:
            plots.append(f"{data} using 0:1 with lines lw 2 {colour}")
        if "c" in styles:
            plots.append(f"{data} using 0:1 with points pt 7 ps 0.7 {colour}")
        if "s" in styles:
            plots.append(f"{data} using 0:1 with points pt 5 ps 0.5 {colour}")
        if "p" in styles:
            plots.append(f"last=NaN, {data} using (now=$1, x=now*{count * 0.56}):(y=last, last=now, y) with points pt 7 ps 0.35 {colour}")
        if "m" in styles:
            plots.append(f"0.5 with lines {colour}")
        if "t" in styles:
            plots.append(f'0.4+0.2*x/{count} with lines lc rgb "red"')
    empty = processor_time(head + "plot 2\n")
    times = sorted(processor_time(head + "plot " + ", ".join(bars + plots) + "\n") - empty for _ in range(int(repeats)))
    print(f"{times[len(times) // 2]:.2f}")


main()
