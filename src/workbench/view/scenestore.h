// Reads what the view shows, in background threads: layers of the open step, and files. What has been read is
// kept, as far as memory allows, so that layers that were seen before are there at once.
#pragma once

#include "drawing/layerscene.h"
#include "workbench/view/filescenes.h"
#include "workbench/view/stepsource.h"
#include "workbench/view/viewrow.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <future>
#include <list>
#include <map>
#include <memory>

class SceneStore : public QObject
{
    Q_OBJECT

public:
    explicit SceneStore(QObject *parent = nullptr);
    // Ends what is being read.
    ~SceneStore() override;

    // From now on layers are those of `step` of the job in the folder `job`. Forgets all others. `source` is
    // of that step.
    void setStep(const QString &job, const QString &step, const std::shared_ptr<StepSource> &source);
    // What is shown: what is not there yet is read, and the reading of anything else ends.
    void want(const QVector<ViewRow> &rows);
    // Ends the reading of layers, soon; that of files goes on.
    void stopLayers();
    // Ends all reading, and returns when it has ended.
    void stopAndWait();
    bool isBusy() const;
    // What is being read, in words; empty when nothing is.
    QString progress() const;

    // Null while it has not been read; what stands for the row, perhaps with an earlier change.
    std::shared_ptr<const drawing::Scene> scene(const ViewRow &row) const;
    // Whether that scene has the row's change.
    bool isCurrent(const ViewRow &row) const;
    // Ends the reading of a file; it is read anew when it is wanted next.
    void forgetFile(const QString &path);

signals:
    // Something has been read.
    void changed();
    void progressed();
    void failed(const QString &name, const QString &reason);
    // A file of which nothing was known (ViewRow::wholeFile) has been read, or cannot be; `reason` names it.
    void fileRead(const QString &path, const QStringList &parts, const QStringList &remarks);
    void fileFailed(const QString &path, const QString &reason);

private:
    struct Work
    {
        QString key;
        ViewRow row;
        quint64 generation = 0; // of the step
        std::shared_ptr<StepSource> source;
        std::shared_ptr<const cam::LayerImage> image; // where it has been read before
        std::shared_ptr<const LayerFile> file;        // likewise
        std::atomic<bool> cancel{false};
        std::atomic<double> percent{0.0};
        std::future<void> task;
        std::shared_ptr<const drawing::Scene> scene; // valid when the task is done, as what follows
        QString error;
    };
    // What has been read.
    struct Entry
    {
        std::shared_ptr<const cam::LayerImage> image;
        std::shared_ptr<const drawing::Scene> scene;
        cam::ExportOptions options;
        QString file; // empty for a layer
        bool hasFailed = false;
        double size = 0.0; // features
        quint64 used = 0;
    };

    static QString keyOf(const ViewRow &row);
    static void readFile(Work &work, const std::function<void(double)> &report);
    static void run(Work *work, const QString &job, const QString &step, StepSource &source);
    bool isWanted(const QString &key, const cam::ExportOptions &options) const;
    void startNext();
    void look();
    void take(Work &work);
    void takeFile(const Work &work);
    void forgetUnused();

    QString m_job, m_step;
    std::shared_ptr<StepSource> m_source;
    QVector<ViewRow> m_wanted;
    std::list<std::unique_ptr<Work>> m_works;
    std::map<QString, Entry> m_entries;
    std::map<QString, std::shared_ptr<const LayerFile>> m_files; // by path
    quint64 m_uses = 0;
    quint64 m_generation = 0;
    QTimer m_timer;
};
