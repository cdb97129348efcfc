#pragma once

#include <QtGlobal>

namespace tidemark {

/// What a search window asks of the application it belongs to. Main thread only.
class ApplicationDelegate
{
public:
    virtual ~ApplicationDelegate() = default;

    /// The number of windows, of the whole application, in which a replace is running.
    virtual quint64 countBusyWindows() const = 0;
    virtual void setCountBusyWindows(quint64 count) = 0;

    /// Where the kinds of files that are searched in folders are edited.
    virtual void showPreferencePanelAndSelectFileTypesTab() = 0;
};

} // namespace tidemark
