// The records that host and plug-in hand to each other by address or by value: the order, the places and the
// sizes of their fields. A host is compiled apart from the plug-in, so that a field that moved would be read
// as another one. Most of this file is checked by the compiler.

#include "export/exportconfig.h"
#include "import/unzipprogress.h"
#include "plugin/fileprocess.h"
#include "plugin/interface/exportjobinfo.h"
#include "plugin/interface/fileprointerface.h"
#include "run/orvexapi.h"
#include "run/progress.h"

#include <QtTest>

#include <cstddef>
#include <type_traits>

namespace {

const size_t Pointer = sizeof(void *);
const size_t Text = sizeof(std::string); // the standard library's own

// `offset` moved up to where a field of type Field can begin.
template <typename Field>
constexpr size_t aligned(size_t offset)
{
    return (offset + alignof(Field) - 1) / alignof(Field) * alignof(Field);
}

static_assert(sizeof(QString) == Pointer && sizeof(QMap<QString, QVariant>) == Pointer,
              "Qt's shared types are one pointer");

// The message record.
static_assert(std::is_same<decltype(PluginMetaData::fromPlugin), QString>::value, "");
static_assert(std::is_same<decltype(PluginMetaData::toPlugin), QString>::value, "");
static_assert(std::is_same<decltype(PluginMetaData::msgType), qint32>::value, "");
static_assert(std::is_same<decltype(PluginMetaData::params), QMap<QString, QVariant>>::value, "");
static_assert(std::is_same<decltype(PluginMetaData::payload), void *>::value, "");
static_assert(offsetof(PluginMetaData, fromPlugin) == 0, "");
static_assert(offsetof(PluginMetaData, toPlugin) == Pointer, "");
static_assert(offsetof(PluginMetaData, msgType) == 2 * Pointer, "");
static_assert(offsetof(PluginMetaData, params) == 3 * Pointer, "");
static_assert(offsetof(PluginMetaData, payload) == 4 * Pointer, "");
static_assert(sizeof(PluginMetaData) == 5 * Pointer, "");

// The job context.
static_assert(std::is_same<decltype(ExportJobInfo::list), std::vector<std::string>>::value, "");
static_assert(offsetof(ExportJobInfo, stepName) == 0, "");
static_assert(offsetof(ExportJobInfo, folderPath) == Pointer, "");
static_assert(offsetof(ExportJobInfo, jobName) == 2 * Pointer, "");
static_assert(offsetof(ExportJobInfo, list) == 3 * Pointer, "");
static_assert(sizeof(ExportJobInfo) == 3 * Pointer + sizeof(std::vector<std::string>), "");

// A record of the layer matrix: nine texts and a number.
using ORVEX::API::layer_info;
static_assert(offsetof(layer_info, context) == 0, "");
static_assert(offsetof(layer_info, type) == Text, "");
static_assert(offsetof(layer_info, name) == 2 * Text, "");
static_assert(offsetof(layer_info, old_name) == 3 * Text, "");
static_assert(offsetof(layer_info, polarity) == 4 * Text, "");
static_assert(offsetof(layer_info, start_name) == 5 * Text, "");
static_assert(offsetof(layer_info, end_name) == 6 * Text, "");
static_assert(offsetof(layer_info, add_type) == 7 * Text, "");
static_assert(offsetof(layer_info, color) == 8 * Text, "");
static_assert(offsetof(layer_info, row) == 9 * Text, "");
static_assert(sizeof(layer_info::row) == 4 && std::is_signed<decltype(layer_info::row)>::value, "");
static_assert(sizeof(layer_info) == aligned<std::string>(9 * Text + 4), "");

static_assert(sizeof(ORVEX::API::export_type) == 4, "passed as a 32-bit integer");
static_assert(int(ORVEX::API::export_type::gerber) == 0 && int(ORVEX::API::export_type::gds) == 1, "");

// The progress record: two texts, the task, the value, the mutex, the cancel flag.
using Record = ORVEX::COMMON::progress_value<void>;
static_assert(std::is_same<decltype(Record::name), std::string>::value, "");
static_assert(std::is_same<decltype(Record::message), std::string>::value, "");
static_assert(std::is_same<decltype(Record::task), std::future<void>>::value, "");
static_assert(std::is_same<decltype(Record::value), double>::value, "");
static_assert(std::is_same<decltype(Record::mutex), std::mutex>::value, "");
static_assert(std::is_same<decltype(Record::cancel), bool>::value, "");
const size_t TaskAt = aligned<std::future<void>>(2 * Text);
const size_t ValueAt = aligned<double>(TaskAt + sizeof(std::future<void>));
const size_t MutexAt = aligned<std::mutex>(ValueAt + sizeof(double));
const size_t CancelAt = MutexAt + sizeof(std::mutex);
static_assert(offsetof(Record, name) == 0, "");
static_assert(offsetof(Record, message) == Text, "");
static_assert(offsetof(Record, task) == TaskAt, "");
static_assert(offsetof(Record, value) == ValueAt, "");
static_assert(offsetof(Record, mutex) == MutexAt, "");
static_assert(offsetof(Record, cancel) == CancelAt, "");
static_assert(sizeof(Record) == aligned<double>(CancelAt + 1), "");
// The jobs are handed out as this record.
static_assert(sizeof(Progress) == sizeof(Record) && !std::is_polymorphic<Progress>::value, "");
static_assert(sizeof(UnzipProgress) == sizeof(Record) && !std::is_polymorphic<UnzipProgress>::value, "");

// The settings, as each dialog gets them.
static_assert(offsetof(ExportConfig, jobPath) == 0, "");
static_assert(offsetof(ExportConfig, outputPath) == Pointer, "");
static_assert(offsetof(ExportConfig, outputPathSecond) == 2 * Pointer, "");
static_assert(offsetof(ExportConfig, outputFormat) == 3 * Pointer, "");
static_assert(offsetof(ExportConfig, resizeUnit) == 4 * Pointer, "");
static_assert(offsetof(ExportConfig, resizeValue) == 5 * Pointer, "");
static_assert(offsetof(ExportConfig, dbu) == 5 * Pointer + 8, "");
static_assert(offsetof(ExportConfig, profileDot) == 5 * Pointer + 16, "");
static_assert(offsetof(ExportConfig, mirror) == 5 * Pointer + 17, "");

// The interfaces are their virtual tables and nothing else.
static_assert(sizeof(PluginInterface) == Pointer && sizeof(FileProInterface) == Pointer, "");
static_assert(std::has_virtual_destructor<PluginInterface>::value, "");
static_assert(std::is_base_of<PluginInterface, FileProInterface>::value, "");

} // namespace

class tst_RecordLayout : public QObject
{
    Q_OBJECT

private slots:
    void theObjectBeginsWithItsQObject();
    void copiedLayersHaveAllTenFields();
    void aNewMessageIsEmpty();
};

void tst_RecordLayout::theObjectBeginsWithItsQObject()
{
    FileProcess plugin;
    const void *whole = &plugin;
    QCOMPARE(static_cast<const void *>(static_cast<QObject *>(&plugin)), whole);
    QCOMPARE(static_cast<const char *>(static_cast<void *>(static_cast<FileProInterface *>(&plugin))) -
                 static_cast<const char *>(whole),
             std::ptrdiff_t(sizeof(QObject)));
}

void tst_RecordLayout::copiedLayersHaveAllTenFields()
{
    const layer_info layer{"1", "2", "3", "4", "5", "6", "7", "8", "9", 10};
    const layer_info copy = layer;
    const std::vector<std::string> texts{copy.context,  copy.type,     copy.name,
                                         copy.old_name, copy.polarity, copy.start_name,
                                         copy.end_name, copy.add_type, copy.color};
    QCOMPARE(texts, std::vector<std::string>({"1", "2", "3", "4", "5", "6", "7", "8", "9"}));
    QCOMPARE(copy.row, 10);
}

void tst_RecordLayout::aNewMessageIsEmpty()
{
    const PluginMetaData data;
    QVERIFY(data.fromPlugin.isEmpty() && data.toPlugin.isEmpty() && data.params.isEmpty() && !data.payload);
}

QTEST_MAIN(tst_RecordLayout)
#include "tst_recordlayout.moc"
