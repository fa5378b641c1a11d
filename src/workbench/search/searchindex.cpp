#include "workbench/search/searchindex.h"

#include "cam/base/error.h"
#include "cam/base/paths.h"
#include "workbench/view/componentscene.h"
#include "workbench/view/featurefacts.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

#include <glog/logging.h>

#include <algorithm>
#include <map>
#include <unordered_map>

namespace {

constexpr std::size_t mostAttributeValues = 50000; // different ones, of all layers

QString text(const char *source)
{
    return QCoreApplication::translate("SearchIndex", source);
}

// "12 x TOP, 3 x BOTTOM"
QString layersText(const std::map<QString, std::size_t> &counts)
{
    constexpr int mostLayers = 4;
    QStringList parts;
    for (const auto &[layer, count] : counts) {
        if (parts.size() == mostLayers) {
            parts << QString("...");
            break;
        }
        parts << QString("%1 \u00d7 %2").arg(count).arg(layer);
    }
    return parts.join(", ");
}

// An entry while its features are collected.
struct Collected
{
    SearchTarget target;
    std::map<QString, std::size_t> layers; // how many on each
};

} // namespace

// Puts an index together.
class IndexReading
{
public:
    IndexReading(StepSource &source, const std::function<void(double)> &report)
        : m_job(source.job()), m_report(report), m_contents(source.read([this] { m_report(0.0); }))
    {
    }

    std::shared_ptr<const SearchIndex> read();

private:
    using Table = std::unordered_map<std::string, Collected>;
    struct LayerName
    {
        QString shown;
        std::string lower;
    };

    void readLayers();
    void readLayer(const std::string &step, const cam::MatrixLayer &layer);
    void readNets();
    void readComponents();
    static void add(Collected &found, const std::string &step, const LayerName &layer, std::uint32_t record);
    Collected *attribute(const cam::Attribute &attribute);
    void finish();

    cam::Job m_job;
    const std::function<void(double)> &m_report;
    double m_share = 0.0;
    std::shared_ptr<const StepContents> m_contents;
    std::shared_ptr<SearchIndex> m_index = std::make_shared<SearchIndex>();
    Table m_symbols, m_nets, m_attributes;
};

std::shared_ptr<const SearchIndex> IndexReading::read()
{
    readNets();
    readComponents();
    readLayers();
    finish();
    return m_index;
}

void IndexReading::add(Collected &found, const std::string &step, const LayerName &layer,
                       std::uint32_t record)
{
    ++found.target.count;
    ++found.layers[layer.shown];
    std::vector<SearchTarget::Features> &features = found.target.features;
    if (features.empty() || features.back().step != step || features.back().layer != layer.lower)
        features.push_back({step, layer.lower, {}});
    if (features.back().records.size() < SearchTarget::mostRecords)
        features.back().records.push_back(record);
}

void IndexReading::readLayers()
{
    const std::vector<cam::StepImage> &steps = m_contents->steps.steps;
    const std::vector<cam::MatrixLayer> &layers = m_job.matrix().layers;
    double done = 0.0;
    for (const cam::StepImage &step : steps) {
        for (const cam::MatrixLayer &layer : layers) {
            m_share = done++ / double(steps.size() * layers.size());
            try {
                readLayer(step.name, layer);
            } catch (const cam::Error &failure) {
                LOG(WARNING) << "not searched: " << failure.what();
            }
        }
    }
}

void IndexReading::readLayer(const std::string &step, const cam::MatrixLayer &layer)
{
    const LayerName name{fileText(layer.name), cam::lowerCase(layer.name)};
    // Most features are like the one before.
    std::string lastSymbol, lastField;
    Collected *symbol = nullptr;
    std::vector<Collected *> attributes;
    const auto visit = [&](const cam::ListedFeature &feature, const cam::AttributeTable &table) {
        if (!feature.symbol.empty()) {
            if (!symbol || feature.symbol != lastSymbol) {
                lastSymbol = feature.symbol;
                symbol = &m_symbols[cam::lowerCase(lastSymbol)];
            }
            add(*symbol, step, name, feature.source.record);
        }
        const std::string_view field = feature.attributeField.substr(0, feature.attributeField.find(';'));
        if (field != lastField) {
            lastField = field;
            attributes.clear();
            for (const cam::Attribute &attribute : table.read(field, m_contents->types)) {
                if (Collected *found = this->attribute(attribute))
                    attributes.push_back(found);
            }
        }
        for (Collected *found : attributes)
            add(*found, step, name, feature.source.record);
        return true;
    };
    cam::listLayerFeatures(m_job, step, layer.name, visit, [this] { m_report(m_share); });
}

// Null when there are too many different ones.
Collected *IndexReading::attribute(const cam::Attribute &attribute)
{
    const std::string name = attributeText(attribute).toStdString();
    const auto known = m_attributes.find(name);
    if (known != m_attributes.end())
        return &known->second;
    if (m_attributes.size() >= mostAttributeValues) {
        m_index->m_hasMoreAttributes = true;
        return nullptr;
    }
    return &m_attributes[name];
}

void IndexReading::readNets()
{
    for (std::size_t i = 0; i < m_contents->parts.size(); ++i) {
        const cam::EdaData &eda = m_contents->parts[i].eda;
        const std::string &step = m_contents->steps.steps[i].name;
        std::vector<LayerName> layers;
        for (const std::string &layer : eda.layers) {
            const cam::MatrixLayer *row = m_job.matrix().find(layer);
            layers.push_back({fileText(row ? row->name : layer), layer});
        }
        for (const cam::NetFeature &feature : eda.features)
            add(m_nets[eda.nets[feature.net].name], step, layers[feature.layer], feature.feature);
        for (const cam::Net &net : eda.nets) {
            for (const cam::Attribute &attribute : net.attributes) {
                Collected *found = this->attribute(attribute);
                const SearchTarget &target = m_nets[net.name].target;
                if (!found || target.features.empty())
                    continue;
                found->target.count += target.count;
                found->target.features.insert(found->target.features.end(), target.features.begin(),
                                              target.features.end());
                for (const auto &[layer, count] : m_nets[net.name].layers)
                    found->layers[layer] += count;
            }
        }
    }
}

void IndexReading::readComponents()
{
    for (std::size_t i = 0; i < m_contents->parts.size(); ++i) {
        const cam::StepParts &parts = m_contents->parts[i];
        const std::string &step = m_contents->steps.steps[i].name;
        for (const cam::ComponentSide &side : parts.sides) {
            for (std::size_t index = 0; index < side.components.size(); ++index) {
                const cam::Component &component = side.components[index];
                auto target = std::make_shared<SearchTarget>();
                target->parts.push_back({step, side.layer, std::uint32_t(index)});
                target->count = 1;
                const cam::Package *package = packageOf(component, parts.eda);
                QStringList detail{fileText(component.part)};
                if (package)
                    detail << fileText(package->name);
                detail << (side.isBottom ? text(QT_TRANSLATE_NOOP("SearchIndex", "bottom side"))
                                         : text(QT_TRANSLATE_NOOP("SearchIndex", "top side")));
                m_index->m_entries.push_back(
                    {SearchEntry::Component, fileText(component.name), detail.join(", "), target});
                for (const auto *list : {&component.attributes, &component.properties}) {
                    for (const cam::Attribute &attribute : *list) {
                        Collected *found = this->attribute(attribute);
                        if (!found)
                            continue;
                        ++found->target.count;
                        ++found->layers[text(QT_TRANSLATE_NOOP("SearchIndex", "components"))];
                        if (found->target.parts.size() < SearchTarget::mostRecords)
                            found->target.parts.push_back(target->parts.front());
                    }
                }
            }
        }
    }
}

void IndexReading::finish()
{
    const auto takeAll = [this](Table &table, SearchEntry::Kind kind) {
        for (auto &[name, found] : table) {
            if (found.target.count == 0)
                continue;
            m_index->m_entries.push_back({kind, fileText(name), layersText(found.layers),
                                          std::make_shared<const SearchTarget>(std::move(found.target))});
        }
    };
    takeAll(m_nets, SearchEntry::Net);
    takeAll(m_symbols, SearchEntry::Symbol);
    takeAll(m_attributes, SearchEntry::Attribute);
    m_report(1.0);
    std::sort(m_index->m_entries.begin(), m_index->m_entries.end(),
              [](const SearchEntry &a, const SearchEntry &b) {
                  return a.kind != b.kind ? a.kind < b.kind : comesBefore(a.name, b.name);
              });
}

bool comesBefore(const QString &a, const QString &b)
{
    int i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        if (a[i].isDigit() && b[j].isDigit()) {
            int endA = i, endB = j;
            while (endA < a.size() && a[endA].isDigit())
                ++endA;
            while (endB < b.size() && b[endB].isDigit())
                ++endB;
            while (i + 1 < endA && a[i] == '0')
                ++i;
            while (j + 1 < endB && b[j] == '0')
                ++j;
            if (endA - i != endB - j)
                return endA - i < endB - j;
            const int order = QStringRef(&a, i, endA - i).compare(QStringRef(&b, j, endB - j));
            if (order != 0)
                return order < 0;
            i = endA;
            j = endB;
            continue;
        }
        const QChar x = a[i].toCaseFolded(), y = b[j].toCaseFolded();
        if (x != y)
            return x < y;
        ++i;
        ++j;
    }
    if (i < a.size() || j < b.size())
        return j < b.size();
    return a < b;
}

std::shared_ptr<const SearchIndex> SearchIndex::read(StepSource &source,
                                                     const std::function<void(double)> &report)
{
    return IndexReading(source, report).read();
}

std::array<SearchIndex::Found, SearchEntry::kindCount> SearchIndex::find(const QString &wanted,
                                                                         std::size_t most) const
{
    const QString text = wanted.trimmed();
    const bool hasWildcards = text.contains('*') || text.contains('?');
    QRegularExpression pattern;
    if (hasWildcards) {
        QString expression = QRegularExpression::escape(text);
        expression.replace("\\*", ".*").replace("\\?", ".");
        pattern =
            QRegularExpression("\\A(?:" + expression + ")\\z", QRegularExpression::CaseInsensitiveOption);
    }
    // How well an entry fits: 0 is called so, 1 begins so, 2 has it somewhere, 3 beside its name.
    const auto rankOf = [&](const SearchEntry &entry) {
        if (hasWildcards)
            return pattern.match(entry.name).hasMatch() ? 0 : 4;
        const int at = entry.name.indexOf(text, 0, Qt::CaseInsensitive);
        if (at == 0)
            return entry.name.size() == text.size() ? 0 : 1;
        if (at > 0)
            return 2;
        const bool isSearchedBeside = entry.kind == SearchEntry::Component;
        return isSearchedBeside && entry.detail.contains(text, Qt::CaseInsensitive) ? 3 : 4;
    };
    std::array<std::array<std::vector<const SearchEntry *>, 4>, SearchEntry::kindCount> ranked;
    for (const SearchEntry &entry : m_entries) {
        const int rank = rankOf(entry);
        if (rank < 4)
            ranked[std::size_t(entry.kind)][std::size_t(rank)].push_back(&entry);
    }
    std::array<Found, SearchEntry::kindCount> found;
    for (std::size_t kind = 0; kind < found.size(); ++kind) {
        for (const auto &entries : ranked[kind]) {
            found[kind].count += entries.size();
            for (const SearchEntry *entry : entries) {
                if (found[kind].entries.size() < most)
                    found[kind].entries.push_back(entry);
            }
        }
    }
    return found;
}
