// Matrix and step header files.
#include "cam/base/error.h"
#include "cam/odb/matrix.h"
#include "cam/odb/stepheader.h"
#include "tests/cam/support/messages.h"

#include <QtTest>

using namespace cam;

class tst_Matrix : public QObject
{
    Q_OBJECT

private slots:
    void fieldsOfALayerAreRead()
    {
        const Matrix matrix =
            parseMatrix("STEP {\n    COL=1\n    NAME=PCB\n}\n"
                        "LAYER {\n  ROW=3\n  CONTEXT=board\n  TYPE=SIGNAL\n  NAME=Top Copper\n"
                        "  POLARITY=NEGATIVE\n  START_NAME=A\n  END_NAME=B\n  OLD_NAME=C\n"
                        "  ADD_TYPE=D\n  COLOR=12\n  SOMETHING_NEW=7\n}\n",
                        "matrix");
        QCOMPARE(matrix.steps, std::vector<std::string>{"PCB"});
        QCOMPARE(matrix.layers.size(), std::size_t(1));
        const MatrixLayer &layer = matrix.layers[0];
        QCOMPARE(layer.row, 3);
        QCOMPARE(layer.context, std::string("BOARD"));
        QCOMPARE(layer.type, std::string("SIGNAL"));
        QCOMPARE(layer.name, std::string("Top Copper"));
        QCOMPARE(layer.polarity, std::string("NEGATIVE"));
        QCOMPARE(layer.startName, std::string("A"));
        QCOMPARE(layer.endName, std::string("B"));
        QCOMPARE(layer.oldName, std::string("C"));
        QCOMPARE(layer.addType, std::string("D"));
        QCOMPARE(layer.color, std::string("12"));
        QVERIFY(layer.isCopper());
    }

    void namesThatLeadElsewhereAreRefused_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char *name : {"../../home/x", "..", "/etc/x", "..\\x", "C:x", "a:stream", "a\x01"})
            QTest::newRow(name) << QByteArray(name);
    }
    void namesThatLeadElsewhereAreRefused()
    {
        QFETCH(QByteArray, name);
        for (const char *block : {"LAYER", "STEP"}) {
            const std::string text = block + std::string(" {\nNAME=") + name.toStdString() + "\n}\n";
            const QString expected =
                "m:2: expected a name without separators for NAME, found \"" + QString::fromUtf8(name) + "\"";
            QCOMPARE(messageOf([&] { parseMatrix(text, "m"); }), expected);
        }
    }

    void rowsAndColumnsGiveTheOrder()
    {
        const Matrix matrix = parseMatrix("LAYER {\nROW=10\nNAME=B\n}\nLAYER {\nROW=2\nNAME=A\n}\n"
                                          "STEP {\nCOL=2\nNAME=PANEL\n}\nSTEP {\nCOL=1\nNAME=PCB\n}\n",
                                          "matrix");
        QCOMPARE(matrix.layers[0].name, std::string("A"));
        QCOMPARE(matrix.layers[1].name, std::string("B"));
        QCOMPARE(matrix.steps, (std::vector<std::string>{"PCB", "PANEL"}));
    }

    void rowsWithoutANameAreLeftOut()
    {
        const Matrix matrix = parseMatrix("LAYER {\nROW=1\nNAME=\n}\nSTEP {\nCOL=1\n}\n", "matrix");
        QVERIFY(matrix.layers.empty() && matrix.steps.empty());
    }

    void layersAreFoundWithoutRegardToCase()
    {
        const Matrix matrix = parseMatrix("LAYER {\nROW=1\nNAME=Top\n}\n", "matrix");
        QVERIFY(matrix.find("tOP") == &matrix.layers[0]);
        QVERIFY(!matrix.find("bottom"));
    }

    void polarityIsPositiveUnlessStated()
    {
        QCOMPARE(parseMatrix("LAYER {\nROW=1\nNAME=T\n}\n", "m").layers[0].polarity, std::string("POSITIVE"));
    }

    void faultsNameFileLineAndExpectation_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("message");
        QTest::newRow("row is no number") << QByteArray("LAYER {\n ROW=first\n NAME=A\n}\n")
                                          << "m:2: expected a whole number for ROW, found \"first\"";
        QTest::newRow("block not closed")
            << QByteArray("STEP {\n COL=1\n") << "m:1: expected \"}\" at the end of the block STEP";
        QTest::newRow("closed twice") << QByteArray("STEP {\n}\n}\n") << "m:3: expected a block before \"}\"";
        QTest::newRow("block in block")
            << QByteArray("STEP {\nLAYER {\n") << "m:2: expected \"}\" before the next block";
        QTest::newRow("no field") << QByteArray("STEP {\nhello\n}\n")
                                  << "m:2: expected KEY=VALUE, \"NAME {\" or \"}\"";
    }
    void faultsNameFileLineAndExpectation()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, message);
        QCOMPARE(messageOf([&] { parseMatrix(text.toStdString(), "m"); }), message);
    }

    void stepRepeatsAreRead()
    {
        const StepHeader header =
            parseStepHeader("UNITS=MM\nX_DATUM=1.5\nY_DATUM=-2\nSTEP-REPEAT {\n    NAME=PCB\n"
                            "    X=10\n    Y=20\n    DX=30\n    DY=40\n    NX=2\n    NY=3\n"
                            "    ANGLE=90\n    FLIP=NO\n    MIRROR=YES\n}\n",
                            "stephdr");
        QCOMPARE(header.datum.x, 1.5e6);
        QCOMPARE(header.datum.y, -2e6);
        QCOMPARE(header.repeats.size(), std::size_t(1));
        const StepHeaderRepeat &repeat = header.repeats[0];
        QCOMPARE(repeat.step, std::string("pcb"));
        QCOMPARE(repeat.at.x, 10e6);
        QCOMPARE(repeat.at.y, 20e6);
        QCOMPARE(repeat.dx, 30e6);
        QCOMPARE(repeat.dy, 40e6);
        QCOMPARE(repeat.nx, 2);
        QCOMPARE(repeat.ny, 3);
        QCOMPARE(repeat.angle, 90.0);
        QVERIFY(repeat.mirror);
    }

    void stepHeaderWithoutUnitsIsInInches()
    {
        QCOMPARE(parseStepHeader("X_DATUM=1\n", "stephdr").datum.x, 25.4e6);
    }

    void faultsOfAStepHeaderAreNamed_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("message");
        QTest::newRow("units") << QByteArray("UNITS=ELLS\n") << "s:1: expected INCH or MM for UNITS";
        QTest::newRow("no name") << QByteArray("\nSTEP-REPEAT {\n}\n") << "s:2: expected NAME in STEP-REPEAT";
        QTest::newRow("no copies") << QByteArray("STEP-REPEAT {\nNAME=A\nNX=0\n}\n")
                                   << "s:1: expected NX and NY from 1 to 1000000 in STEP-REPEAT";
        QTest::newRow("mirror") << QByteArray("STEP-REPEAT {\nNAME=A\nMIRROR=maybe\n}\n")
                                << "s:3: expected YES or NO for MIRROR";
        QTest::newRow("flip") << QByteArray("STEP-REPEAT {\nNAME=A\nFLIP=maybe\n}\n")
                              << "s:3: expected YES or NO for FLIP";
    }
    void faultsOfAStepHeaderAreNamed()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, message);
        QCOMPARE(messageOf([&] { parseStepHeader(text.toStdString(), "s"); }), message);
    }
};

QTEST_APPLESS_MAIN(tst_Matrix)
#include "tst_matrix.moc"
