// Log texts in the GBK code page.

#include "platform/gbktext.h"

#include <QtTest>

class tst_GbkText : public QObject
{
    Q_OBJECT

private slots:
    void textsAreInCodePage936_data();
    void textsAreInCodePage936();
    void withoutTheCodecTextsStayUtf8();
};

void tst_GbkText::textsAreInCodePage936_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("ascii") << "Export: " << QByteArray("Export: ");
    QTest::newRow("full-width colon") << QString::fromUtf8("：") << QByteArray("\xa3\xba");
    QTest::newRow("path") << QString::fromUtf8("路径") << QByteArray("\xc2\xb7\xbe\xb6");
    QTest::newRow("layer") << QString::fromUtf8("获取配置层信息")
                           << QByteArray("\xbb\xf1\xc8\xa1\xc5\xe4\xd6\xc3\xb2\xe3\xd0\xc5\xcf\xa2");
}

void tst_GbkText::textsAreInCodePage936()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QCOMPARE(QByteArray::fromStdString(platform::gbk(text.toUtf8().constData())), bytes);
}

// Qt can be built without its large codecs.
void tst_GbkText::withoutTheCodecTextsStayUtf8()
{
    QCOMPARE(platform::gbk("\xc3\xa4", nullptr), std::string("\xc3\xa4"));
}

QTEST_GUILESS_MAIN(tst_GbkText)
#include "tst_gbktext.moc"
