// The menu of the layer files that were opened last.
#pragma once

#include <QMenu>

class RecentFiles : public QMenu
{
    Q_OBJECT

public:
    explicit RecentFiles(QWidget *parent = nullptr);

    // Lists those of `paths` that are still there, in their order.
    void fill(const QStringList &paths);

signals:
    void fileChosen(const QString &path);
};
