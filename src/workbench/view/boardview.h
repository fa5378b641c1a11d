// Shows scenes over each other: the wheel zooms about the mouse, dragging moves, a double click shows the
// whole board. What is drawn comes in tiles from background threads; meanwhile the picture that was there
// before is moved and scaled.
#pragma once

#include "workbench/view/lengthunit.h"
#include "workbench/view/tilepainter.h"

#include <QPointF>
#include <QPolygonF>
#include <QWidget>

#include <functional>

Q_DECLARE_METATYPE(cam::Point)

class BoardView : public QWidget
{
    Q_OBJECT

public:
    explicit BoardView(QWidget *parent = nullptr);

    // The lowest scene first.
    void setScenes(const std::vector<drawing::ColoredScene> &scenes);
    // What is fitted: the board's. The view goes there when `isNew`; otherwise the place that is shown stays.
    void setFrame(const cam::Box &frame, bool isNew);
    const cam::Box &frame() const { return m_frame; }
    // The board's outline, closed polygons in nanometres, and the place of its datum.
    void setBoard(const QVector<QPolygonF> &profile, cam::Point datum);
    // Shows nothing but `text`.
    void showText(const QString &text);
    void setTitle(const QString &title);
    QString title() const { return m_title; }
    // What there is to say where nothing is drawn; empty for nothing.
    void setHint(const QString &text);
    // What is being read, over what is shown; empty when nothing is.
    void setProgress(const QString &text);
    QString progress() const { return m_progress; }
    void setUnit(LengthUnit unit);
    LengthUnit unit() const { return m_unit; }
    // Seen from below: x runs to the left.
    void setMirrored(bool mirrored);
    bool isMirrored() const { return m_mirrored; }

    QPointF toScreen(cam::Point place) const;
    cam::Point toPlace(const QPointF &screen) const;
    // Nanometres of a pixel of the screen.
    double pixel() const { return m_pixel; }
    // The viewport that is seen, in pixels of the screen.
    drawing::Viewport viewport() const;
    void setViewport(cam::Point center, double pixel);
    // Shows `box` with some room around it.
    void showBox(const cam::Box &box);
    // Whether everything that is seen is drawn.
    bool isDrawn() const { return m_tiles.isDone(); }

    const std::vector<drawing::ColoredScene> &scenes() const { return m_scenes; }
    // `layers`, a picture of what is seen at some multiple of the screen's resolution, with everything that
    // is drawn below and above the layers.
    QImage finished(const QImage &layers) const;

    // Draws the board's outline and what is marked, to the scale of the screen, with the middle of the view
    // at the painter's origin.
    void paintMarks(QPainter &painter, const QColor &outline) const;

    // What is drawn above the layers, in pixels of the screen: measuring, inspection.
    class Overlay
    {
    public:
        virtual ~Overlay() = default;
        virtual void paint(QPainter &painter, const BoardView &view) = 0;
    };
    void addOverlay(Overlay *overlay) { m_overlays.push_back(overlay); }

public slots:
    void fitFrame();
    void fitAll();

signals:
    // The place under the mouse, in words; empty when it leaves.
    void pointed(const QString &place);
    void moved(const cam::Point &place);
    // A click that was no drag, with the left button.
    void clicked(const cam::Point &place);
    void escaped();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    // A picture of what was seen, kept until the tiles of another zoom are there.
    struct Kept
    {
        QImage image;
        QPointF corner; // in the plane of pixels of `pixel`
        double pixel = 1.0;
        bool mirrored = false;
    };

    QSize pixels() const; // of the screen's own
    QPointF planeOf(cam::Point place) const;
    QPointF corner() const; // of the view, in the plane: whole pixels
    QRect tilesSeen() const;
    void zoomAbout(const QPointF &screen, double factor);
    void goTo(const cam::Box &box);
    void keepPicture();
    // The layers, by `drawLayers` at `ratio` pixels to one of the painter's, and what is below and above
    // them.
    void drawAll(QPainter &painter, double ratio, const std::function<void()> &drawLayers) const;
    void drawTiles(QPainter &painter) const;
    void moveBy(const QPointF &screen);
    void viewChanged();
    void drawGrid(QPainter &painter) const;
    void drawBoard(QPainter &painter, const QColor &outline) const;
    void drawOverlays(QPainter &painter) const;
    void drawScale(QPainter &painter) const;
    QString pointedText() const;

    TilePainter m_tiles;
    std::vector<drawing::ColoredScene> m_scenes;
    std::vector<Overlay *> m_overlays;
    Kept m_kept;
    cam::Box m_frame;
    QVector<QPolygonF> m_profile;
    cam::Point m_datum;
    bool m_hasBoard = false;
    QString m_title, m_text, m_progress;
    LengthUnit m_unit = LengthUnit::Millimetre;
    cam::Point m_center;  // in the middle of the view
    double m_pixel = 1e5; // nanometres of a pixel of the screen's own
    bool m_mirrored = false;
    enum class Fitted { No, Frame, All } m_fitted = Fitted::Frame; // the view follows the window's size
    QPointF m_mouse;
    QPointF m_pressed;
    bool m_isDragging = false;
    bool m_hasMouse = false;
};
