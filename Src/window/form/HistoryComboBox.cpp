#include "window/form/HistoryComboBox.h"

#include "foundation/UserDefaults.h"

#include <QAbstractItemView>
#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

#include <algorithm>
#include <limits>

namespace tidemark {

namespace {

constexpr int MINIMUM_LENGTH_IN_CHARACTERS = 20;
constexpr int LONGEST_SHOWN = 500;

/// Shows each text of the list in one line, however many it has.
class HistoryItemDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale &) const override
    {
        QString shown = value.toString().left(LONGEST_SHOWN);
        for (QChar &unit : shown) {
            if (unit == u'\n' || unit == u'\r' || unit == QChar::LineSeparator ||
                unit == QChar::ParagraphSeparator)
                unit = u'↵';
        }
        return shown;
    }
};

/// Where a text is edited these mean what they always mean.
bool isEditingKey(const QKeyEvent &key)
{
    const auto keys = {QKeySequence::Undo, QKeySequence::Redo,  QKeySequence::Cut,
                       QKeySequence::Copy, QKeySequence::Paste, QKeySequence::SelectAll};
    return std::any_of(keys.begin(), keys.end(),
                       [&key](QKeySequence::StandardKey editing) { return key.matches(editing); });
}

bool isShortcutOf(const QWidget &window, const QKeyEvent &key)
{
    const QKeySequence pressed(QKeyCombination(key.modifiers() & ~Qt::KeypadModifier, Qt::Key(key.key())));
    const QList<QAction *> actions = window.actions();
    return std::any_of(actions.begin(), actions.end(),
                       [&pressed](const QAction *action) { return action->shortcuts().contains(pressed); });
}

} // namespace

HistoryComboBox::HistoryComboBox(QWidget *parent) : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(NoInsert);
    // Completion would put texts into the field that nobody typed.
    setCompleter(nullptr);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(MINIMUM_LENGTH_IN_CHARACTERS);
    lineEdit()->setMaxLength(std::numeric_limits<int>::max());
    lineEdit()->installEventFilter(this);
    setItemDelegate(new HistoryItemDelegate(this));
    view()->setTextElideMode(Qt::ElideRight);
    connect(lineEdit(), &QLineEdit::returnPressed, this, &HistoryComboBox::returnPressed);
}

void HistoryComboBox::bindHistory(UserDefaults &settings, const QString &key)
{
    const auto follow = [this, &settings, key](const QString &changedKey) {
        if (changedKey == key)
            _setHistory(settings.objectForKey(key).toStringList());
    };
    connect(&settings, &UserDefaults::valueChanged, this, follow);
    follow(key);
}

void HistoryComboBox::setText(const QString &text)
{
    if (lineEdit()->text() != text)
        setEditText(text);
}

void HistoryComboBox::_setHistory(const QStringList &texts)
{
    // The field keeps what it shows, whatever becomes of the list.
    const QSignalBlocker blocker(this);
    const QSignalBlocker fieldBlocker(lineEdit());
    const QString text = lineEdit()->text();
    const int cursor = lineEdit()->cursorPosition();
    const int selectionStart = lineEdit()->selectionStart();
    const int selectionLength = lineEdit()->selectionLength();
    clear();
    addItems(texts);
    setCurrentIndex(-1);
    lineEdit()->setText(text);
    lineEdit()->setCursorPosition(cursor);
    if (selectionStart >= 0)
        lineEdit()->setSelection(selectionStart, selectionLength);
}

bool HistoryComboBox::event(QEvent *event)
{
    // The box hands it on to its field by a call that no filter sees.
    return _isLeftToWindow(*event) || QComboBox::event(event);
}

bool HistoryComboBox::eventFilter(QObject *watched, QEvent *event)
{
    return _isLeftToWindow(*event) || QComboBox::eventFilter(watched, event);
}

bool HistoryComboBox::_isLeftToWindow(QEvent &event) const
{
    if (event.type() != QEvent::ShortcutOverride)
        return false;
    const auto &key = static_cast<const QKeyEvent &>(event);
    if (isEditingKey(key) || !isShortcutOf(*window(), key))
        return false;
    event.ignore();
    return true;
}

void HistoryComboBox::focusOutEvent(QFocusEvent *event)
{
    if (event->reason() != Qt::MenuBarFocusReason) {
        QComboBox::focusOutEvent(event);
        return;
    }
    // The field would drop its selection, and the menus act on that.
    QFocusEvent leaving(QEvent::FocusOut, Qt::PopupFocusReason);
    QComboBox::focusOutEvent(&leaving);
}

} // namespace tidemark
