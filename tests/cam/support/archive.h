// Unpacks a job archive for tests that read what is in it.
#pragma once

#include "archive/archive.h"

#include <QDir>
#include <QString>
#include <QTemporaryDir>

#include <stdexcept>

// Throws a std::exception when the archive cannot be read or a file not be written.
inline void unpackArchive(const QString &file, const QString &folder)
{
    using namespace archive;
    const QTemporaryDir between;
    const Bit7zLibrary library;
    BitExtractor(library, BitFormat::GZip).extract(file.toStdWString(), between.path().toStdWString());
    const QStringList tars = QDir(between.path()).entryList(QDir::Files);
    if (tars.size() != 1)
        throw std::runtime_error(file.toStdString() + " has not become one tar");
    BitExtractor(library, BitFormat::Tar)
        .extract(between.filePath(tars.first()).toStdWString(), folder.toStdWString());
}
