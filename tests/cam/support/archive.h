// Unpacks the regular files of a .tgz, as tests need it, wherever they run.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <zlib.h>

#include <stdexcept>

// Throws std::runtime_error when the archive cannot be read or a file not be written.
inline void unpackArchive(const QString &archive, const QString &folder)
{
    constexpr int block = 512;
    gzFile packed = gzopen(QFile::encodeName(archive), "rb");
    if (!packed)
        throw std::runtime_error("cannot open " + archive.toStdString());
    QByteArray tar, chunk(1 << 20, '\0');
    for (int count; (count = gzread(packed, chunk.data(), unsigned(chunk.size()))) > 0;)
        tar.append(chunk.constData(), count);
    gzclose(packed);

    QByteArray longName;
    for (int at = 0; at + block <= tar.size() && tar[at] != '\0';) {
        const auto field = [&tar, at](int offset, int size) {
            const QByteArray raw = tar.mid(at + offset, size);
            return QByteArray(raw.constData()); // up to the first zero
        };
        QByteArray name = field(0, 100);
        if (field(257, 5) == "ustar" && !field(345, 155).isEmpty() && tar[at + 263] == '0')
            name.prepend(field(345, 155) + "/");
        const int size = field(124, 12).trimmed().toInt(nullptr, 8);
        const char type = tar[at + 156];
        const QByteArray content = tar.mid(at + block, size);
        at += block + (size + block - 1) / block * block;
        if (type == 'L') {
            longName = QByteArray(content.constData());
            continue;
        }
        if (!longName.isEmpty())
            name = longName;
        longName.clear();
        if (type != '0' && type != '\0')
            continue;
        const QString file = folder + "/" + QString::fromUtf8(name);
        QDir().mkpath(QFileInfo(file).path());
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly) || out.write(content) != content.size())
            throw std::runtime_error("cannot write " + file.toStdString());
    }
}
