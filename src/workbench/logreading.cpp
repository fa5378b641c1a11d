#include "workbench/logreading.h"

#include <algorithm>

namespace {

struct Reading
{
    const char *chinese; // UTF-8
    const char *english;
};

// All that the plug-in logs in Chinese; longer texts before those that they contain.
const Reading readings[] = {
    {"料号路径以获取，即将开始导入", "the job's path is known, the import is about to begin"},
    {"已获取导出层列表。料号：", "the list of layers to export is known. Job: "},
    {"不存在，将自动创建！", " does not exist and will be made!"},
    {"解压文件异常！ 异常位置：", "unpacking failed! At: "},
    {"获取配置层信息", "asking for the layers"},
    {"准备料号信息", "preparing the job"},
    {"；STEP：", "; step: "},
    {"路径：", "path: "},
    {"Export：", "Export: "},
    {"Import：", "Import: "},
};

bool isChinese(QChar c)
{
    return c.unicode() >= 0x4e00 && c.unicode() <= 0x9fff;
}

} // namespace

QString englishReading(const QString &text)
{
    if (std::none_of(text.begin(), text.end(), isChinese))
        return {};
    QString english = text;
    for (const Reading &reading : readings)
        english.replace(QString::fromUtf8(reading.chinese), QString::fromUtf8(reading.english));
    return english == text ? QString() : english;
}
