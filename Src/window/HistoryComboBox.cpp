#include "window/HistoryComboBox.h"

#include "foundation/UserDefaults.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

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

bool HistoryComboBox::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto *key = static_cast<QKeyEvent *>(event);
        // Some desktops move the cursor with it, but here it's a command of the window.
        if (key->key() == Qt::Key_E && key->modifiers() == Qt::ControlModifier) {
            event->ignore();
            return true;
        }
    }
    return QComboBox::eventFilter(watched, event);
}

} // namespace tidemark
