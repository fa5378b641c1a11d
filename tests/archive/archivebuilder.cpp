#include "tests/archive/archivebuilder.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cstdint>
#include <vector>

namespace {

QByteArray padded(const QByteArray &content)
{
    return content + QByteArray((512 - content.size() % 512) % 512, '\0');
}

void put(QByteArray &header, int offset, const QByteArray &field)
{
    header.replace(offset, field.size(), field);
}

QByteArray littleEndian(std::uint32_t number)
{
    QByteArray bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += char(number >> shift);
    return bytes;
}

std::uint32_t crc32(const QByteArray &bytes)
{
    static const std::vector<std::uint32_t> table = [] {
        std::vector<std::uint32_t> made(256);
        for (std::uint32_t i = 0; i < 256; ++i) {
            made[i] = i;
            for (int bit = 0; bit < 8; ++bit)
                made[i] = (made[i] >> 1) ^ (0xEDB88320u & (0u - (made[i] & 1u)));
        }
        return made;
    }();
    const std::uint32_t *entries = table.data();
    std::uint32_t crc = 0xFFFFFFFFu;
    const char *end = bytes.constData() + bytes.size();
    for (const char *byte = bytes.constData(); byte != end; ++byte)
        crc = (crc >> 8) ^ entries[(crc ^ std::uint8_t(*byte)) & 0xFF];
    return ~crc;
}

} // namespace

TarBuilder &TarBuilder::file(const QByteArray &name, const QByteArray &content)
{
    return entry(File, name, content);
}

TarBuilder &TarBuilder::folder(const QByteArray &name)
{
    return entry(Folder, name);
}

TarBuilder &TarBuilder::symbolicLink(const QByteArray &name, const QByteArray &target)
{
    return entry(SymbolicLink, name, {}, target);
}

TarBuilder &TarBuilder::hardLink(const QByteArray &name, const QByteArray &target)
{
    return entry(HardLink, name, {}, target);
}

TarBuilder &TarBuilder::entry(Type type, const QByteArray &name, const QByteArray &content,
                              const QByteArray &link)
{
    m_bytes += header(type, name, octal(quint64(content.size())), link) + padded(content);
    return *this;
}

TarBuilder &TarBuilder::extended(const QMap<QByteArray, QByteArray> &records, Type type)
{
    QByteArray content;
    for (auto it = records.begin(); it != records.end(); ++it) {
        const QByteArray rest = " " + it.key() + "=" + it.value() + "\n";
        int length = rest.size() + 1;
        while (QByteArray::number(length).size() + rest.size() != length)
            ++length;
        content += QByteArray::number(length) + rest;
    }
    return entry(type, "extended", content);
}

TarBuilder &TarBuilder::raw(const QByteArray &bytes)
{
    m_bytes += bytes;
    return *this;
}

QByteArray TarBuilder::header(Type type, const QByteArray &name, const QByteArray &size,
                              const QByteArray &link)
{
    QByteArray header(512, '\0');
    put(header, 0, name.left(100));
    put(header, 100, type == Folder ? "0000755" : "0000644");
    put(header, 108, "0000000");
    put(header, 116, "0000000");
    put(header, 124, size);
    put(header, 136, "14000000000"); // 2018-10-19
    header[156] = type;
    put(header, 157, link.left(100));
    put(header, 257, QByteArray("ustar\0", 6));
    put(header, 263, "00");
    setChecksum(header);
    return header;
}

QByteArray TarBuilder::octal(quint64 number)
{
    return QByteArray::number(number, 8).rightJustified(11, '0') + '\0';
}

void TarBuilder::setChecksum(QByteArray &header)
{
    put(header, 148, QByteArray(8, ' '));
    unsigned sum = 0;
    for (const char byte : header)
        sum += std::uint8_t(byte);
    put(header, 148, QByteArray::number(sum, 8).rightJustified(6, '0') + '\0' + ' ');
}

QByteArray gzip(const QByteArray &content, const QByteArray &storedName)
{
    // qCompress: a length of four bytes, then a zlib stream, whose frame (two and four bytes) is not wanted.
    // It takes an empty content for nothing at all.
    const QByteArray deflated =
        content.isEmpty() ? QByteArray("\x03\x00", 2) : qCompress(content).mid(6).chopped(4);
    QByteArray bytes = QByteArray::fromHex("1f8b08") + char(storedName.isEmpty() ? 0 : 8) +
                       QByteArray(4, '\0') + QByteArray::fromHex("0003");
    if (!storedName.isEmpty())
        bytes += storedName + '\0';
    return bytes + deflated + littleEndian(crc32(content)) + littleEndian(std::uint32_t(content.size()));
}

QMap<QString, QByteArray> treeOf(const QString &folder)
{
    QMap<QString, QByteArray> tree;
    const QDir root(folder);
    QDirIterator it(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        const QString path = root.relativeFilePath(info.filePath());
        if (info.isSymLink())
            tree[path] = "-> " + QDir(info.path()).relativeFilePath(info.symLinkTarget()).toUtf8();
        else if (info.isDir())
            tree[path + "/"] = QByteArray();
        else
            tree[path] = readFile(info.filePath());
    }
    return tree;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
