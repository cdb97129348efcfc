#pragma once

#include "matching/TDFindResultItem.h"
#include "replace/TDReplacement.h"

#include <QObject>

#include <functional>
#include <memory>

class QWidget;

namespace tidemark {

/// Asks where listed matches are to be written and in which format, and writes them, with a bar that can be
/// stopped. A file that was there stays as it is unless everything was written. Main thread only.
class ExportPanel : public QObject
{
    Q_OBJECT

public:
    /// What is to be written, asked for once the file is chosen.
    using Nodes = std::function<FindResultItems()>;
    using Replacement = std::function<std::unique_ptr<TDReplacement>()>;

    /// The window must outlive the object.
    ExportPanel(QWidget *window, Nodes nodes, Replacement replacement, QObject *parent);

    void open();
    /// What is exported are the results that a filter shows.
    void setFiltered(bool isFiltered) { _isFiltered = isFiltered; }
    /// False, after a message, when not everything was written.
    bool exportTo(const QString &path);

private:
    QWidget *_window;
    Nodes _nodes;
    Replacement _replacement;
    bool _isFiltered = false;
};

} // namespace tidemark
