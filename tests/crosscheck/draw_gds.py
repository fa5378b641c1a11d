# Draws parts of GDSII files, datatype 0 only, black on white. Run by KLayout:
#   klayout -z -nc -rd pictures=LIST -r draw_gds.py
# LIST has a line a picture: file, png, width, height (pixels), left, bottom, pixel (micrometres), separated by tabs.
import pya

application = pya.Application.instance()
window = application.main_window()


def show(file, offset):
    """Opens `file`, moved by `offset` micrometres in both directions."""
    window.load_layout(file, 0)
    view = window.current_view()
    for key, value in (("background-color", "#ffffff"), ("grid-visible", "false"), ("text-visible", "false")):
        view.set_config(key, value)
    layout = view.active_cellview().layout()
    top = layout.top_cell()
    moved = layout.create_cell("MOVED")
    moved.insert(pya.DCellInstArray(top.cell_index(), pya.DTrans(pya.DVector(offset, offset))))
    # KLayout rounds the places of cells to whole pixels before it draws what is in them.
    layout.flatten(moved.cell_index(), -1, True)
    view.active_cellview().cell = moved
    view.max_hier()
    view.clear_layers()
    for info in layout.layer_infos():
        if info.datatype != 0:
            continue
        style = pya.LayerProperties()
        style.source = "%d/0@1" % info.layer
        style.fill_color = 0
        style.frame_color = 0
        style.dither_pattern = 0
        style.width = 1
        view.insert_layer(view.end_layers(), style)
    application.process_events()
    return view


shown = None
for line in open(pictures):
    file, png, width, height, left, bottom, pixel = line.rstrip("\n").split("\t")
    left, bottom, pixel = float(left), float(bottom), float(pixel)
    if file != shown:
        # KLayout samples at the pixels' lower left corners: half a pixel down and left makes them centres.
        view = show(file, -pixel / 2)
        shown = file
    box = pya.DBox(left, bottom, left + int(width) * pixel, bottom + int(height) * pixel)
    # One bit a pixel: most of the time of a picture in colors goes into packing it.
    view.save_image_with_options(png, int(width), int(height), 0, 1, 1.0, box, True)
application.exit(0)
