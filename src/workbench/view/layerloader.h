// Gets the drawing of a layer: exports the layer to a temporary file in the background and reads that file.
// One layer at a time; a newer request replaces the older one.
#pragma once

#include "cam/export/exportrequest.h"
#include "workbench/view/layerdrawing.h"

#include <QObject>
#include <QTemporaryDir>
#include <QTimer>

#include <atomic>
#include <future>
#include <memory>

class LayerLoader : public QObject
{
    Q_OBJECT

public:
    explicit LayerLoader(QObject *parent = nullptr);
    // Ends what is running.
    ~LayerLoader() override;

    // `job`: the job's folder. The layer is changed by `options` as by an export; their file does not count.
    void load(const QString &job, const QString &step, const QString &layer,
              const cam::ExportOptions &options);
    // Ends what is running and forgets it; returns when it has ended.
    void stop();
    bool isBusy() const { return bool(m_work); }

signals:
    void progressed(double percent);
    void loaded(const LayerDrawing &drawing);
    void failed(const QString &reason);

private:
    struct Work
    {
        cam::ExportRequest request;
        std::atomic<bool> cancel{false};
        std::atomic<double> percent{0.0};
        std::future<void> task;
        LayerDrawing drawing; // valid when the task is done, as what follows
        QString error;
    };

    static void run(Work *work);
    void look();

    QTemporaryDir m_folder;
    QTimer m_timer;
    std::unique_ptr<Work> m_work;
};
