// Measures the unpacking of a job archive as the user meets it: through FileProcess::copyDirectory, with its
// progress window and its poll loop.
//
// importbench make SAMPLE FOLDER
//     makes a job of 300 MB in 9 000 files in FOLDER out of the files of the job SAMPLE
//
// importbench unpack ARCHIVE ROOT
//     unpacks ARCHIVE into the job root ROOT; prints seconds, peak memory in MB, longest time between two
//     event passes in ms
//
// importbench repeat COUNT ARCHIVE ROOT
//     unpacks twice COUNT times, prints memory and handles on the way

#include "tests/support/fileprocessaccess.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QMessageBox>
#include <QTimer>

#include <glog/logging.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <memory>

namespace {

const int FileCount = 9000;
const qint64 TotalBytes = 300000000;

// The longest time during which no event was handled, between start() and stop().
class GapMeter : public QObject
{
public:
    GapMeter()
    {
        connect(&m_timer, &QTimer::timeout, this, &GapMeter::pass);
        m_timer.setInterval(0); // fires once in every event pass
    }
    void start()
    {
        m_sinceLast.start();
        m_timer.start();
    }
    double stop()
    {
        m_timer.stop();
        pass();
        return double(m_longest) / 1e6;
    }

private:
    void pass()
    {
        m_longest = qMax(m_longest, m_sinceLast.nsecsElapsed());
        m_sinceLast.start();
    }

    QTimer m_timer;
    QElapsedTimer m_sinceLast;
    qint64 m_longest = 0;
};

// A number of kB from the process's status, 0 where there is no such file.
qint64 statusNumber(const char *name)
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(int(qstrlen(name))).simplified().split(' ').first().toLongLong();
    }
    return 0;
}

int openHandles()
{
    return QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

QString backslashes(QString path)
{
    return path.replace("/", "\\");
}

// Every file of `sample`, relative path and content, in the order of the paths.
QMap<QString, QByteArray> filesOf(const QString &sample)
{
    QMap<QString, QByteArray> files;
    const QDir root(sample);
    QDirIterator it(sample, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly))
            files[root.relativeFilePath(file.fileName())] = file.readAll();
    }
    return files;
}

// Copies of the sample's tree side by side, their contents cut or repeated to the wanted total.
int make(const QString &sample, const QString &folder)
{
    const QMap<QString, QByteArray> files = filesOf(sample);
    if (files.isEmpty()) {
        std::fprintf(stderr, "no files in %s\n", qPrintable(sample));
        return 1;
    }
    qint64 sampleBytes = 0;
    for (const QByteArray &content : files)
        sampleBytes += content.size();
    const double scale = double(TotalBytes) / (double(sampleBytes) * FileCount / files.size());

    auto file = files.begin();
    for (int i = 0; i < FileCount; ++i) {
        const QString path = QString("%1/steps/step_%2/%3")
                                 .arg(folder)
                                 .arg(i / files.size(), 4, 10, QChar('0'))
                                 .arg(file.key());
        const int size = int(file.value().size() * scale);
        const QByteArray content = file.value().isEmpty()
                                       ? QByteArray()
                                       : file.value().repeated(size / file.value().size() + 1).left(size);
        QDir().mkpath(QFileInfo(path).path());
        QFile out(path);
        if (!out.open(QIODevice::WriteOnly) || out.write(content) != content.size()) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
            return 1;
        }
        if (++file == files.end())
            file = files.begin();
    }
    return 0;
}

// Nobody answers the error box of a failed import here.
void endAtAMessageBox()
{
    auto *look = new QTimer(qApp);
    QObject::connect(look, &QTimer::timeout, look, [] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        std::fprintf(stderr, "%s\n", qPrintable(box->text()));
        std::_Exit(1);
    });
    look->start(100);
}

bool import(FileProcess &plugin, const QString &archive)
{
    QString name = QFileInfo(archive).completeBaseName();
    return FileProcessAccess::copyDirectory(plugin, archive, name);
}

int unpack(const QString &archive, const QString &root)
{
    FileProcess plugin;
    FileProcessAccess::config(plugin).jobPath = backslashes(root);
    GapMeter gaps;
    QElapsedTimer timer;
    timer.start();
    gaps.start();
    const bool isUnpacked = import(plugin, archive);
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    const double longest = gaps.stop();
    std::printf("%.3f %.1f %.1f\n", seconds, double(statusNumber("VmHWM:")) / 1024, longest);
    return isUnpacked ? 0 : 1;
}

// Imports `count` times. What the import leaves with the host's widget, its progress windows, is kept as
// hosts keep it or, to see whether anything else grows, deleted each time.
bool repeat(int count, const QString &archive, const QString &root, bool keepsWindows)
{
    FileProcess plugin;
    QWidget window;
    FileProcessAccess::setImportParent(plugin, &window);
    FileProcessAccess::config(plugin).jobPath = backslashes(root);
    for (int i = 1; i <= count; ++i) {
        QDir(root).removeRecursively();
        QDir().mkpath(root);
        if (!import(plugin, archive)) {
            std::fprintf(stderr, "import %d failed\n", i);
            return false;
        }
        if (!keepsWindows)
            qDeleteAll(window.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
        if (i == 1 || i == 10 || i % qMax(1, count / 5) == 0)
            std::printf("%5d imports, windows %s: %6.1f MB, %d handles\n", i,
                        keepsWindows ? "kept" : "deleted", double(statusNumber("VmRSS:")) / 1024,
                        openHandles());
        std::fflush(stdout);
    }
    return true;
}

int repeatBothWays(int count, const QString &archive, const QString &root)
{
    return repeat(count, archive, root, false) && repeat(count, archive, root, true) ? 0 : 1;
}

int usage()
{
    std::fprintf(stderr,
                 "usage: importbench make SAMPLE FOLDER | unpack ARCHIVE ROOT | repeat COUNT ARCHIVE ROOT\n");
    return 2;
}

} // namespace

int main(int argc, char **argv)
{
    // The import writes to the wide standard output; the first use of the stream decides which of the two
    // works.
    std::fwide(stdout, -1);
    QApplication application(argc, argv);
    google::InitGoogleLogging(argv[0]);
    FLAGS_logtostderr = true;
    // The plug-in's debug output is a host's business.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});

    endAtAMessageBox();

    const QStringList arguments = application.arguments().mid(1);
    const QString mode = arguments.value(0);
    if (mode == "make" && arguments.size() == 3)
        return make(arguments[1], arguments[2]);
    if (mode == "unpack" && arguments.size() == 3)
        return unpack(QFileInfo(arguments[1]).absoluteFilePath(), QFileInfo(arguments[2]).absoluteFilePath());
    if (mode == "repeat" && arguments.size() == 4)
        return repeatBothWays(arguments[1].toInt(), QFileInfo(arguments[2]).absoluteFilePath(),
                              QFileInfo(arguments[3]).absoluteFilePath());
    return usage();
}
