// A translator that remembers what it was asked for, so that texts on the screen can be said in another
// language: Qt's widgets keep the translated text, not where it came from.
#pragma once

#include <QHash>
#include <QMutex>
#include <QTranslator>

#include <memory>
#include <vector>

class RecordingTranslator : public QTranslator
{
public:
    // Where a text came from.
    struct Source
    {
        QByteArray context, text, disambiguation;
    };

    // Replaces the files that are asked: the first one that has a text gives it.
    void setFiles(std::vector<std::unique_ptr<QTranslator>> files);

    // What was asked for when `shown` was the answer; with an empty text when nothing was. Of several answers
    // that are the same the one of the first of `contexts` counts, else any.
    Source sourceOf(const QString &shown, const QVector<QByteArray> &contexts) const;

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *disambiguation,
                      int number) const override;

private:
    std::vector<std::unique_ptr<QTranslator>> m_files;
    mutable QMutex m_mutex; // texts are asked for by every thread
    mutable QHash<QString, QVector<Source>> m_sources;
};
