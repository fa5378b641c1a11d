// A translation into no language: every text that the code under test has translated comes back in angle
// brackets, "OK" as "<OK>". Qt's own texts stay as they are.
#pragma once

#include <QCoreApplication>
#include <QStringList>
#include <QTranslator>

#include <functional>

class EveryText : public QTranslator
{
public:
    EveryText() { QCoreApplication::installTranslator(this); }
    ~EveryText() override { QCoreApplication::removeTranslator(this); }

    // Called with each text that is asked for.
    std::function<void(const QString &)> onText;

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char * /*disambiguation*/,
                      int /*number*/) const override
    {
        const QString text = QString::fromUtf8(source);
        if (context[0] == 'Q' || text.isEmpty())
            return {};
        if (onText)
            onText(text);
        return "<" + text + ">";
    }
};
