// Gets the drawing of a layer from the CAM library: exports the layer to a temporary file in the background
// and reads that file. One layer at a time; a newer request replaces the older one.
#pragma once

#include "run/progressvalue.h"
#include "workbench/view/layerdrawing.h"

#include <QObject>
#include <QTemporaryDir>
#include <QTimer>

#include <memory>
#include <string>

class LayerLoader : public QObject
{
    Q_OBJECT

public:
    explicit LayerLoader(QObject *parent = nullptr);
    // Ends what is running.
    ~LayerLoader() override;

    void load(const QString &job, const QString &step, const QString &layer);
    // Ends what is running and forgets it; returns when the CAM library is free.
    void stop();
    bool isBusy() const { return bool(m_work); }

signals:
    void progressed(double percent);
    // `complete`: the CAM library could draw everything that the layer holds.
    void loaded(const LayerDrawing &drawing, bool complete);
    void failed(const QString &reason);

private:
    struct Work : ORVEX::COMMON::progress_value<void>
    {
        std::string job, step, layer, file;
        bool exported = false; // valid when the task is done, as what follows
        LayerDrawing drawing;
        QString error;
    };

    static void run(Work *work);
    void look();

    QTemporaryDir m_folder;
    QTimer m_timer;
    std::unique_ptr<Work> m_work;
};
