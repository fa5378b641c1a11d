// The wastebasket of a user who has never thrown anything away.
#include "platform/trash.h"

#include <QtTest>

namespace {

QStringList warnings;

void keepWarning(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        warnings << text;
}

} // namespace

class tst_Trash : public QObject
{
    Q_OBJECT

private slots:
    void theFirstFolderOfANewUserIsMoved()
    {
        QTemporaryDir home;
        // Neither the user's folder of data nor the one above it is there yet.
        const QString data = home.filePath("local/share");
        qputenv("HOME", home.path().toLocal8Bit());
        qputenv("XDG_DATA_HOME", data.toLocal8Bit());
        const QString folder = home.filePath("board");
        QVERIFY(QDir().mkpath(folder + "/matrix"));
        const QtMessageHandler before = qInstallMessageHandler(keepWarning);
        const QString failure = platform::moveToTrash(folder);
        qInstallMessageHandler(before);
        if (!failure.isEmpty() && failure.contains("knows no wastebasket"))
            QSKIP("this Qt knows no wastebasket");
        QCOMPARE(failure, QString());
        QCOMPARE(warnings, QStringList());
        QVERIFY(!QFileInfo::exists(folder));
        QVERIFY(QFileInfo::exists(data + "/Trash/files/board/matrix"));
    }
};

QTEST_GUILESS_MAIN(tst_Trash)
#include "tst_trash.moc"
