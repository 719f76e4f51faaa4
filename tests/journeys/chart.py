"""Reading a chart off the screen: its frame, its bars, its marks."""

WHITE = (255, 255, 255)
BLACK = (0, 0, 0)
GRID = (200, 200, 200)


class NoChart(Exception):
    pass


class Chart:
    """A picture of the chart. left, top, width and height are those of the plot, which the frame
    surrounds with one pixel at the sides and below, and two above."""

    def __init__(self, picture):
        self.picture = picture
        self.pixels = picture.load()
        columns, rows = picture.size
        top = next((y for y in range(rows) if self.black_run(y) > columns // 2), None)
        if top is None:
            raise NoChart("no frame to be seen")
        black = [x for x in range(columns) if self.pixels[x, top] == BLACK]
        left, right = black[0], black[-1]
        bottom = top
        while bottom + 1 < rows and self.pixels[left, bottom + 1] == BLACK:
            bottom += 1
        if bottom == top or self.black_run(bottom) != len(black):
            raise NoChart("the frame is not painted to its end")
        self.left = left + 1
        self.top = top + 2
        self.width = right - left - 1
        self.height = bottom - top - 2

    def black_run(self, y):
        line = self.picture.crop((0, y, self.picture.size[0], y + 1))
        return next((n for n, colour in line.getcolors(line.size[0]) if colour == BLACK), 0)

    def has_ink(self, x, y):
        return self.pixels[x, y] not in (WHITE, BLACK, GRID)

    def is_empty(self):
        """Whether the plot shows nothing but its grid."""
        return self.colours() <= {WHITE, GRID}

    def colours(self):
        """All colours of the plot, grid and background too."""
        box = (self.left, self.top, self.left + self.width, self.top + self.height)
        area = self.picture.crop(box)
        return {colour for _, colour in area.getcolors(area.size[0] * area.size[1])}

    def slot(self, count):
        """The gap before the first of `count` bars and a bar's width."""
        width = self.width - 2
        gap = width / count - width / count / 1.2
        return gap, (width - gap) / count / 1.2

    def bar_heights(self, count):
        """The heights of `count` bars as fractions of the largest possible height."""
        gap, bar = self.slot(count)
        full = self.height - 1
        heights = []
        for i in range(count):
            x = round(self.left + gap + bar * i * 1.2 + bar / 2)
            # Top edge and height are rounded each for itself: the foot may end a pixel early.
            height = 0 if self.has_ink(x, self.top + full - 1) else 1
            while height < full and self.has_ink(x, self.top + full - 1 - height):
                height += 1
            heights.append(height / full)
        return heights

    def y_of(self, value, low, high):
        """The row on which `value` stands when the plot reaches from `low` to `high`."""
        full = self.height - 1
        return self.top + full - full * (value - low) / (high - low)

    def circle(self, i, count, value, low, high):
        """The colour at the middle of the i-th of `count` circles."""
        gap, bar = self.slot(count)
        d = max(bar, 8)
        x = round(self.left + gap + bar * 0.5 + bar * i * 1.2)
        y = self.y_of(value, low, high)
        bottom = self.top + self.height - 1
        if y - d < self.top:
            y = self.top + d / 2
        if y + d > bottom:
            y = bottom - d / 2
        return self.pixels[x, round(y)]


def fractions(values, low=None, high=None):
    """The heights that bars of these values have, limits applied."""
    low = min(values) if low is None else low
    high = max(values) if high is None else high
    return [(min(max(value, low), high) - low) / (high - low) for value in values]
