// Draws one layer: the wheel zooms about the mouse, dragging moves, a double click shows everything.
#pragma once

#include "workbench/view/layerdrawing.h"

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QPoint>
#include <QTransform>
#include <QVector>
#include <QWidget>

#include <vector>

class LayerView : public QWidget
{
    Q_OBJECT

public:
    explicit LayerView(QWidget *parent = nullptr);

    // Keeps the place shown when `sameJob` is set and the view is not empty.
    void showDrawing(const LayerDrawing &drawing, const QString &title, const QColor &color, bool sameJob);
    // Of what is shown.
    QString title() const { return m_title; }
    // Shows `text` instead of a drawing.
    void showText(const QString &text);
    // Shows that a layer is being read, over what is shown.
    void showProgress(const QString &title, double percent);

public slots:
    void fit();

signals:
    // The place under the mouse in millimetres; empty when it leaves.
    void pointed(const QString &place);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    struct AreaSize
    {
        QRectF box;
        double area = 0.0;      // square millimetres
        double thickness = 0.0; // millimetres: its area over the longer side of its box
    };

    QPointF toScreen(const QPointF &place) const;
    QPointF toPlace(const QPointF &screen) const;
    void zoomAbout(const QPointF &screen, double factor);
    void changed();
    void drawLayer();
    QTransform toView() const;
    QRectF visiblePlaces() const;
    QImage areasImage(qreal pixelRatio) const;
    void addCoverage(QImage &image, const std::vector<float> &coverage) const;
    void drawGrid(QPainter &painter) const;
    void drawOutlines(QPainter &painter) const;
    void drawScale(QPainter &painter) const;

    LayerDrawing m_drawing;
    QVector<AreaSize> m_sizes; // of m_drawing.areas
    bool m_hasDrawing = false;
    QString m_title;
    QString m_text;
    QString m_progress;
    QColor m_color;
    QPointF m_centre;     // the place in the middle of the view
    double m_scale = 10;  // pixels a millimetre
    bool m_fitted = true; // the view follows the size of the window
    QPixmap m_picture;    // the layer as drawn last; null when it must be drawn anew
    QPoint m_mouse;       // where the mouse was last
};
