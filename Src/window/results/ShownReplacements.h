#pragma once

#include "matching/FindOptions.h"

#include <QObject>

#include <optional>

class QAction;
class QCheckBox;

namespace tidemark {

class MyDocument;
class OutlineView;

/// Shows in the results what each match would become, as the texts and options are now: computed by what
/// writes it, for the rows that show. Main thread only.
class ShownReplacements : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object.
    ShownReplacements(MyDocument &document, OutlineView &view, QCheckBox &box, QAction &action,
                      QObject *parent);

    static bool areShown(const QString &replaceText);

private:
    /// All that what is shown depends on, but for the lines.
    struct Subject
    {
        QString findText;
        QString replaceText;
        FindOptions options;
        friend bool operator==(const Subject &, const Subject &) = default;
    };
    void _update();

    MyDocument &_document;
    OutlineView &_view;
    QCheckBox &_box;
    QAction &_action;
    std::optional<Subject> _shown;
};

} // namespace tidemark
