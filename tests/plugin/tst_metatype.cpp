// Which constructor of the plug-in object makes its message record known to Qt. Qt forgets no type until the
// process ends, so this test is a program of its own, and its one function goes step by step.

#include "plugin/fileprocess.h"

#include <QMetaType>
#include <QtTest>

class tst_MetaType : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheEntrysConstructorRegistersTheRecord();
};

void tst_MetaType::onlyTheEntrysConstructorRegistersTheRecord()
{
    QCOMPARE(QMetaType::type("PluginMetaData"), int(QMetaType::UnknownType));
    QWidget widget;
    const FileProcess other(&widget);
    QCOMPARE(QMetaType::type("PluginMetaData"), int(QMetaType::UnknownType));
    QCOMPARE(QMetaType::type("PluginMetaData&"), int(QMetaType::UnknownType));
    const FileProcess entrys;
    const int type = QMetaType::type("PluginMetaData");
    QVERIFY(type != QMetaType::UnknownType);
    QCOMPARE(QMetaType::type("PluginMetaData&"), type);
    QCOMPARE(QMetaType::sizeOf(type), int(sizeof(PluginMetaData)));
}

QTEST_MAIN(tst_MetaType)
#include "tst_metatype.moc"
