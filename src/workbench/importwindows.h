// The windows that imports leave behind: plug-ins close their file dialogs and progress windows, and leave
// them to the widget of the host that is their parent.
#pragma once

class QWidget;

// Has those that are closed deleted as soon as events are handled again. For when an import has returned.
void deleteClosedImportWindows(const QWidget &parent);
