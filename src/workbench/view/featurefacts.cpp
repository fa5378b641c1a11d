#include "workbench/view/featurefacts.h"

#include "cam/base/error.h"
#include "drawing/scene.h"
#include "platform/thread.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <algorithm>
#include <chrono>

#include <glog/logging.h>

namespace {

constexpr int mostAttributes = 12;

QString text(const char *source)
{
    return QCoreApplication::translate("Inspection", source);
}

QStringList read(StepSource &source, const std::string &step, const std::string &layer,
                 cam::FeatureSource wanted, const std::function<void()> &check)
{
    QStringList lines;
    std::shared_ptr<const StepContents> contents;
    try {
        contents = source.read(check);
    } catch (const cam::Error &failure) {
        LOG(WARNING) << "components, nets and attributes: " << failure.what();
        return lines;
    }
    if (const cam::StepParts *parts = contents->partsOf(step)) {
        if (const cam::Net *net = parts->eda.netOf(layer, wanted.record))
            lines << text(QT_TRANSLATE_NOOP("Inspection", "Net %1"))
                         .arg(net->name == "$NONE$" ? text(QT_TRANSLATE_NOOP("Inspection", "none"))
                                                    : fileText(net->name));
    }
    const auto visit = [&](const cam::ListedFeature &feature, const cam::AttributeTable &table) {
        if (feature.source.record < wanted.record)
            return true;
        if (!feature.text.empty())
            lines << text(QT_TRANSLATE_NOOP("Inspection", "Text \"%1\"")).arg(fileText(feature.text));
        const std::vector<cam::Attribute> attributes = table.read(feature.attributeField, contents->types);
        for (std::size_t i = 0; i < attributes.size() && i < mostAttributes; ++i)
            lines << attributeText(attributes[i]);
        if (attributes.size() > mostAttributes)
            lines << QString("...");
        return false;
    };
    try {
        cam::listLayerFeatures(source.job(), step, layer, visit, check);
    } catch (const cam::Error &failure) {
        LOG(WARNING) << "attributes: " << failure.what();
    }
    return lines;
}

} // namespace

QString fileText(std::string_view text)
{
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (std::all_of(text.begin(), text.end(), isAscii)) // nearly always, and quickly told
        return QString::fromLatin1(text.data(), int(text.size()));
    QTextCodec::ConverterState state;
    const QString unicode =
        QTextCodec::codecForName("UTF-8")->toUnicode(text.data(), int(text.size()), &state);
    return state.invalidChars == 0 ? unicode : QString::fromLatin1(text.data(), int(text.size()));
}

QString attributeText(const cam::Attribute &attribute)
{
    return attribute.value.empty() ? fileText(attribute.name)
                                   : fileText(attribute.name) + " = " + fileText(attribute.value);
}

FeatureFacts::~FeatureFacts()
{
    forget();
}

void FeatureFacts::forget()
{
    m_lines.clear();
    for (Task &task : m_tasks)
        task.cancel = true;
}

void FeatureFacts::ask(const std::shared_ptr<StepSource> &source, const std::string &step,
                       const std::string &layer, cam::FeatureSource feature)
{
    forget();
    m_tasks.emplace_back();
    Task *const task = &m_tasks.back();
    task->result = std::async(std::launch::async, [=] {
        const platform::BackgroundWork background;
        try {
            return read(*source, step, layer, feature, [task] {
                if (task->cancel)
                    throw drawing::Cancelled();
            });
        } catch (const drawing::Cancelled &) { // nobody asks for the result
        }
        return QStringList();
    });
}

bool FeatureFacts::look()
{
    bool hasCome = false;
    for (auto at = m_tasks.begin(); at != m_tasks.end();) {
        if (at->result.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
            ++at;
            continue;
        }
        const QStringList lines = at->result.get();
        if (!at->cancel) {
            m_lines = lines;
            hasCome = !lines.isEmpty();
        }
        at = m_tasks.erase(at);
    }
    return hasCome;
}
