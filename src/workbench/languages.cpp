#include "workbench/languages.h"

#include "workbench/recordingtranslator.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QLocale>
#include <QMetaProperty>
#include <QTabWidget>

#include <glog/logging.h>

#include <algorithm>
#include <functional>
#include <vector>

// The texts lie in a static library, from which only what is called gets into a program.
static void initTranslations()
{
    Q_INIT_RESOURCE(translations);
}

namespace {

// A place where a window shows a translated text as it is, and how it is put there.
struct Place
{
    RecordingTranslator::Source source;
    std::function<void(const QString &)> put;
};

// Finds these places.
class Places
{
public:
    explicit Places(const RecordingTranslator &translator) : m_translator(translator)
    {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (!window->parentWidget())
                addTree(window);
        }
    }
    const std::vector<Place> &all() const { return m_places; }

private:
    void addTree(QObject *object)
    {
        addObject(object);
        for (QObject *child : object->children()) {
            if (child->isWidgetType() || qobject_cast<QAction *>(child))
                addTree(child);
        }
    }

    void addObject(QObject *object)
    {
        m_contexts.clear();
        for (const QObject *owner = object; owner; owner = owner->parent())
            m_contexts << owner->metaObject()->className();
        const bool isEdited = qobject_cast<QLineEdit *>(object); // its text is the user's
        for (const char *name :
             {"text", "title", "windowTitle", "toolTip", "statusTip", "whatsThis", "placeholderText"}) {
            const int index = object->metaObject()->indexOfProperty(name);
            if (index < 0 || (isEdited && qstrcmp(name, "text") == 0))
                continue;
            const QMetaProperty property = object->metaObject()->property(index);
            if (property.isWritable() && property.type() == QVariant::String)
                add(property.read(object).toString(),
                    [object, property](const QString &text) { property.write(object, text); });
        }
        if (auto *box = qobject_cast<QComboBox *>(object)) {
            for (int i = 0; i < box->count(); ++i)
                add(box->itemText(i), [box, i](const QString &text) { box->setItemText(i, text); });
        }
        if (auto *tabs = qobject_cast<QTabWidget *>(object)) {
            for (int i = 0; i < tabs->count(); ++i)
                add(tabs->tabText(i), [tabs, i](const QString &text) { tabs->setTabText(i, text); });
        }
        if (auto *header = qobject_cast<QHeaderView *>(object))
            addHeader(header);
    }

    void addHeader(QHeaderView *header)
    {
        QAbstractItemModel *model = header->model();
        const Qt::Orientation orientation = header->orientation();
        for (int section = 0; model && section < header->count(); ++section)
            add(model->headerData(section, orientation).toString(),
                [model, section, orientation](const QString &text) {
                    model->setHeaderData(section, orientation, text);
                });
    }

    void add(const QString &shown, std::function<void(const QString &)> put)
    {
        if (shown.isEmpty())
            return;
        const RecordingTranslator::Source source = m_translator.sourceOf(shown, m_contexts);
        if (!source.text.isEmpty())
            m_places.push_back({source, std::move(put)});
    }

    const RecordingTranslator &m_translator;
    QVector<QByteArray> m_contexts; // of the object that is looked at: its class, its parents' classes
    std::vector<Place> m_places;
};

} // namespace

Languages::Languages(QObject *parent) : QObject(parent), m_translator(new RecordingTranslator)
{
    initTranslations();
    QCoreApplication::installTranslator(m_translator.get());
}

Languages::~Languages()
{
    QCoreApplication::removeTranslator(m_translator.get());
}

QVector<Languages::Language> Languages::all()
{
    return {{"en", "English"}, {"de", "Deutsch"}, {"zh_CN", QString::fromUtf8("简体中文")}};
}

QString Languages::ofSystem()
{
    for (const QString &wanted : QLocale::system().uiLanguages()) {
        for (const Language &language : all()) {
            if (QLocale(language.name).language() == QLocale(wanted).language())
                return language.name;
        }
    }
    return "en";
}

void Languages::choose(const QString &name)
{
    const QVector<Language> known = all();
    const bool isKnown = std::any_of(known.cbegin(), known.cend(),
                                     [&name](const Language &language) { return language.name == name; });
    m_current = isKnown ? name : ofSystem();
    const QLocale locale(m_current);
    QLocale::setDefault(QLocale::system().language() == locale.language() ? QLocale::system() : locale);

    const Places places(*m_translator);
    std::vector<std::unique_ptr<QTranslator>> files;
    for (const char *file : {"workbench_", "qtbase_"}) {
        auto translator = std::make_unique<QTranslator>();
        if (translator->load(":/translations/" + QString(file) + m_current + ".qm"))
            files.push_back(std::move(translator));
        else if (m_current != "en")
            LOG(WARNING) << "this program was built without the texts " << file << m_current.toStdString();
    }
    m_translator->setFiles(std::move(files));
    for (const Place &place : places.all()) {
        const RecordingTranslator::Source &source = place.source;
        place.put(QCoreApplication::translate(
            source.context.constData(), source.text.constData(),
            source.disambiguation.isEmpty() ? nullptr : source.disambiguation.constData()));
    }
    for (QWidget *widget : QApplication::topLevelWidgets())
        widget->setLocale(QLocale());
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &change);
}
