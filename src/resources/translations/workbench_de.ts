<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>ComboBoxDelegate</name>
    <message>
        <source>Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Export</name>
    <message>
        <source>Export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The path you selected is not exist</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Path</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Second Dir:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OX</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reference</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>um</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>rotate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mirror</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X Scale</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y Scale</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Negate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear layer(Make the selected item unselected)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select all layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Board Layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set parameters to selected layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Processing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please wait</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>layer :</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ExportRepeat</name>
    <message>
        <source>The folder %1 is gone.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The parameters of the layer %1 cannot be chosen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The job has no layer %1 any more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>That export resized by %1 µm; the settings now ask for %2 µm.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ExportResults</name>
    <message>
        <source>Nothing was exported: no layer was chosen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 layers of %3 were written</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of them empty</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cancelled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 not exported, the log says why</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FileProcess</name>
    <message>
        <source>import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ODB++</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The job with the same name already exists, do you want to overwrite it?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The job unzipped failed, please check your files!</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FolderCheck</name>
    <message>
        <source>The path must be absolute, from the drive or the root on.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is no folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing can be written in %1: it is read-only.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This folder does not exist yet; it will be made.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Imported jobs need a folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The path has a blank. The commands with which an import tidies up take it for the end of the path: an unpacked .tar may stay behind, and an old job stays although it was to be replaced.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The path has letters that this system&apos;s code page lacks. An import cannot tidy up there: an unpacked .tar stays behind, and an old job stays although it was to be replaced.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files land inside the job&apos;s own folder: whoever replaces or removes the job loses them.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This folder lies in the folder of the jobs: whoever replaces or removes a job of its name loses the files.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exports are not recorded, and the history stays as it is.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is a folder, not a file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is read-only.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GraphicView</name>
    <message>
        <source>%1 cannot be shown.
%2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, as exported: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HistoryPane</name>
    <message>
        <source>rotated by %1°</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>mirrored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>scaled by %1 and %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>negated</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>resized by %1 µm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>database unit %1 µm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>with profile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Job</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Step</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open &amp;folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the folder of the files in the system&apos;s file manager</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export &amp;again ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the Export dialog with the layers and parameters of this export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The record of exports cannot be read: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exports are not recorded. File &gt; Settings names a file for the record.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No export has been recorded yet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n export(s), the newest first.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
</context>
<context>
    <name>JobCommands</name>
    <message>
        <source>New name of the job %1:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename job</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The system does not rename the folder. Another program may have files of it open.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove job</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move the job %1 to the wastebasket?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>JobListPanel</name>
    <message>
        <source>Filter jobs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Job</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Written by</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Open job</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Re&amp;name job ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show in the file &amp;manager</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Remove job ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the job in the frame (Return or double click)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Give the job&apos;s folder another name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the job&apos;s folder in the system&apos;s file manager</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move the job&apos;s folder to the wastebasket</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>in %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>saved %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unpacked or changed %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>written by %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>made from %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There are no jobs yet.

Import reads ODB++ job archives (.tgz).
They can also be dropped on this window.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No job&apos;s name contains &quot;%1&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Jobs</name>
    <message>
        <source>A job needs a name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot stand in a job&apos;s name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A blank in a job&apos;s name would keep imports from replacing the job.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is a %1 already.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LanguageMenu</name>
    <message>
        <source>&amp;Language</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>As the system</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LayerPanel</name>
    <message>
        <source>Layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Context</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Polarity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Step</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No job is open.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The job has no layers.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>from %1 to %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LayerView</name>
    <message>
        <source>The layer is empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading %1 ... %2 %</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 mm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 um</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>x %1  y %2 mm</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LogPane</name>
    <message>
        <source>All lines</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing has been logged yet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No warnings, no errors.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>From</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>debug</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>warnings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>errors</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show lines of this weight and more</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Only lines with ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Forget all lines and problems</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Problems</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Problems (%1)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>grown by %1 µm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>shrunk by %1 µm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>negated</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>scaled by %1 and %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>mirrored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>rotated by %1°</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CAM Workbench</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a job first, then export its layers.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Jobs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Log</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export results</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>History</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No job is open.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plug-ins</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Refresh jobs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show job &amp;folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Settings ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Fit layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>As &amp;exported</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show layers as the settings and the open Export dialog change them, or as they are in the job</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take in ODB++ job archives, GDSII and Gerber files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write layers of the open job as GDSII or Gerber files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No plug-in is loaded; the log says why.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ready</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The job&apos;s layers cannot be read:
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a layer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The job %1 is in the wastebasket.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 holds no ODB++ job.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Imported %1 as the job %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is shown; it belongs to no job.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 belongs to no job; the view shows GDSII files only.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>Exporting %n layer(s) to %1</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>There is no job %1 any more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The job %1 has no step %2 any more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 - CAM Workbench</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No job open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1  |  step %2  |  %3 layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close &quot;%1&quot; first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The settings cannot be written to %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The new settings hold from now on.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About CAM Workbench</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;b&gt;CAM Workbench %1&lt;/b&gt;&lt;p&gt;A small desktop host for CAM plug-ins.&lt;/p&gt;&lt;p&gt;Plug-ins: %2&lt;/p&gt;&lt;p&gt;Qt %3&lt;/p&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>none</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MessageBar</name>
    <message>
        <source>Details</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RecentJobs</name>
    <message>
        <source>Recent &amp;jobs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No job has been opened yet</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ResultsPane</name>
    <message>
        <source>waiting</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>being written</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>written</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>written, the layer is empty</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>failed: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not exported: the log says why</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing has been exported yet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RotateComboxDelegete</name>
    <message>
        <source>0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>90</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>180</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>270</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SettingsDialog</name>
    <message>
        <source>Exports include the board&apos;s &amp;profile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Jobs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder that imported jobs are unpacked to</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Exports</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the job&apos;s own folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder that the Export dialog proposes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Folder within it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>By how much every feature grows, half of it on each side</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Resize by</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> um</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Database unit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Re&amp;cord exports in</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>exports are not recorded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Trash</name>
    <message>
        <source>The system does not move %1 to the wastebasket.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This program was built with a Qt that knows no wastebasket; remove %1 in the file manager.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>hostsettings</name>
    <message>
        <source>%1 is no folder that can be written to.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Features keep their size.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exports grow features by %1 µm, %2 µm on each side.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exports shrink features by %1 µm, %2 µm on each side.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Settings of this run will be lost: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The settings of %1 have been taken over. From now on they are in %2.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
