#include "workbench/view/textlabels.h"

#include <QPainter>

#include <algorithm>

namespace {

// Beyond this nobody reads them: the points at their places are drawn alone.
const std::size_t mostTexts = 3000;
const int mostLetters = 60;

} // namespace

QString TextLabels::textOf(const std::string &words)
{
    const QString text = QString::fromStdString(words);
    return text.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(words.c_str()) : text;
}

void TextLabels::paint(QPainter &painter, const BoardView &view)
{
    cam::Box seen;
    seen.add(view.toPlace(QPointF(0, 0)));
    seen.add(view.toPlace(QPointF(view.width(), view.height())));
    painter.setClipRect(view.rect());
    std::vector<QRect> taken;
    for (const Layer &layer : m_layers) {
        std::vector<std::pair<QPointF, QString>> texts;
        layer.scene->findTexts(seen, [&](cam::Point at, const std::string &words) {
            texts.emplace_back(view.toScreen(at), textOf(words).simplified().left(mostLetters));
            return texts.size() <= mostTexts;
        });
        if (texts.size() > mostTexts)
            continue;
        for (const auto &[at, words] : texts) {
            QRect room = painter.fontMetrics().boundingRect(words).adjusted(-2, -1, 2, 1);
            room.moveBottomLeft(at.toPoint() + QPoint(3, -2));
            if (words.isEmpty() || std::any_of(taken.begin(), taken.end(),
                                               [&](const QRect &other) { return other.intersects(room); }))
                continue;
            taken.push_back(room);
            painter.fillRect(room, QColor(24, 28, 32, 160));
            painter.setPen(layer.color.lighter(130));
            painter.drawText(room, Qt::AlignCenter, words);
        }
    }
}
