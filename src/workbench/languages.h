// The languages of the program: its own texts, the plug-in's, which a host translates, and Qt's.
#pragma once

#include <QObject>
#include <QString>
#include <QVector>

#include <memory>

class RecordingTranslator;

class Languages : public QObject
{
    Q_OBJECT

public:
    // One lives at a time, as long as there are windows.
    explicit Languages(QObject *parent = nullptr);
    ~Languages() override;

    struct Language
    {
        QString name;  // short, such as "de"
        QString title; // in the language itself
    };
    // English, in which the texts are written, comes first.
    static QVector<Language> all();
    // The one for whoever has not chosen: the first of the system's languages that there is, else English.
    static QString ofSystem();

    // From now on texts are in the language `name`; an unknown or empty one stands for the system's. What
    // windows show as it was translated changes with it: the texts and tips of their widgets, actions and
    // headers. For what is put together from several texts every widget gets the event LanguageChange.
    // Numbers and dates are written as in that language, or as the system has them when it has the same one.
    void choose(const QString &name);
    QString current() const { return m_current; }

private:
    std::unique_ptr<RecordingTranslator> m_translator;
    QString m_current = "en";
};
