// The pane that searches the open step: a line to type into, and below it what has been found, by kind. The
// step is read in the background when the pane is first seen.
#pragma once

#include "workbench/search/searchindex.h"

#include <QTimer>
#include <QWidget>

#include <atomic>
#include <future>
#include <list>

class QLabel;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

class SearchPanel : public QWidget
{
    Q_OBJECT

public:
    explicit SearchPanel(QWidget *parent = nullptr);
    // Ends the reading.
    ~SearchPanel() override;

    // What is searched from now on; null for nothing.
    void setSource(const std::shared_ptr<StepSource> &source);
    // Goes to the line, what is in it chosen, so that typing begins a new search.
    void start();
    // Whether the step is being read.
    bool isReading() const { return !m_tasks.empty(); }
    // Which of the places that are marked is looked at, in words.
    void setPlace(const QString &text);

signals:
    void chosen(const std::shared_ptr<const SearchTarget> &target);
    // The next place of what was chosen, or the one before (-1).
    void stepAsked(int direction);
    void closed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Task
    {
        std::atomic<bool> cancel{false};
        std::atomic<double> share{0.0};
        QString error;
        std::future<std::shared_ptr<const SearchIndex>> result;
    };

    void read();
    void cancel();
    void look();
    void find();
    void choose(QTreeWidgetItem *item, int direction);
    QTreeWidgetItem *firstResult() const;
    void updateStatus();

    std::shared_ptr<StepSource> m_source;
    std::shared_ptr<const SearchIndex> m_index;
    std::list<Task> m_tasks; // the last one is waited for, the others end soon
    QString m_error;
    QString m_place;
    QTreeWidgetItem *m_chosen = nullptr;
    QLineEdit *m_line;
    QTreeWidget *m_results;
    QLabel *m_status;
    QTimer m_lookTimer;
    QTimer m_findTimer;
};
