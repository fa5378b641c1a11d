// Compares what an export has written with the layers of its job, in the background.
#pragma once

#include "cam/verify/verification.h"
#include "workbench/exportwatch.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <atomic>
#include <thread>

// What the comparison of a layer's file has found.
struct LayerProof
{
    QString layer; // as the Export dialog names it
    cam::ExportRequest request;
    cam::Transform placement; // from the step's coordinates to the file's, those of what has been found
    cam::Comparison found;    // with its polygons
};

class ExportVerifier : public QObject
{
    Q_OBJECT

public:
    explicit ExportVerifier(QObject *parent = nullptr);
    // Ends what is running.
    ~ExportVerifier() override;

    // Compares the files that have been written, one after the other. What was running before is ended, and
    // what it found is forgotten.
    void start(const ExportResults &results);
    // Ends what is running and forgets what it found; returns when it has ended.
    void stop();
    bool isRunning() const { return m_proofs.size() < m_count; }

    // Of the layers that have been compared.
    const QVector<LayerProof> &proofs() const { return m_proofs; }
    // Layers whose files are not proven.
    QStringList unproven() const;
    // In one sentence, such as "22 of 22 layers proven within 0.5 µm."; empty when there is nothing to
    // compare.
    QString summary() const;

signals:
    // A layer has been compared.
    void changed();
    // All of them have.
    void ended();

private:
    void work(int run, const QVector<LayerResult> &layers);
    void take(int run, const LayerProof &proof);

    std::thread m_thread;
    std::atomic<bool> m_cancel{false};
    int m_run = 0; // of the thread that works, or that worked last
    int m_count = 0;
    QVector<LayerProof> m_proofs;
};
