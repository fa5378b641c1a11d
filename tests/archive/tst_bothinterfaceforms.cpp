// 7-Zip libraries of both kinds, with and without a virtual destructor in their root interface, and libraries
// that do not keep to the rules.

#include "archive/archive.h"
#include "tests/archive/archivebuilder.h"

#include <QTemporaryDir>
#include <QTest>

using namespace archive;

class tst_BothInterfaceForms : public QObject
{
    Q_OBJECT

private slots:
    void everyFormIsServed_data();
    void everyFormIsServed();
    void misbehaviourIsAnErrorAndWritesNothing_data();
    void misbehaviourIsAnErrorAndWritesNothing();

private:
    static QString extract(const QString &library, const QByteArray &order, QMap<QString, QByteArray> &tree)
    {
        const QTemporaryDir folder;
        writeFile(folder.filePath("x.tgz"), order);
        QString error;
        try {
            const Bit7zLibrary loaded(
                (QCoreApplication::applicationDirPath() + "/" + library).toStdWString());
            BitExtractor(loaded, BitFormat::GZip)
                .extract(folder.filePath("x.tgz").toStdWString(), folder.filePath("out/").toStdWString());
        } catch (const std::exception &exception) {
            error = exception.what();
        }
        tree = treeOf(folder.filePath("out"));
        return error;
    }
};

void tst_BothInterfaceForms::everyFormIsServed_data()
{
    QTest::addColumn<QString>("library");
    QTest::newRow("tells that it has none") << "libfake7z_plain.so";
    QTest::newRow("tells that it has one") << "libfake7z_destructor.so";
    QTest::newRow("does not tell, as before 23.01") << "libfake7z_old.so";
}

void tst_BothInterfaceForms::everyFormIsServed()
{
    QFETCH(QString, library);
    QMap<QString, QByteArray> tree;
    QCOMPARE(extract(library, "fake", tree), QString());
    QCOMPARE(tree, (QMap<QString, QByteArray>{{"fake.tar", "content of the fake library"}}));
}

void tst_BothInterfaceForms::misbehaviourIsAnErrorAndWritesNothing_data()
{
    QTest::addColumn<QByteArray>("order");
    for (const char *order : {"begin twice", "no entry", "other entry", "no end", "bad data",
                              "bad data, hides errors", "fails at the end"})
        QTest::newRow(order) << QByteArray("fake, ") + order;
}

void tst_BothInterfaceForms::misbehaviourIsAnErrorAndWritesNothing()
{
    QFETCH(QByteArray, order);
    for (const char *library : {"libfake7z_plain.so", "libfake7z_old.so"}) {
        QMap<QString, QByteArray> tree;
        QVERIFY(!extract(library, order, tree).isEmpty());
        QVERIFY(tree.isEmpty());
    }
}

QTEST_GUILESS_MAIN(tst_BothInterfaceForms)
#include "tst_bothinterfaceforms.moc"
