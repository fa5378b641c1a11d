// A host as somebody else has it: the records and the plug-in's interface are declared here once more, and
// nothing of the project is included. Whoever exchanges data with the plug-in by these declarations shows
// that its own have the same order and sizes.
//
// The names that the linker compares (QTpluginsManger4CAM, ORVEX, PluginMetaData) are the host's; those of
// fields and of the interface's operations are not seen by it and differ from the project's.
#pragma once

#include <QMap>
#include <QObject>
#include <QSemaphore>
#include <QString>
#include <QVariant>

#include <future>
#include <mutex>
#include <string>
#include <vector>

class QAction;
class QToolBar;
class QWidget;

#ifdef FOREIGN_HOST_LIBRARY
#define FOREIGN_HOST_DECL Q_DECL_EXPORT
#else
#define FOREIGN_HOST_DECL Q_DECL_IMPORT
#endif

struct PluginMetaData
{
    QString sender;
    QString receiver;
    qint32 number = 0;
    QMap<QString, QVariant> named;
    void *object = nullptr;
};

// The plug-in's interface: the slots of its virtual table, one after the other.
class ForeignInterface
{
public:
    virtual ~ForeignInterface() = default;
    virtual void takeMessage(PluginMetaData message) = 0;
    virtual void sendMessage(PluginMetaData message) = 0;
    virtual void createTools() = 0;
    virtual QAction *makeImportAction(QWidget *parent) = 0;
    virtual QAction *makeExportAction() = 0;
    virtual void fillToolBar(QToolBar *bar) = 0;
};

// The job context of message 10000503.
struct ForeignJobContext
{
    QString step;
    QString folder;
    QString job;
    std::vector<std::string> words;
};

class FOREIGN_HOST_DECL QTpluginsManger4CAM : public QObject
{
    Q_OBJECT

public:
    static QTpluginsManger4CAM *instance();
    void recMegToPlugin(void *sender, PluginMetaData message);
};

namespace ORVEX::COMMON {

template <typename Result>
class progress_value
{
public:
    std::string title;
    std::string text;
    std::future<Result> job;
    double percent;
    std::mutex guard;
    bool isCancelled;
};

} // namespace ORVEX::COMMON

namespace ORVEX::API {

struct layer_info
{
    std::string context, kind, layer, text4, sign, text6, text7, text8, text9;
    qint32 number = 0;
};

struct point;
enum class export_type : qint32;

FOREIGN_HOST_DECL std::string get_matrix(const std::string &job, std::vector<std::string> &names,
                                         std::vector<layer_info> &layers);
FOREIGN_HOST_DECL bool layer_export(const std::string &job, const std::string &step, const std::string &layer,
                                    export_type type, std::string file,
                                    ORVEX::COMMON::progress_value<void> *progress, double, double, bool, bool,
                                    bool, bool, int, int, int, int, int, int, bool, double, std::string, bool,
                                    double, double, bool, int, int, int, int, std::vector<std::vector<point>>,
                                    int);

} // namespace ORVEX::API

namespace ORVEX::DB {

FOREIGN_HOST_DECL bool get_SaveFlag();
FOREIGN_HOST_DECL void layer_export_db_save(const std::string &job, const std::string &step,
                                            const std::string &layer, ORVEX::API::export_type type,
                                            std::string file, ORVEX::COMMON::progress_value<void> *progress,
                                            double, double, bool, bool, bool, bool, int, int, int, int, int,
                                            int, bool, double, std::string, bool, double, double, bool);

} // namespace ORVEX::DB

namespace foreign_host {

// What the plug-in told this host, and what it answers.
struct State
{
    std::vector<void *> senders; // of the messages given to the manager
    std::vector<PluginMetaData> messages;
    std::vector<ORVEX::API::layer_info> layers; // the answer of get_matrix
    std::string matrixJob;

    // The arguments of layer_export, and its progress record as it was at the begin.
    std::string job, step, layer, file;
    int type = -1;
    std::string title, text;
    double percent = -2.0;
    bool isCancelled = true;
    // layer_export reports 42.5 percent and waits until somebody has seen it, a minute at most.
    QSemaphore isSeen;
};

FOREIGN_HOST_DECL State &state();

} // namespace foreign_host
