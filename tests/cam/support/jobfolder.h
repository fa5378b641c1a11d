// A small job in a temporary folder: a matrix, one step "pcb" with a profile of 20 by 10 mm, and whatever a
// test adds.
#pragma once

#include "tests/support/temporaryworkingfolder.h"

#include <filesystem>

class JobFolder
{
public:
    explicit JobFolder(const QString &name = "board") : m_name(name)
    {
        write("matrix/matrix",
              "STEP {\n COL=1\n NAME=PCB\n}\n"
              "LAYER {\n ROW=1\n CONTEXT=BOARD\n TYPE=SOLDER_MASK\n NAME=MASK\n POLARITY=POSITIVE\n}\n"
              "LAYER {\n ROW=2\n CONTEXT=BOARD\n TYPE=SIGNAL\n NAME=TOP\n POLARITY=POSITIVE\n}\n"
              "LAYER {\n ROW=3\n CONTEXT=BOARD\n TYPE=POWER_GROUND\n NAME=GND\n POLARITY=NEGATIVE\n}\n"
              "LAYER {\n ROW=4\n CONTEXT=BOARD\n TYPE=DRILL\n NAME=DRILL\n POLARITY=POSITIVE\n"
              " START_NAME=TOP\n END_NAME=GND\n}\n");
        write("misc/info", "JOB_NAME=board\nUNITS=MM\nSAVE_DATE=20240229.131415\n");
        write("steps/pcb/stephdr", "UNITS=MM\nX_DATUM=0\nY_DATUM=0\n");
        write("steps/pcb/profile", "UNITS=MM\nS P 0\nOB 0 0 I\nOS 20 0\nOS 20 10\nOS 0 10\nOE\nSE\n");
    }
    void features(const QByteArray &text, const QString &layer = "top", const QString &step = "pcb") const
    {
        write("steps/" + step + "/layers/" + layer + "/features", "UNITS=MM\n" + text);
    }
    void write(const QString &file, const QByteArray &bytes) const
    {
        if (!m_folder.write(m_name + "/" + file, bytes))
            qFatal("cannot write %s", qPrintable(file));
    }
    QString name() const { return m_name; }
    QString root() const { return m_folder.path(); }
    QString filePath(const QString &file) const { return m_folder.filePath(file); }
    std::filesystem::path path() const { return local(m_folder.filePath(m_name)); }
    static std::filesystem::path local(const QString &path)
    {
        return std::filesystem::u8path(path.toStdString());
    }

private:
    TemporaryWorkingFolder m_folder;
    QString m_name;
};
