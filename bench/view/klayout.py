# What KLayout takes for the same pictures; bench/view.sh runs it as
#
#   klayout -z -nc -rx -rd file=PANEL.gds -r bench/view/klayout.py
#
# A view without a window: each figure is the time until a whole picture of 1240 x 780 pixels is drawn, as the
# program draws it for its own pictures. On a screen it shows what is there so far meanwhile.
import time

import pya

WIDTH, HEIGHT = 1240, 780


def megabytes(name):
    with open("/proc/self/status") as status:
        for line in status:
            if line.startswith(name):
                return int(line.split()[1]) * 1024 / 1e6


def drawn(view):
    start = time.perf_counter()
    view.get_pixels_with_options(WIDTH, HEIGHT)
    return 1000.0 * (time.perf_counter() - start)


def tell(what, times):
    times.sort()
    print("%s: median %.0f ms, worst %.0f ms (%d pictures)" % (what, times[len(times) // 2], times[-1], len(times)),
          flush=True)


before = megabytes("VmRSS:")
start = time.perf_counter()
view = pya.LayoutView()
view.load_layout(file, True)
view.max_hier()
read = time.perf_counter() - start
read_processor = time.process_time()
view.resize(WIDTH, HEIGHT)
view.zoom_fit()
first = drawn(view) / 1000.0
print("first picture: %.2f s, of these reading %.2f s; %.2f s of processor time, of these reading %.2f s" % (
    read + first, read, time.process_time(), read_processor), flush=True)

# Moves like those of viewbench: a quarter of the width, sidewards; then into the whole by tenths.
box = view.box()
center, width, height = box.center(), box.width(), box.height()


def show(dx, dy, scale):
    x, y = center.x + dx, center.y + dy
    view.zoom_box(pya.DBox(x - width * scale / 2, y - height * scale / 2,
                           x + width * scale / 2, y + height * scale / 2))
    return drawn(view)


pixel = width / 4.0 / WIDTH
tell("panning", [show(i * 12.0 * pixel, i * 6.0 * pixel, 0.25) for i in range(10)])
tell("zooming", [show(0.0, 0.0, 1.1 ** -i) for i in range(0, 50, 5)])
print("memory: %.0f MB, %.0f MB before; most %.0f MB" % (
    megabytes("VmRSS:"), before, megabytes("VmHWM:")))
