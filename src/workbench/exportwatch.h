// What became of an export that a plug-in ran: a result for each layer that was chosen for it, in both
// formats. The plug-in itself says nothing when it has ended.
#pragma once

#include "cam/exportobserver.h"

#include <QCoreApplication>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVector>

struct LayerResult
{
    // Found: a file that no export of this session has written, to be compared with its layer.
    enum class State { Waiting, Running, Written, Empty, Failed, Cancelled, Missing, Found };

    QString layer; // as the Export dialog names it
    State state = State::Waiting;
    QString file;      // local path; empty when the layer's turn never came
    qint64 bytes = -1; // of the written file
    QString reason;    // of a failure
    QStringList notes; // what there is to know about how the layer was read
    cam::ExportRequest request;

    bool isGood() const { return state == State::Written || state == State::Empty || state == State::Found; }
};

struct ExportResults
{
    Q_DECLARE_TR_FUNCTIONS(ExportResults)

public:
    QString job;
    QVector<LayerResult> layers; // in the dialog's order

    int count(LayerResult::State state) const;
    // Whether every chosen layer has its file.
    bool isComplete() const;
    // The folder of the written files, empty when there is none.
    QString folder() const;
    // In one sentence, such as "4 of 26 layers of beacon were written; 22 were cancelled."
    QString summary() const;
    // The result of `layer`, without regard to case, or null.
    LayerResult *find(const QString &layer);
};

class ExportWatch : public QObject
{
    Q_OBJECT

public:
    // Observes the exports of the CAM library from now on. There is one such object in a program.
    explicit ExportWatch(QObject *parent = nullptr);
    ~ExportWatch() override;

    bool isRunning() const { return m_isRunning; }
    // Of the export that runs, or that ran last.
    const ExportResults &results() const { return m_results; }

public slots:
    // An Export dialog is about to open: what is pressed in it is looked at until it is gone.
    void watchDialog();

signals:
    // The open dialog, which does not export now, may have other choices in it.
    void looked();
    void started();
    void changed(); // the results of the export that runs
    void ended();

private:
    void look();
    void take(const ORVEX::HOST::ExportOutcome &outcome);
    void begin();
    void end();

    QTimer m_timer;
    ExportResults m_results;
    bool m_isRunning = false;
};
