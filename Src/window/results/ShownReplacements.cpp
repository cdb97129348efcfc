#include "window/results/ShownReplacements.h"

#include "foundation/UserDefaults.h"
#include "session/MyDocument.h"
#include "session/ReplacementPreview.h"
#include "window/results/OutlineView.h"

#include <QAction>
#include <QCheckBox>

#include <utility>

namespace tidemark {

ShownReplacements::ShownReplacements(MyDocument &document, OutlineView &view, QCheckBox &box, QAction &action,
                                     QObject *parent)
    : QObject(parent), _document(document), _view(view), _box(box), _action(action)
{
    const auto store = [](bool shown) {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_SHOW_REPLACEMENTS, shown);
    };
    connect(&_box, &QCheckBox::clicked, this, store);
    connect(&_action, &QAction::triggered, this, store);
    // Options change what a match becomes as well.
    connect(&UserDefaults::standard(), &UserDefaults::valueChanged, this, &ShownReplacements::_update);
    connect(&_document, &MyDocument::findTextChanged, this, &ShownReplacements::_update);
    connect(&_document, &MyDocument::replaceTextChanged, this, &ShownReplacements::_update);
    _update();
}

bool ShownReplacements::_areShown() const
{
    const QVariant stored = UserDefaults::standard().objectForKey(TD_USER_DEFAULTS_NAME_SHOW_REPLACEMENTS);
    return stored.isValid() ? stored.toBool() : !_document.replaceText().isEmpty();
}

void ShownReplacements::_update()
{
    const bool areShown = _areShown();
    _box.setChecked(areShown);
    _action.setChecked(areShown);
    std::optional<Subject> subject;
    if (areShown)
        subject = Subject{_document.findText(), _document.replaceText(), FindOptions::withUserDefaults()};
    // Most settings have nothing to do with it, and laying out anew costs what is laid out.
    if (std::exchange(_shown, subject) == subject)
        return;
    _preview = subject ? std::make_shared<const ReplacementPreview>(subject->findText, subject->replaceText,
                                                                    subject->options)
                       : nullptr;
    _view.setPreview(_preview);
    Q_EMIT changed();
}

} // namespace tidemark
