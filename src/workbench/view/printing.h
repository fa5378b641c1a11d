// Prints what the view shows: on white paper, in its true size or any other scale, or as large as the page
// allows.
#pragma once

#include <QSizeF>
#include <QString>

class BoardView;
class QPainter;
class QPrinter;

// How what is seen comes to lie on a page: millimetres.
struct PageLayout
{
    QSizeF room;         // for the picture, on paper
    QSizeF seen;         // what the view shows, true
    double factor = 1.0; // how large things come out: 2 is twice their true size
    // The part that finds room; the same place is in the middle of it and of the view.
    QSizeF printed() const;
    bool isCut() const;
};

// `factor` 0: as large as the page allows.
PageLayout pageLayout(const BoardView &view, const QPrinter &printer, double factor);

// One page: the layers with the board's outline and whatever is marked, below them the title, the scale and a
// bar of a known length. Events are handled meanwhile, but the user's. The painter's origin is the upper left
// corner of the page, without its margins.
void paintPage(const BoardView &view, QPainter &painter, const PageLayout &layout, const QString &title);

// The same on a printer. Returns why it cannot be printed, or nothing.
QString printView(const BoardView &view, QPrinter &printer, const PageLayout &layout, const QString &title);
