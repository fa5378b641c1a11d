// Builds small tar and gzip files for the tests, odd and broken ones included: what is written into a header
// is exactly what the test says.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QMap>
#include <QString>

// A tar file, entry by entry.
class TarBuilder
{
public:
    enum Type : char {
        File = '0',
        HardLink = '1',
        SymbolicLink = '2',
        CharacterDevice = '3',
        BlockDevice = '4',
        Folder = '5',
        Pipe = '6',
        Extended = 'x',
        GlobalExtended = 'g',
        LongName = 'L',
        LongLink = 'K',
        VolumeLabel = 'V',
    };

    TarBuilder &file(const QByteArray &name, const QByteArray &content);
    TarBuilder &folder(const QByteArray &name);
    TarBuilder &symbolicLink(const QByteArray &name, const QByteArray &target);
    TarBuilder &hardLink(const QByteArray &name, const QByteArray &target);
    TarBuilder &entry(Type type, const QByteArray &name, const QByteArray &content = {},
                      const QByteArray &link = {});
    // A record of an extended header for the entry that follows: {"path", "..."} and so on.
    TarBuilder &extended(const QMap<QByteArray, QByteArray> &records, Type type = Extended);
    TarBuilder &raw(const QByteArray &bytes);

    // The entries with the two zero records at the end.
    QByteArray bytes() const { return m_bytes + QByteArray(1024, '\0'); }
    QByteArray bytesWithoutEnd() const { return m_bytes; }

    // A header of 512 bytes whose checksum is right.
    static QByteArray header(Type type, const QByteArray &name, const QByteArray &size,
                             const QByteArray &link = {});
    static QByteArray octal(quint64 number); // 12 bytes
    static void setChecksum(QByteArray &header);

private:
    QByteArray m_bytes;
};

// A gzip file of one member. An empty name is not stored.
QByteArray gzip(const QByteArray &content, const QByteArray &storedName = {});

// Relative path -> content of every file below `folder`; a folder's path ends in "/", its content is empty; a
// symbolic link has "-> " and its target for a content.
QMap<QString, QByteArray> treeOf(const QString &folder);

bool writeFile(const QString &path, const QByteArray &bytes);
QByteArray readFile(const QString &path);
