#pragma once

#include "matching/FindOptions.h"

#include <QObject>

#include <memory>
#include <optional>

class QAction;
class QCheckBox;

namespace tidemark {

class MyDocument;
class OutlineView;
class ReplacementPreview;

/// Shows in the results what each match would become, as the texts and options are now: computed by what
/// writes it, for the rows that show. Main thread only.
class ShownReplacements : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object.
    ShownReplacements(MyDocument &document, OutlineView &view, QCheckBox &box, QAction &action,
                      QObject *parent);

    /// Null while they aren't shown.
    const std::shared_ptr<const ReplacementPreview> &preview() const { return _preview; }

Q_SIGNALS:
    void changed();

private:
    bool _areShown() const;
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
    std::shared_ptr<const ReplacementPreview> _preview; ///< of that
};

} // namespace tidemark
