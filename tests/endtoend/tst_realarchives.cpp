// Every archive of a folder of real jobs goes through the plug-in into both formats.
#include "tests/endtoend/batchprocess.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QtTest>

class tst_RealArchives : public QObject
{
    Q_OBJECT

private slots:
    void archiveIsImportedAndEveryLayerExported_data()
    {
        QTest::addColumn<QString>("archive");
        for (const char *folder : {"", "/unread"}) {
            for (const QFileInfo &file :
                 QDir(QString(REAL_ARCHIVES) + folder).entryInfoList({"*.tgz"}, QDir::Files))
                QTest::newRow(qPrintable(file.fileName())) << file.absoluteFilePath();
        }
    }
    void archiveIsImportedAndEveryLayerExported()
    {
        QFETCH(QString, archive);
        TemporaryWorkingFolder folder;
        const BatchResult result = runBatch(
            folder.path(), {"--jobs", folder.filePath("jobs"), "--out", folder.filePath("out"), archive});
        QVERIFY2(result.code == 0, qPrintable(result.all()));
        QVERIFY2(result.fileLines().size() >= 2, qPrintable(result.all()));
    }
};

QTEST_GUILESS_MAIN(tst_RealArchives)
#include "tst_realarchives.moc"
