// The graphics view of the workbench: shows the rows that it is told to, over each other.
#pragma once

#include "workbench/view/componentnames.h"
#include "workbench/view/differences.h"
#include "workbench/view/figureinspection.h"
#include "workbench/view/inspection.h"
#include "workbench/view/lengthunit.h"
#include "workbench/view/measuring.h"
#include "workbench/view/scenestore.h"
#include "workbench/view/searchmarks.h"
#include "workbench/view/textlabels.h"

#include <QStringList>
#include <QTimer>
#include <QWidget>

class BoardView;

class GraphicView : public QWidget
{
    Q_OBJECT

public:
    explicit GraphicView(QWidget *parent = nullptr);
    ~GraphicView() override;

    BoardView &board() const { return *m_view; }

    // The following layers are of `step` of the job in the folder `job`; the view goes to its board.
    void openStep(const QString &job, const QString &step);
    // The lowest first. What is not there yet is read; the reading of anything else ends.
    void showRows(const QVector<ViewRow> &rows);
    void showText(const QString &text);
    // Ends the reading of a file and forgets it.
    void closeFile(const QString &path);
    // What is said about the feature or figure that was clicked; empty when there is none.
    QStringList inspected() const;
    std::optional<Measurement> measurement() const { return m_measuring.measurement(); }
    // Ends all reading and returns when it has ended.
    void stopReading() { m_store.stopAndWait(); }
    // What the comparison of files with layers of the open step has found; the earlier ones are forgotten.
    void showDifferences(const QVector<LayerProof> &proofs);
    // Goes to the place of that number, as soon as its layer is there.
    void goToDifference(const QString &layer, int place);
    bool isReading() const { return m_store.isBusy(); }
    // Whether all that is to be seen has been read and drawn.
    bool isDrawn() const;
    // Whether more is being read of what is inspected.
    bool isInspecting() const { return m_inspection.isReading(); }
    // What the job says of the open step; null while there is none.
    const std::shared_ptr<StepSource> &source() const { return m_source; }
    // What a search has found and the view marks.
    const SearchMarks &found() const { return m_found; }

public slots:
    void fitBoard();
    void fitAll();
    void setFromBelow(bool fromBelow);
    void changeUnit();
    // Whether differences are seen.
    void setDifferencesSeen(bool seen);
    // The mouse measures instead of inspecting.
    void setMeasuring(bool measuring);
    // Forgets what is measured, what is inspected and what was found.
    void clearMarks();
    // Marks what a search has found and shows all of it. Of layers that are not seen one is asked for.
    void mark(const std::shared_ptr<const SearchTarget> &target);
    // Shows its next place, or the one before (-1).
    void stepMark(int direction);
    void clearFound();

signals:
    // The place under the mouse; empty when it leaves.
    void pointed(const QString &place);
    // A file whose parts were not known (ViewRow::wholeFile) has been read.
    void fileRead(const QString &path, const QStringList &parts);
    // What the file leaves open, and how it was taken: lines that name the file.
    void fileRemarked(const QString &remarks);
    // `reason` names the file.
    void fileFailed(const QString &path, const QString &reason);
    void filesDropped(const QStringList &paths);
    // The open step is another one: source().
    void sourceChanged();
    // What is marked, in words; empty for nothing.
    void marked(const QString &text);
    // A layer, in lower case, that has what is to be marked.
    void layerNeeded(const QString &layer);
    // Escape was pressed while nothing was measured.
    void measuringEnded();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void showScenes();
    void takeBoard(const drawing::LayerScene &scene);
    QString titleOf(const QVector<ViewRow> &rows) const;
    void lookAtFacts();
    void showMark();
    QString markText() const;
    void press(const cam::Point &place);
    double reach() const;
    void goOn();

    std::shared_ptr<StepSource> m_source; // of the open step
    SceneStore m_store;
    ComponentNames m_names;
    Measuring m_measuring;
    SearchMarks m_found;
    Inspection m_inspection;
    FigureInspection m_figures; // of files, which lie above the job
    TextLabels m_texts;
    Differences m_differences;
    bool m_areDifferencesSeen = true;
    bool m_isGoing = false; // to a difference
    QString m_job, m_step;
    BoardView *m_view;
    QVector<ViewRow> m_rows;
    QString m_text; // where there is nothing to draw
    bool m_hasBoard = false;
    QString m_failure; // of the layer that was chosen last
    QTimer m_factsTimer;
};
