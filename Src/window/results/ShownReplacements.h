#pragma once

#include <QObject>

class QAction;
class QCheckBox;

namespace tidemark {

class MyDocument;
class OutlineView;
class ReplaceControl;

/// Shows in the results what each match would become, as the texts and options are now: computed by what
/// writes it, for the rows that show. Main thread only.
class ShownReplacements : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object.
    ShownReplacements(MyDocument &document, const ReplaceControl &replace, OutlineView &view, QCheckBox &box,
                      QAction &action, QObject *parent);

    static bool areShown(const QString &replaceText);

private:
    void _update();

    MyDocument &_document;
    const ReplaceControl &_replace;
    OutlineView &_view;
    QCheckBox &_box;
    QAction &_action;
};

} // namespace tidemark
