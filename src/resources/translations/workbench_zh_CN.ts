<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>BoardView</name>
    <message>
        <source>seen from below</source>
        <translation>从下方看</translation>
    </message>
</context>
<context>
    <name>ComboBoxDelegate</name>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
</context>
<context>
    <name>Export</name>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>The path you selected is not exist</source>
        <translation>所选路径不存在</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>路径</translation>
    </message>
    <message>
        <source>Second Dir:</source>
        <translation>二级目录:</translation>
    </message>
    <message>
        <source>OX</source>
        <translation>OX</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>格式:</translation>
    </message>
    <message>
        <source>Reference</source>
        <translation>基准</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>um</source>
        <translation>um</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>layer</source>
        <translation>层</translation>
    </message>
    <message>
        <source>rotate</source>
        <translation>旋转</translation>
    </message>
    <message>
        <source>Mirror</source>
        <translation>镜像</translation>
    </message>
    <message>
        <source>X Scale</source>
        <translation>X 缩放</translation>
    </message>
    <message>
        <source>Y Scale</source>
        <translation>Y 缩放</translation>
    </message>
    <message>
        <source>Negate</source>
        <translation>反转极性</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>Clear layer(Make the selected item unselected)</source>
        <translation>清除层（取消所有选择）</translation>
    </message>
    <message>
        <source>Select all layer</source>
        <translation>选择所有层</translation>
    </message>
    <message>
        <source>Board Layer</source>
        <translation>板层</translation>
    </message>
    <message>
        <source>Set parameters to selected layer</source>
        <translation>将参数应用到所选层</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>正在处理</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Please wait</source>
        <translation>请稍候</translation>
    </message>
    <message>
        <source>layer :</source>
        <translation>层：</translation>
    </message>
</context>
<context>
    <name>ExportRepeat</name>
    <message>
        <source>The folder %1 is gone.</source>
        <translation>文件夹 %1 已不存在。</translation>
    </message>
    <message>
        <source>The parameters of the layer %1 cannot be chosen.</source>
        <translation>无法选择层 %1 的参数。</translation>
    </message>
    <message>
        <source>The job has no layer %1 any more.</source>
        <translation>料号中已没有层 %1。</translation>
    </message>
    <message>
        <source>That export resized by %1 µm; the settings now ask for %2 µm.</source>
        <translation>那次导出的涨缩量为 %1 µm；当前设置为 %2 µm。</translation>
    </message>
</context>
<context>
    <name>ExportResults</name>
    <message>
        <source>Nothing was exported: no layer was chosen.</source>
        <translation>未导出任何内容：没有选择层。</translation>
    </message>
    <message>
        <source>%1 of %2 layers of %3 were written</source>
        <translation>%3 的 %2 个层中已写出 %1 个</translation>
    </message>
    <message>
        <source>%1 of them empty</source>
        <translation>其中 %1 个为空</translation>
    </message>
    <message>
        <source>%1 failed</source>
        <translation>%1 个失败</translation>
    </message>
    <message>
        <source>%1 cancelled</source>
        <translation>%1 个已取消</translation>
    </message>
    <message>
        <source>%1 not exported, the log says why</source>
        <translation>%1 个未导出，原因见日志</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) are compared with layers of %1.</source>
        <translation>
            <numerusform>正在将 %n 个文件与 %1 的层比较。</numerusform>
        </translation>
    </message>
    <message>
        <source>, </source>
        <comment>between parts of a sentence</comment>
        <translation>，</translation>
    </message>
    <message>
        <source>.</source>
        <comment>at its end</comment>
        <translation>。</translation>
    </message>
</context>
<context>
    <name>ExportVerifier</name>
    <message>
        <source>Verifying: %1 of %2 layers compared.</source>
        <translation>验证中：已比较 %1 / %2 层。</translation>
    </message>
    <message>
        <source>%1 of %2 layers proven within 0.5 µm.</source>
        <translation>%2 个层中有 %1 个在 0.5 µm 内得到证明。</translation>
    </message>
    <message>
        <source>Not proven: %1.</source>
        <translation>未证明：%1。</translation>
    </message>
</context>
<context>
    <name>FigureInspection</name>
    <message>
        <source>Boundary</source>
        <translation>边界</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>路径</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>Flash</source>
        <translation>闪绘</translation>
    </message>
    <message>
        <source>Stroke</source>
        <translation>描线</translation>
    </message>
    <message>
        <source>Region</source>
        <translation>区域</translation>
    </message>
    <message>
        <source>Hole</source>
        <translation>钻孔</translation>
    </message>
    <message>
        <source>Slot</source>
        <translation>槽孔</translation>
    </message>
    <message>
        <source>Routed path</source>
        <translation>铣削路径</translation>
    </message>
    <message>
        <source>circle</source>
        <translation>圆形</translation>
    </message>
    <message>
        <source>rectangle</source>
        <translation>矩形</translation>
    </message>
    <message>
        <source>obround</source>
        <translation>长圆形</translation>
    </message>
    <message>
        <source>polygon</source>
        <translation>多边形</translation>
    </message>
    <message>
        <source>macro %1</source>
        <translation>宏 %1</translation>
    </message>
    <message>
        <source>From %1</source>
        <translation>起点 %1</translation>
    </message>
    <message>
        <source>To %1</source>
        <translation>终点 %1</translation>
    </message>
    <message>
        <source>Length %1</source>
        <translation>长度 %1</translation>
    </message>
    <message>
        <source>Center %1</source>
        <translation>圆心 %1</translation>
    </message>
    <message>
        <source>Radius %1</source>
        <translation>半径 %1</translation>
    </message>
    <message>
        <source>Aperture D%1, %2, %3</source>
        <translation>光圈 D%1，%2，%3</translation>
    </message>
    <message>
        <source>, plated</source>
        <translation>，镀铜</translation>
    </message>
    <message>
        <source>, not plated</source>
        <translation>，非镀铜</translation>
    </message>
    <message>
        <source>Tool T%1, %2</source>
        <translation>刀具 T%1，%2</translation>
    </message>
    <message>
        <source>, clears</source>
        <translation>，清除</translation>
    </message>
    <message>
        <source>At %1</source>
        <translation>位置 %1</translation>
    </message>
    <message>
        <source>%1 contours, %2 edges</source>
        <translation>%1 个轮廓，%2 条边</translation>
    </message>
    <message>
        <source>Width %1</source>
        <translation>宽度 %1</translation>
    </message>
    <message>
        <source>Line %1 of the file</source>
        <translation>文件第 %1 行</translation>
    </message>
    <message>
        <source>Structure %1</source>
        <translation>结构 %1</translation>
    </message>
    <message>
        <source>Layer %1</source>
        <translation>层 %1</translation>
    </message>
    <message>
        <source>%1 of %2 here; click again for the next</source>
        <translation>此处第 %1 / %2 个；再次点击看下一个</translation>
    </message>
</context>
<context>
    <name>FileProcess</name>
    <message>
        <source>import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>ODB++</source>
        <translation>ODB++</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The job with the same name already exists, do you want to overwrite it?</source>
        <translation>同名料号已存在，是否覆盖？</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>The job unzipped failed, please check your files!</source>
        <translation>料号解压失败，请检查文件！</translation>
    </message>
</context>
<context>
    <name>FolderCheck</name>
    <message>
        <source>The path must be absolute, from the drive or the root on.</source>
        <translation>路径必须是绝对路径（从盘符或根目录开始）。</translation>
    </message>
    <message>
        <source>%1 is no folder.</source>
        <translation>%1 不是文件夹。</translation>
    </message>
    <message>
        <source>Nothing can be written in %1: it is read-only.</source>
        <translation>无法写入 %1：该文件夹为只读。</translation>
    </message>
    <message>
        <source>This folder does not exist yet; it will be made.</source>
        <translation>该文件夹尚不存在，将自动创建。</translation>
    </message>
    <message>
        <source>Imported jobs need a folder.</source>
        <translation>导入的料号需要一个文件夹。</translation>
    </message>
    <message>
        <source>The path has a blank. The commands with which an import tidies up take it for the end of the path: an unpacked .tar may stay behind, and an old job stays although it was to be replaced.</source>
        <translation>路径中含有空格。导入后的清理命令会把空格当作路径的结尾：解压出的 .tar 可能残留，应被替换的旧料号也会保留。</translation>
    </message>
    <message>
        <source>The path has letters that this system&apos;s code page lacks. An import cannot tidy up there: an unpacked .tar stays behind, and an old job stays although it was to be replaced.</source>
        <translation>路径中含有系统代码页没有的字符。导入后无法在该处清理：解压出的 .tar 会残留，应被替换的旧料号也会保留。</translation>
    </message>
    <message>
        <source>Files land inside the job&apos;s own folder: whoever replaces or removes the job loses them.</source>
        <translation>文件将写入料号自己的文件夹：替换或删除料号时会一并丢失。</translation>
    </message>
    <message>
        <source>This folder lies in the folder of the jobs: whoever replaces or removes a job of its name loses the files.</source>
        <translation>该文件夹位于料号文件夹内：替换或删除同名料号时文件会丢失。</translation>
    </message>
    <message>
        <source>Exports are not recorded, and the history stays as it is.</source>
        <translation>不记录导出，历史保持不变。</translation>
    </message>
    <message>
        <source>%1 is a folder, not a file.</source>
        <translation>%1 是文件夹，不是文件。</translation>
    </message>
    <message>
        <source>%1 is read-only.</source>
        <translation>%1 为只读。</translation>
    </message>
</context>
<context>
    <name>GraphicView</name>
    <message>
        <source>%1 cannot be shown.
%2</source>
        <translation>无法显示 %1。
%2</translation>
    </message>
    <message>
        <source>%1, as exported: %2</source>
        <translation>%1，按导出：%2</translation>
    </message>
    <message>
        <source>The layer is empty.</source>
        <translation>该层为空。</translation>
    </message>
    <message>
        <source>No layer is shown: press an eye in the list of layers.</source>
        <translation>没有显示任何层：请点击层列表中的眼睛。</translation>
    </message>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 及另外 %n 项</numerusform>
        </translation>
    </message>
    <message>
        <source>Its layers are being read, or draw nothing of it.</source>
        <translation>正在读取所在的层，或这些层没有绘制它。</translation>
    </message>
    <message>
        <source>Place %1 of %2</source>
        <translation>第 %1 处，共 %2 处</translation>
    </message>
    <message numerus="yes">
        <source>The first %n places are marked.</source>
        <translation>
            <numerusform>已标记前 %n 处。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n place(s) marked.</source>
        <translation>
            <numerusform>已标记 %n 处。</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>HistoryPane</name>
    <message>
        <source>rotated by %1°</source>
        <translation>旋转 %1°</translation>
    </message>
    <message>
        <source>mirrored</source>
        <translation>已镜像</translation>
    </message>
    <message>
        <source>scaled by %1 and %2</source>
        <translation>缩放 %1 和 %2</translation>
    </message>
    <message>
        <source>negated</source>
        <translation>极性反转</translation>
    </message>
    <message>
        <source>resized by %1 µm</source>
        <translation>涨缩 %1 µm</translation>
    </message>
    <message>
        <source>database unit %1 µm</source>
        <translation>数据库单位 %1 µm</translation>
    </message>
    <message>
        <source>with profile</source>
        <translation>含外形</translation>
    </message>
    <message>
        <source>When</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>Job</source>
        <translation>料号</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Step</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>格式</translation>
    </message>
    <message>
        <source>Layers</source>
        <translation>层</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>参数</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>Open &amp;folder</source>
        <translation>打开文件夹(&amp;F)</translation>
    </message>
    <message>
        <source>Open the folder of the files in the system&apos;s file manager</source>
        <translation>在系统文件管理器中打开文件所在文件夹</translation>
    </message>
    <message>
        <source>Export &amp;again ...</source>
        <translation>再次导出(&amp;A) ...</translation>
    </message>
    <message>
        <source>Open the Export dialog with the layers and parameters of this export</source>
        <translation>用此次导出的层和参数打开导出对话框</translation>
    </message>
    <message>
        <source>The record of exports cannot be read: %1</source>
        <translation>无法读取导出记录：%1</translation>
    </message>
    <message>
        <source>Exports are not recorded. File &gt; Settings names a file for the record.</source>
        <translation>未记录导出。可在“文件 &gt; 设置”中指定记录文件。</translation>
    </message>
    <message>
        <source>No export has been recorded yet.</source>
        <translation>尚无导出记录。</translation>
    </message>
    <message numerus="yes">
        <source>%n export(s), the newest first.</source>
        <translation>
            <numerusform>%n 次导出，最新的在前。</numerusform>
        </translation>
    </message>
    <message>
        <source>not proven</source>
        <translation>未证明</translation>
    </message>
    <message>
        <source>%1 of %2 not proven</source>
        <translation>%2 中有 %1 个未证明</translation>
    </message>
    <message>
        <source>not verified</source>
        <translation>未验证</translation>
    </message>
    <message>
        <source>proven</source>
        <translation>已证明</translation>
    </message>
    <message>
        <source>%1 of %2 proven</source>
        <translation>%2 中有 %1 个已证明</translation>
    </message>
    <message>
        <source>Verified</source>
        <translation>验证</translation>
    </message>
</context>
<context>
    <name>Inspection</name>
    <message>
        <source>Line</source>
        <translation>线</translation>
    </message>
    <message>
        <source>Arc</source>
        <translation>圆弧</translation>
    </message>
    <message>
        <source>Pad</source>
        <translation>焊盘</translation>
    </message>
    <message>
        <source>Surface</source>
        <translation>面</translation>
    </message>
    <message>
        <source>Symbol %1</source>
        <translation>符号 %1</translation>
    </message>
    <message>
        <source>, the job&apos;s own</source>
        <translation>，料号自带</translation>
    </message>
    <message>
        <source>, clears</source>
        <translation>，清除</translation>
    </message>
    <message>
        <source>From %1</source>
        <translation>起点 %1</translation>
    </message>
    <message>
        <source>To %1</source>
        <translation>终点 %1</translation>
    </message>
    <message>
        <source>Length %1</source>
        <translation>长度 %1</translation>
    </message>
    <message>
        <source>Center %1</source>
        <translation>圆心 %1</translation>
    </message>
    <message>
        <source>Radius %1</source>
        <translation>半径 %1</translation>
    </message>
    <message>
        <source>At %1</source>
        <translation>位置 %1</translation>
    </message>
    <message>
        <source>Turned clockwise by %1°</source>
        <translation>顺时针旋转 %1°</translation>
    </message>
    <message>
        <source>Mirrored</source>
        <translation>已镜像</translation>
    </message>
    <message>
        <source>Resized by %1</source>
        <translation>涨缩 %1</translation>
    </message>
    <message>
        <source>%1 contours, %2 edges</source>
        <translation>%1 个轮廓，%2 条边</translation>
    </message>
    <message>
        <source>Step %1, feature %2</source>
        <translation>Step %1，图形 %2</translation>
    </message>
    <message>
        <source>Layer %1</source>
        <translation>层 %1</translation>
    </message>
    <message>
        <source>%1 of %2 here; click again for the next</source>
        <translation>此处第 %1 / %2 个；再次点击看下一个</translation>
    </message>
    <message>
        <source>Net %1</source>
        <translation>网络 %1</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>Text &quot;%1&quot;</source>
        <translation>文字“%1”</translation>
    </message>
    <message>
        <source>Step %1, feature %2, line %3 of its file</source>
        <translation>Step %1，图形 %2，文件第 %3 行</translation>
    </message>
    <message>
        <source>Component %1</source>
        <translation>元件 %1</translation>
    </message>
    <message>
        <source>Part %1</source>
        <translation>物料 %1</translation>
    </message>
    <message>
        <source>Package %1, %2 × %3</source>
        <translation>封装 %1，%2 × %3</translation>
    </message>
    <message>
        <source>On the bottom side</source>
        <translation>在底面</translation>
    </message>
    <message>
        <source>On the top side</source>
        <translation>在顶面</translation>
    </message>
    <message>
        <source>%1 pins</source>
        <translation>%1 个引脚</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>还有 %1 项</translation>
    </message>
    <message>
        <source>Step %1, line %2 of its file</source>
        <translation>Step %1，文件第 %2 行</translation>
    </message>
</context>
<context>
    <name>JobCommands</name>
    <message>
        <source>New name of the job %1:</source>
        <translation>料号 %1 的新名称：</translation>
    </message>
    <message>
        <source>Rename job</source>
        <translation>重命名料号</translation>
    </message>
    <message>
        <source>The system does not rename the folder. Another program may have files of it open.</source>
        <translation>系统无法重命名该文件夹，可能有其他程序正打开其中的文件。</translation>
    </message>
    <message>
        <source>Remove job</source>
        <translation>删除料号</translation>
    </message>
    <message>
        <source>Move the job %1 to the wastebasket?</source>
        <translation>将料号 %1 移到回收站？</translation>
    </message>
</context>
<context>
    <name>JobListPanel</name>
    <message>
        <source>Filter jobs</source>
        <translation>筛选料号</translation>
    </message>
    <message>
        <source>Job</source>
        <translation>料号</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>日期</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>Written by</source>
        <translation>生成软件</translation>
    </message>
    <message>
        <source>&amp;Open job</source>
        <translation>打开料号(&amp;O)</translation>
    </message>
    <message>
        <source>Re&amp;name job ...</source>
        <translation>重命名料号(&amp;N) ...</translation>
    </message>
    <message>
        <source>Show in the file &amp;manager</source>
        <translation>在文件管理器中显示(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Remove job ...</source>
        <translation>删除料号(&amp;R) ...</translation>
    </message>
    <message>
        <source>Open the job in the frame (Return or double click)</source>
        <translation>打开当前料号（回车或双击）</translation>
    </message>
    <message>
        <source>Give the job&apos;s folder another name</source>
        <translation>更改料号文件夹的名称</translation>
    </message>
    <message>
        <source>Open the job&apos;s folder in the system&apos;s file manager</source>
        <translation>在系统文件管理器中打开料号文件夹</translation>
    </message>
    <message>
        <source>Move the job&apos;s folder to the wastebasket</source>
        <translation>将料号文件夹移到回收站</translation>
    </message>
    <message>
        <source>in %1</source>
        <translation>位于 %1</translation>
    </message>
    <message>
        <source>saved %1</source>
        <translation>保存于 %1</translation>
    </message>
    <message>
        <source>unpacked or changed %1</source>
        <translation>解压或修改于 %1</translation>
    </message>
    <message>
        <source>written by %1</source>
        <translation>由 %1 生成</translation>
    </message>
    <message>
        <source>made from %1</source>
        <translation>来源：%1</translation>
    </message>
    <message>
        <source>There are no jobs yet.

Import reads ODB++ job archives (.tgz).
They can also be dropped on this window.</source>
        <translation>尚无料号。

“导入”可读取 ODB++ 料号压缩包 (.tgz)，
也可将其拖放到此窗口。</translation>
    </message>
    <message>
        <source>No job&apos;s name contains &quot;%1&quot;.</source>
        <translation>没有名称包含“%1”的料号。</translation>
    </message>
</context>
<context>
    <name>Jobs</name>
    <message>
        <source>A job needs a name.</source>
        <translation>料号需要名称。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot stand in a job&apos;s name.</source>
        <translation>料号名称中不能含有“%1”。</translation>
    </message>
    <message>
        <source>A blank in a job&apos;s name would keep imports from replacing the job.</source>
        <translation>名称中的空格会使导入无法替换该料号。</translation>
    </message>
    <message>
        <source>There is a %1 already.</source>
        <translation>%1 已存在。</translation>
    </message>
</context>
<context>
    <name>LanguageMenu</name>
    <message>
        <source>&amp;Language</source>
        <translation>语言(&amp;L)</translation>
    </message>
    <message>
        <source>As the system</source>
        <translation>跟随系统</translation>
    </message>
</context>
<context>
    <name>LayerFile</name>
    <message>
        <source>%1: the number format is not stated; taken as %2 digits before and %3 behind the decimal point of inches</source>
        <translation>%1：未注明数字格式；按英寸、小数点前 %2 位、小数点后 %3 位读取</translation>
    </message>
    <message>
        <source>%1: the number format is not stated; taken as %2 digits before and %3 behind the decimal point of millimetres</source>
        <translation>%1：未注明数字格式；按毫米、小数点前 %2 位、小数点后 %3 位读取</translation>
    </message>
    <message>
        <source>%1: it is not stated which zeros are left out; taken as the leading ones (TZ)</source>
        <translation>%1：未注明省略哪些零；按省略前导零（TZ）读取</translation>
    </message>
</context>
<context>
    <name>LayerPanel</name>
    <message>
        <source>Layer</source>
        <translation>层</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Step</translation>
    </message>
    <message>
        <source>No job is open.</source>
        <translation>没有打开的料号。</translation>
    </message>
    <message>
        <source>The job has no layers.</source>
        <translation>该料号没有层。</translation>
    </message>
    <message>
        <source>Opacity</source>
        <translation>不透明度</translation>
    </message>
    <message>
        <source>&amp;Opacity</source>
        <translation>不透明度(&amp;O)</translation>
    </message>
    <message>
        <source>How dense the chosen layer is drawn</source>
        <translation>所选层的绘制浓度</translation>
    </message>
    <message>
        <source>%1, from %2 to %3</source>
        <translation>%1，从 %2 到 %3</translation>
    </message>
    <message>
        <source>file</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Show or hide this layer (Space)</source>
        <translation>显示或隐藏此层（空格）</translation>
    </message>
    <message>
        <source>shown</source>
        <translation>显示中</translation>
    </message>
    <message>
        <source>hidden</source>
        <translation>已隐藏</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Color of %1</source>
        <translation>%1 的颜色</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>隐藏</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>显示</translation>
    </message>
    <message>
        <source>Show only this one</source>
        <translation>仅显示此层</translation>
    </message>
    <message>
        <source>Color ...</source>
        <translation>颜色 ...</translation>
    </message>
    <message>
        <source>Remove %1 from the list</source>
        <translation>从列表中移除 %1</translation>
    </message>
</context>
<context>
    <name>LayerWords</name>
    <message>
        <source>signal</source>
        <translation>信号</translation>
    </message>
    <message>
        <source>power ground</source>
        <translation>电源地</translation>
    </message>
    <message>
        <source>dielectric</source>
        <translation>介质</translation>
    </message>
    <message>
        <source>mixed</source>
        <translation>混合</translation>
    </message>
    <message>
        <source>solder mask</source>
        <translation>阻焊</translation>
    </message>
    <message>
        <source>solder paste</source>
        <translation>锡膏</translation>
    </message>
    <message>
        <source>silk screen</source>
        <translation>丝印</translation>
    </message>
    <message>
        <source>drill</source>
        <translation>钻孔</translation>
    </message>
    <message>
        <source>rout</source>
        <translation>铣削</translation>
    </message>
    <message>
        <source>document</source>
        <translation>文档</translation>
    </message>
    <message>
        <source>component</source>
        <translation>元件</translation>
    </message>
    <message>
        <source>mask</source>
        <translation>掩膜</translation>
    </message>
    <message>
        <source>conductive paste</source>
        <translation>导电膏</translation>
    </message>
    <message>
        <source>misc</source>
        <translation>其他</translation>
    </message>
    <message>
        <source>negative</source>
        <translation>负片</translation>
    </message>
</context>
<context>
    <name>LogPane</name>
    <message>
        <source>All lines</source>
        <translation>全部</translation>
    </message>
    <message>
        <source>Nothing has been logged yet.</source>
        <translation>尚无日志。</translation>
    </message>
    <message>
        <source>No warnings, no errors.</source>
        <translation>没有警告和错误。</translation>
    </message>
    <message>
        <source>From</source>
        <translation>级别</translation>
    </message>
    <message>
        <source>debug</source>
        <translation>调试</translation>
    </message>
    <message>
        <source>information</source>
        <translation>信息</translation>
    </message>
    <message>
        <source>warnings</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>errors</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>Show lines of this weight and more</source>
        <translation>显示此级别及以上的行</translation>
    </message>
    <message>
        <source>Only lines with ...</source>
        <translation>仅含……的行</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>Forget all lines and problems</source>
        <translation>清除所有日志和问题</translation>
    </message>
    <message>
        <source>Problems</source>
        <translation>问题</translation>
    </message>
    <message>
        <source>Problems (%1)</source>
        <translation>问题 (%1)</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>CAM Workbench</source>
        <translation>CAM 工作台</translation>
    </message>
    <message>
        <source>Open a job first, then export its layers.</source>
        <translation>请先打开料号，再导出其层。</translation>
    </message>
    <message>
        <source>Jobs</source>
        <translation>料号</translation>
    </message>
    <message>
        <source>Layers</source>
        <translation>层</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>日志</translation>
    </message>
    <message>
        <source>Export results</source>
        <translation>导出结果</translation>
    </message>
    <message>
        <source>History</source>
        <translation>历史</translation>
    </message>
    <message>
        <source>No job is open.</source>
        <translation>没有打开的料号。</translation>
    </message>
    <message>
        <source>Plug-ins</source>
        <translation>插件</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Refresh jobs</source>
        <translation>刷新料号(&amp;R)</translation>
    </message>
    <message>
        <source>Show job &amp;folder</source>
        <translation>显示料号文件夹(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Settings ...</source>
        <translation>设置(&amp;S) ...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>关于(&amp;A)</translation>
    </message>
    <message>
        <source>Write layers of the open job as GDSII or Gerber files</source>
        <translation>将打开料号的层写为 GDSII 或 Gerber 文件</translation>
    </message>
    <message>
        <source>No plug-in is loaded; the log says why.</source>
        <translation>未加载插件，原因见日志。</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>就绪</translation>
    </message>
    <message>
        <source>The job&apos;s layers cannot be read:
%1</source>
        <translation>无法读取料号的层：
%1</translation>
    </message>
    <message>
        <source>Choose a layer.</source>
        <translation>请选择一个层。</translation>
    </message>
    <message>
        <source>The job %1 is in the wastebasket.</source>
        <translation>料号 %1 已在回收站中。</translation>
    </message>
    <message>
        <source>%1 holds no ODB++ job.</source>
        <translation>%1 中没有 ODB++ 料号。</translation>
    </message>
    <message>
        <source>Imported %1 as the job %2.</source>
        <translation>已将 %1 导入为料号 %2。</translation>
    </message>
    <message numerus="yes">
        <source>Exporting %n layer(s) to %1</source>
        <translation>
            <numerusform>正在将 %n 个层导出到 %1</numerusform>
        </translation>
    </message>
    <message>
        <source>There is no job %1 any more.</source>
        <translation>料号 %1 已不存在。</translation>
    </message>
    <message>
        <source>The job %1 has no step %2 any more.</source>
        <translation>料号 %1 中已没有 step %2。</translation>
    </message>
    <message>
        <source>%1 - CAM Workbench</source>
        <translation>%1 - CAM 工作台</translation>
    </message>
    <message>
        <source>No job open</source>
        <translation>未打开料号</translation>
    </message>
    <message>
        <source>%1  |  step %2  |  %3 layers</source>
        <translation>%1  |  step %2  |  %3 层</translation>
    </message>
    <message>
        <source>Close &quot;%1&quot; first.</source>
        <translation>请先关闭“%1”。</translation>
    </message>
    <message>
        <source>The settings cannot be written to %1.</source>
        <translation>无法将设置写入 %1。</translation>
    </message>
    <message>
        <source>The new settings hold from now on.</source>
        <translation>新设置立即生效。</translation>
    </message>
    <message>
        <source>About CAM Workbench</source>
        <translation>关于 CAM 工作台</translation>
    </message>
    <message>
        <source>&lt;b&gt;CAM Workbench %1&lt;/b&gt;&lt;p&gt;A small desktop host for CAM plug-ins.&lt;/p&gt;&lt;p&gt;Plug-ins: %2&lt;/p&gt;&lt;p&gt;Qt %3&lt;/p&gt;</source>
        <translation>&lt;b&gt;CAM 工作台 %1&lt;/b&gt;&lt;p&gt;一个小型的 CAM 插件桌面宿主。&lt;/p&gt;&lt;p&gt;插件：%2&lt;/p&gt;&lt;p&gt;Qt %3&lt;/p&gt;</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>&amp;User guide</source>
        <translation>用户手册(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Keyboard</source>
        <translation>快捷键(&amp;K)</translation>
    </message>
    <message>
        <source>Take in ODB++ job archives, GDSII, Gerber and drill files</source>
        <translation>导入 ODB++ 料号压缩包、GDSII、Gerber 和钻孔文件</translation>
    </message>
    <message>
        <source>No layer of the job is named like %1.</source>
        <translation>料号中没有与 %1 同名的层。</translation>
    </message>
    <message>
        <source>List the jobs anew, and read the open one again</source>
        <translation>重新列出料号，并重新读取打开的料号</translation>
    </message>
</context>
<context>
    <name>Manual</name>
    <message>
        <source>User guide</source>
        <translation>用户手册</translation>
    </message>
</context>
<context>
    <name>MessageBar</name>
    <message>
        <source>Details</source>
        <translation>详情</translation>
    </message>
    <message>
        <source>Open folder</source>
        <translation>打开文件夹</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>PictureFile</name>
    <message>
        <source>%1     Scale %2</source>
        <translation>%1     比例 %2</translation>
    </message>
    <message>
        <source>%1: expected a name that ends in .png, .pdf or .svg</source>
        <translation>%1：名称应以 .png、.pdf 或 .svg 结尾</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 无法写入：%2</translation>
    </message>
</context>
<context>
    <name>PrintDialog</name>
    <message>
        <source>As large as the &amp;page allows</source>
        <translation>页面允许的最大大小(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Scale</source>
        <translation>比例(&amp;S)</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>打印</translation>
    </message>
    <message>
        <source>How large things come out: 1 is their true size, 2 is twice as large</source>
        <translation>打印大小：1 为真实大小，2 为两倍大小</translation>
    </message>
    <message>
        <source>&amp;Title</source>
        <translation>标题(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Print ...</source>
        <translation>打印(&amp;P)...</translation>
    </message>
    <message>
        <source>P&amp;age ...</source>
        <translation>页面(&amp;A)...</translation>
    </message>
    <message>
        <source>%1 of the board are printed as %2, scale %3.</source>
        <translation>电路板的 %1 将打印为 %2，比例 %3。</translation>
    </message>
    <message>
        <source>There is no room for all of what is seen.</source>
        <translation>页面放不下所见的全部内容。</translation>
    </message>
    <message>
        <source>The system has no printer.</source>
        <translation>系统没有打印机。</translation>
    </message>
</context>
<context>
    <name>Printing</name>
    <message>
        <source>Scale %1</source>
        <translation>比例 %1</translation>
    </message>
    <message>
        <source>seen from below</source>
        <translation>从下方看</translation>
    </message>
    <message>
        <source>Nothing can be printed on %1.</source>
        <translation>无法打印到 %1。</translation>
    </message>
    <message>
        <source>The page was not printed.</source>
        <translation>页面未打印。</translation>
    </message>
</context>
<context>
    <name>RecentFiles</name>
    <message>
        <source>Recent &amp;layer files</source>
        <translation>最近的层文件(&amp;L)</translation>
    </message>
    <message>
        <source>No layer file has been opened yet</source>
        <translation>尚未打开任何层文件</translation>
    </message>
</context>
<context>
    <name>RecentJobs</name>
    <message>
        <source>Recent &amp;jobs</source>
        <translation>最近的料号(&amp;J)</translation>
    </message>
    <message>
        <source>No job has been opened yet</source>
        <translation>尚未打开过料号</translation>
    </message>
</context>
<context>
    <name>ResultsPane</name>
    <message>
        <source>waiting</source>
        <translation>等待中</translation>
    </message>
    <message>
        <source>being written</source>
        <translation>正在写出</translation>
    </message>
    <message>
        <source>written</source>
        <translation>已写出</translation>
    </message>
    <message>
        <source>written, the layer is empty</source>
        <translation>已写出，该层为空</translation>
    </message>
    <message>
        <source>failed: %1</source>
        <translation>失败：%1</translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation>已取消</translation>
    </message>
    <message>
        <source>not exported: the log says why</source>
        <translation>未导出：原因见日志</translation>
    </message>
    <message>
        <source>Nothing has been exported yet.</source>
        <translation>尚未导出。</translation>
    </message>
    <message>
        <source>Layer</source>
        <translation>层</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>结果</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>cannot say: %1</source>
        <translation>无法判断：%1</translation>
    </message>
    <message>
        <source>proven</source>
        <translation>已证明</translation>
    </message>
    <message numerus="yes">
        <source>not proven, %n place(s) differ</source>
        <translation>
            <numerusform>未证明，有 %n 处不同</numerusform>
        </translation>
    </message>
    <message>
        <source>Verification</source>
        <translation>验证</translation>
    </message>
    <message>
        <source>compared with its layer</source>
        <translation>已与其层比较</translation>
    </message>
    <message>
        <source>%1 µm missing at %2, %3 mm, %4 mm²</source>
        <translation>在 %2, %3 mm 处缺少 %1 µm，%4 mm²</translation>
    </message>
    <message>
        <source>%1 µm too much at %2, %3 mm, %4 mm²</source>
        <translation>在 %2, %3 mm 处多出 %1 µm，%4 mm²</translation>
    </message>
    <message numerus="yes">
        <source>and %n more place(s)</source>
        <translation>
            <numerusform>还有 %n 处</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RotateComboxDelegete</name>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>90</source>
        <translation>90</translation>
    </message>
    <message>
        <source>180</source>
        <translation>180</translation>
    </message>
    <message>
        <source>270</source>
        <translation>270</translation>
    </message>
</context>
<context>
    <name>SceneStore</name>
    <message>
        <source>Reading %1 ... %2 %</source>
        <translation>正在读取 %1 ... %2 %</translation>
    </message>
</context>
<context>
    <name>Search</name>
    <message>
        <source>Search</source>
        <translation>搜索</translation>
    </message>
    <message>
        <source>F&amp;ind ...</source>
        <translation>查找(&amp;I) ...</translation>
    </message>
    <message>
        <source>Search the step for components, nets, symbols and attributes</source>
        <translation>在 Step 中搜索元件、网络、符号和属性</translation>
    </message>
    <message>
        <source>&amp;Next place</source>
        <translation>下一处(&amp;N)</translation>
    </message>
    <message>
        <source>Go to the next place of what was found</source>
        <translation>转到搜索结果的下一处</translation>
    </message>
    <message>
        <source>&amp;Previous place</source>
        <translation>上一处(&amp;P)</translation>
    </message>
    <message>
        <source>Go to the place of what was found before this one</source>
        <translation>转到搜索结果的上一处</translation>
    </message>
</context>
<context>
    <name>SearchIndex</name>
    <message>
        <source>bottom side</source>
        <translation>底面</translation>
    </message>
    <message>
        <source>top side</source>
        <translation>顶面</translation>
    </message>
    <message>
        <source>components</source>
        <translation>元件</translation>
    </message>
</context>
<context>
    <name>SearchPanel</name>
    <message>
        <source>Component, part, package, net, symbol, attribute</source>
        <translation>元件、物料、封装、网络、符号、属性</translation>
    </message>
    <message>
        <source>* and ? stand for any letters and for any letter</source>
        <translation>* 代表任意多个字符，? 代表任意一个字符</translation>
    </message>
    <message>
        <source>Found</source>
        <translation>结果</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Components</source>
        <translation>元件</translation>
    </message>
    <message>
        <source>Nets</source>
        <translation>网络</translation>
    </message>
    <message>
        <source>Symbols</source>
        <translation>符号</translation>
    </message>
    <message>
        <source>Attributes</source>
        <translation>属性</translation>
    </message>
    <message>
        <source>%1 more: type more of the name</source>
        <translation>还有 %1 项:请输入更多字符</translation>
    </message>
    <message>
        <source>Reading the step ... %1 %</source>
        <translation>正在读取 Step ... %1 %</translation>
    </message>
    <message>
        <source>No job is open.</source>
        <translation>没有打开的料号。</translation>
    </message>
    <message>
        <source>Nothing of that name is in the step.</source>
        <translation>该 Step 中没有这个名称。</translation>
    </message>
    <message>
        <source>Return shows it, Return again its next place. Esc closes.</source>
        <translation>回车键显示，再按显示下一处。Esc 关闭。</translation>
    </message>
</context>
<context>
    <name>SettingsDialog</name>
    <message>
        <source>Exports include the board&apos;s &amp;profile</source>
        <translation>导出包含板外形(&amp;P)</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>&amp;Jobs</source>
        <translation>料号(&amp;J)</translation>
    </message>
    <message>
        <source>The folder that imported jobs are unpacked to</source>
        <translation>导入的料号解压到的文件夹</translation>
    </message>
    <message>
        <source>&amp;Exports</source>
        <translation>导出(&amp;E)</translation>
    </message>
    <message>
        <source>the job&apos;s own folder</source>
        <translation>料号自己的文件夹</translation>
    </message>
    <message>
        <source>The folder that the Export dialog proposes</source>
        <translation>导出对话框建议的文件夹</translation>
    </message>
    <message>
        <source>&amp;Folder within it</source>
        <translation>其中的子文件夹(&amp;F)</translation>
    </message>
    <message>
        <source>By how much every feature grows, half of it on each side</source>
        <translation>每个图形的增大量，两侧各一半</translation>
    </message>
    <message>
        <source>&amp;Resize by</source>
        <translation>涨缩量(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Database unit</source>
        <translation>数据库单位(&amp;D)</translation>
    </message>
    <message>
        <source>Re&amp;cord exports in</source>
        <translation>导出记录文件(&amp;C)</translation>
    </message>
    <message>
        <source>exports are not recorded</source>
        <translation>不记录导出</translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation>选择文件夹</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>选择文件</translation>
    </message>
</context>
<context>
    <name>ShortcutsDialog</name>
    <message>
        <source>Keyboard</source>
        <translation>快捷键</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>命令</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>按键</translation>
    </message>
    <message>
        <source>What it does</source>
        <translation>说明</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>面板</translation>
    </message>
    <message>
        <source>Next field or pane</source>
        <translation>下一个字段或面板</translation>
    </message>
    <message>
        <source>Menus</source>
        <translation>菜单</translation>
    </message>
    <message>
        <source>Open the job in the frame</source>
        <translation>打开当前料号</translation>
    </message>
    <message>
        <source>Menu of the job or layer in the frame</source>
        <translation>当前料号或层的菜单</translation>
    </message>
</context>
<context>
    <name>Trash</name>
    <message>
        <source>The system does not move %1 to the wastebasket.</source>
        <translation>系统无法将 %1 移到回收站。</translation>
    </message>
    <message>
        <source>This program was built with a Qt that knows no wastebasket; remove %1 in the file manager.</source>
        <translation>此程序所用的 Qt 不支持回收站；请在文件管理器中删除 %1。</translation>
    </message>
</context>
<context>
    <name>ViewCommands</name>
    <message>
        <source>grown by %1 µm</source>
        <translation>放大 %1 µm</translation>
    </message>
    <message>
        <source>shrunk by %1 µm</source>
        <translation>缩小 %1 µm</translation>
    </message>
    <message>
        <source>negated</source>
        <translation>极性反转</translation>
    </message>
    <message>
        <source>scaled by %1 and %2</source>
        <translation>缩放 %1 和 %2</translation>
    </message>
    <message>
        <source>mirrored</source>
        <translation>已镜像</translation>
    </message>
    <message>
        <source>rotated by %1°</source>
        <translation>旋转 %1°</translation>
    </message>
    <message>
        <source>&amp;Open layer files ...</source>
        <translation>打开层文件(&amp;O) ...</translation>
    </message>
    <message>
        <source>%1: nothing is drawn in it</source>
        <translation>%1：其中没有图形</translation>
    </message>
    <message>
        <source>&amp;Fit board</source>
        <translation>显示整板(&amp;F)</translation>
    </message>
    <message>
        <source>Show all of the board</source>
        <translation>显示整个板子</translation>
    </message>
    <message>
        <source>Fit &amp;everything</source>
        <translation>显示全部(&amp;E)</translation>
    </message>
    <message>
        <source>Show everything that is drawn</source>
        <translation>显示所有图形</translation>
    </message>
    <message>
        <source>Seen from &amp;below</source>
        <translation>从下方看(&amp;B)</translation>
    </message>
    <message>
        <source>Look at the board from its bottom side</source>
        <translation>从底面查看板子</translation>
    </message>
    <message>
        <source>&amp;As exported</source>
        <translation>按导出显示(&amp;A)</translation>
    </message>
    <message>
        <source>Next &amp;unit</source>
        <translation>下一个单位(&amp;U)</translation>
    </message>
    <message>
        <source>Millimetres, inches, mils</source>
        <translation>毫米、英寸、mil</translation>
    </message>
    <message>
        <source>All &amp;copper</source>
        <translation>所有铜层(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Top side</source>
        <translation>顶面(&amp;T)</translation>
    </message>
    <message>
        <source>B&amp;ottom side, from below</source>
        <translation>底面（从下方看）(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Drill over copper</source>
        <translation>钻孔叠加铜层(&amp;D)</translation>
    </message>
    <message>
        <source>Show these layers and no others</source>
        <translation>仅显示这些层</translation>
    </message>
    <message>
        <source>Open layer files</source>
        <translation>打开层文件</translation>
    </message>
    <message>
        <source>Layer files (%1)</source>
        <translation>层文件 (%1)</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>所有文件</translation>
    </message>
    <message>
        <source>Save &amp;picture ...</source>
        <translation>保存图片(&amp;P) ...</translation>
    </message>
    <message>
        <source>Save what is seen as PNG, PDF or SVG</source>
        <translation>将所见保存为 PNG、PDF 或 SVG</translation>
    </message>
    <message>
        <source>&amp;Measure</source>
        <translation>测量(&amp;M)</translation>
    </message>
    <message>
        <source>Press two places; centers, corners, ends and edges catch the mouse</source>
        <translation>点击两处；中心、角点、端点和边会自动捕捉</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>保存图片</translation>
    </message>
    <message>
        <source>Pictures (%1)</source>
        <translation>图片 (%1)</translation>
    </message>
    <message>
        <source>Show GDSII, Gerber and drill files over the job</source>
        <translation>在料号上方显示 GDSII、Gerber 和钻孔文件</translation>
    </message>
    <message>
        <source>P&amp;rint ...</source>
        <translation>打印(&amp;R)...</translation>
    </message>
    <message>
        <source>Print what is seen, in its true size or as large as the page allows</source>
        <translation>打印所见内容：按真实大小或页面允许的最大大小</translation>
    </message>
    <message>
        <source>&amp;Compare files with layers ...</source>
        <translation>将文件与层比较(&amp;C)...</translation>
    </message>
    <message>
        <source>&amp;Differences</source>
        <translation>差异(&amp;D)</translation>
    </message>
    <message>
        <source>Show where files that have been compared differ from their layers</source>
        <translation>显示已比较的文件与其层的差异之处</translation>
    </message>
    <message>
        <source>Compare files with layers</source>
        <translation>将文件与层比较</translation>
    </message>
    <message>
        <source>Compare GDSII and Gerber files with their layers, and mark where they differ</source>
        <translation>将 GDSII 和 Gerber 文件与对应的层比较，并标出不同之处</translation>
    </message>
    <message>
        <source>Show layers as exports change them, or as they are in the job</source>
        <translation>按导出时的改动显示层，或按料号原样显示</translation>
    </message>
</context>
<context>
    <name>hostsettings</name>
    <message>
        <source>%1 is no folder that can be written to.</source>
        <translation>%1 不是可写的文件夹。</translation>
    </message>
    <message>
        <source>Features keep their size.</source>
        <translation>图形保持原大小。</translation>
    </message>
    <message>
        <source>Exports grow features by %1 µm, %2 µm on each side.</source>
        <translation>导出将图形放大 %1 µm，每侧 %2 µm。</translation>
    </message>
    <message>
        <source>Exports shrink features by %1 µm, %2 µm on each side.</source>
        <translation>导出将图形缩小 %1 µm，每侧 %2 µm。</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Settings of this run will be lost: %1</source>
        <translation>本次运行的设置将丢失：%1</translation>
    </message>
    <message>
        <source>The settings of %1 have been taken over. From now on they are in %2.</source>
        <translation>已接管 %1 的设置。今后设置位于 %2。</translation>
    </message>
</context>
</TS>
