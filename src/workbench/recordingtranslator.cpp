#include "workbench/recordingtranslator.h"

#include <algorithm>

void RecordingTranslator::setFiles(std::vector<std::unique_ptr<QTranslator>> files)
{
    const QMutexLocker lock(&m_mutex);
    m_files = std::move(files);
    m_sources.clear();
}

RecordingTranslator::Source RecordingTranslator::sourceOf(const QString &shown,
                                                          const QVector<QByteArray> &contexts) const
{
    const QMutexLocker lock(&m_mutex);
    const QVector<Source> sources = m_sources.value(shown);
    for (const QByteArray &context : contexts) {
        for (const Source &source : sources) {
            if (source.context == context)
                return source;
        }
    }
    return sources.value(0);
}

QString RecordingTranslator::translate(const char *context, const char *source, const char *disambiguation,
                                       int number) const
{
    if (!source || !*source)
        return {};
    const QMutexLocker lock(&m_mutex);
    QString text;
    for (const std::unique_ptr<QTranslator> &file : m_files) {
        text = file->translate(context, source, disambiguation, number);
        if (!text.isEmpty())
            break;
    }
    if (number < 0) { // the others have their number in them
        QVector<Source> &sources = m_sources[text.isEmpty() ? QString::fromUtf8(source) : text];
        const Source asked{context, source, disambiguation};
        if (std::none_of(sources.cbegin(), sources.cend(), [&asked](const Source &known) {
                return known.context == asked.context && known.text == asked.text &&
                       known.disambiguation == asked.disambiguation;
            }))
            sources << asked;
    }
    return text;
}
