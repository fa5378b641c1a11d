// The parameters of an export before the first run. A program of its own: a run leaves its parameters behind.

#include "run/progress.h"

#include <QtTest>

class tst_ProgressStatics : public QObject
{
    Q_OBJECT

private slots:
    void parametersStartAtTheirDefaults();
};

void tst_ProgressStatics::parametersStartAtTheirDefaults()
{
    QVERIFY(Progress::m_job_name.empty());
    QVERIFY(Progress::m_step.empty());
    QVERIFY(Progress::m_layer_name.empty());
    QVERIFY(Progress::m_file_name.empty());
    QCOMPARE(int(Progress::m_Suffix), 1);
    QCOMPARE(Progress::dbuValue, 0.001);
    QCOMPARE(Progress::resize, 0.0);
    QCOMPARE(Progress::XScale, 1.0);
    QCOMPARE(Progress::YScale, 1.0);
    QCOMPARE(Progress::angle, 0.0);
    QCOMPARE(Progress::isProfiletop, true);
    QCOMPARE(Progress::isReserse, false);
    QCOMPARE(Progress::isMirror, false);
    QCOMPARE(Progress::isRotate, false);
    QCOMPARE(Progress::isScale, false);
}

QTEST_APPLESS_MAIN(tst_ProgressStatics)
#include "tst_progressstatics.moc"
