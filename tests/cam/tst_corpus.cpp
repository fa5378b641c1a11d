// Runs a fuzz target over its corpus: small inputs of every kind, and everything that fuzzing has found once.
#include <QDir>
#include <QFile>
#include <QtTest>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

class tst_Corpus : public QObject
{
    Q_OBJECT

private slots:
    void inputEndsInAResultOrAnError_data()
    {
        QTest::addColumn<QByteArray>("input");
        const QDir corpus(CORPUS);
        for (const QString &name : corpus.entryList(QDir::Files)) {
            QFile file(corpus.filePath(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QTest::newRow(qPrintable(name)) << file.readAll();
        }
        QTest::newRow("nothing") << QByteArray();
    }
    void inputEndsInAResultOrAnError()
    {
        QFETCH(QByteArray, input);
        QCOMPARE(LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                                        std::size_t(input.size())),
                 0);
    }
};

QTEST_APPLESS_MAIN(tst_Corpus)
#include "tst_corpus.moc"
