// Lists the exports of the past with what they were asked for.
#pragma once

#include "workbench/exporthistory.h"

#include <QWidget>

class QAction;
class QLabel;
class QTreeWidget;

class HistoryPane : public QWidget
{
    Q_OBJECT

public:
    explicit HistoryPane(QWidget *parent = nullptr);

    // The SQLite file with the record, from now on; empty when there is none.
    void setRecord(const QString &path);
    QString record() const { return m_record; }

public slots:
    // Reads the record again, when the pane is seen.
    void refresh();

signals:
    // An Export dialog with what `past` was asked for is wanted.
    void repeatAsked(const PastExport &past);

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void retranslate();
    void fill();
    const PastExport *current() const;
    void openFolder();

    QLabel *m_state;
    QTreeWidget *m_list;
    QAction *m_open;
    QAction *m_repeat;
    QString m_record;
    QString m_error;
    QVector<PastExport> m_exports;
};
