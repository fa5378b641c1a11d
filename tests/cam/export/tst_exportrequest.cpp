// One export by its request: files, notes, progress, faults, and many at once.
#include "cam/base/error.h"
#include "cam/export/exportrequest.h"
#include "tests/cam/support/jobfolder.h"

#include <QtTest>

#include <limits>
#include <thread>

using namespace cam;

namespace {

// Cancels: nothing of the library's own.
struct Cancelled
{
};

class Board : public JobFolder
{
public:
    Board() { features("$0 r200\nL 1 1 4 5 0 P 0\n"); }
    ExportRequest request(FileFormat format = FileFormat::Gds) const
    {
        ExportRequest request;
        request.job = path();
        request.step = "pcb";
        request.layer = "top";
        request.format = format;
        request.options.file = local(filePath("layer"));
        return request;
    }
    QByteArray bytes(const QString &file = "layer") const
    {
        QFile opened(filePath(file));
        return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
    }
};

QString errorOf(const ExportRequest &request)
{
    try {
        exportLayer(request);
    } catch (const Error &error) {
        return QString::fromUtf8(error.what());
    }
    return {};
}

} // namespace

class tst_ExportRequest : public QObject
{
    Q_OBJECT

private slots:
    void formatSaysWhatIsWritten()
    {
        const Board board;
        exportLayer(board.request(FileFormat::Gds));
        QVERIFY(board.bytes().startsWith(QByteArray::fromHex("000600020258")));
        exportLayer(board.request(FileFormat::Gerber));
        QVERIFY(board.bytes().contains("%FSLAX46Y46*%"));
    }

    void notesSayWhatWasReadHowAndWhatCannotBeDrawn()
    {
        const Board board;
        board.features("$0 nosuchsymbol\n$1 r200\nP 1 1 0 P 0 0\nP 2 1 0 P 0 0\nP 1 1 1 P 0 0\n");
        ExportRequest request = board.request();
        QStringList texts;
        request.note = [&](const ExportNote &note) {
            if (note.kind == ExportNote::Kind::Unsupported)
                texts << QString::fromUtf8(note.text.c_str());
        };
        QCOMPARE(errorOf(request), QString("the layer has records or symbols that cannot be drawn"));
        QCOMPARE(texts.size(), 1);
        QVERIFY2(texts[0].contains("nosuchsymbol") && texts[0].contains("2 times"), qPrintable(texts[0]));
        QVERIFY(!QFileInfo::exists(board.filePath("layer")));
    }

    void shareRunsFromNothingToAllWithoutGoingBack()
    {
        const Board board;
        ExportRequest request = board.request();
        double last = 0.0;
        request.options.report = [&](double share) {
            QVERIFY2(share >= last, qPrintable(QString("%1 after %2").arg(share).arg(last)));
            last = share;
        };
        exportLayer(request);
        QCOMPARE(last, 1.0);
    }

    void cancelLeavesTheOldFile()
    {
        const Board board;
        QVERIFY(QFile(board.filePath("layer")).open(QIODevice::WriteOnly));
        ExportRequest request = board.request();
        request.options.report = [](double share) {
            if (share > 0.5)
                throw Cancelled();
        };
        QVERIFY_EXCEPTION_THROWN(exportLayer(request), Cancelled);
        QCOMPARE(QDir(board.root()).entryList(QDir::Files), QStringList("layer"));
        QCOMPARE(board.bytes(), QByteArray());
    }

    void numbersThatMeanNothingAreRefused_data()
    {
        QTest::addColumn<double>("value");
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("zero") << 0.0;
    }
    void numbersThatMeanNothingAreRefused()
    {
        QFETCH(double, value);
        const Board board;
        ExportRequest request = board.request();
        request.options.xScale = value;
        QVERIFY(errorOf(request).contains("scale"));
        request = board.request();
        request.options.yScale = value;
        QVERIFY(errorOf(request).contains("scale"));
        if (value == 0.0)
            return;
        for (double ExportOptions::*number :
             {&ExportOptions::dbu, &ExportOptions::resize, &ExportOptions::angle}) {
            request = board.request();
            request.options.*number = value;
            QVERIFY(errorOf(request).contains("expected a number for"));
        }
        QVERIFY(!QFileInfo::exists(board.filePath("layer")));
    }

    void jobStepAndLayerThatAreNotThereAreNamed()
    {
        const Board board;
        ExportRequest request = board.request();
        request.layer = "nosuchlayer";
        QVERIFY(errorOf(request).contains("nosuchlayer"));
        request = board.request();
        request.step = "nosuchstep";
        QVERIFY(errorOf(request).contains("nosuchstep"));
        request = board.request();
        request.job = JobFolder::local(board.filePath("nosuchjob"));
        QVERIFY(errorOf(request).contains("nosuchjob"));
    }

    // Layers of one job and of others, in both formats and with options of their own: the same bytes as when
    // each has the process to itself.
    void manyAtOnceWriteWhatEachWritesAlone()
    {
        const Board first;
        JobFolder second("other");
        second.features("$0 rect100x200\n$1 s50\nP 1 1 0 P 0 0\nP 2 2 1 N 0 0\nA 1 1 3 3 2 2 0 P 0 Y\n");
        std::vector<ExportRequest> requests;
        for (int i = 0; i < 24; ++i) {
            ExportRequest request = first.request(i % 2 ? FileFormat::Gds : FileFormat::Gerber);
            if (i % 3 == 0)
                request.job = second.path();
            request.options.negative = i % 4 == 0;
            request.options.angle = 7.5 * i;
            request.options.file = JobFolder::local(first.filePath(QString("file%1").arg(i)));
            requests.push_back(request);
        }
        std::vector<QByteArray> alone;
        for (std::size_t i = 0; i < requests.size(); ++i) {
            exportLayer(requests[i]);
            alone.push_back(first.bytes(QString("file%1").arg(i)));
            QVERIFY(!alone.back().isEmpty());
            QVERIFY(QFile::remove(first.filePath(QString("file%1").arg(i))));
        }
        std::vector<std::thread> threads;
        for (const ExportRequest &request : requests)
            threads.emplace_back([&request] { exportLayer(request); });
        for (std::thread &thread : threads)
            thread.join();
        for (std::size_t i = 0; i < requests.size(); ++i)
            QCOMPARE(first.bytes(QString("file%1").arg(i)), alone[i]);
    }
};

QTEST_APPLESS_MAIN(tst_ExportRequest)
#include "tst_exportrequest.moc"
