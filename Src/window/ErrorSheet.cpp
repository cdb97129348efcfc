#include "window/ErrorSheet.h"

#include "foundation/LocalizedText.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>

namespace tidemark {

namespace {

constexpr double SMALLER = 0.9;
constexpr int LIST_WIDTH = 520;
constexpr int MOST_LINES_SHOWN = 10;

QPlainTextEdit *makeList(const QString &text)
{
    auto *list = new QPlainTextEdit;
    list->setObjectName(QStringLiteral("failedFiles"));
    list->setAccessibleName(localizedString("Files that failed"));
    list->setReadOnly(true);
    list->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    list->setTabChangesFocus(true);
    list->setLineWrapMode(QPlainTextEdit::NoWrap);
    list->setPlainText(text);
    // One more for the bar below long paths.
    const int lines = qMin(list->blockCount(), MOST_LINES_SHOWN) + 1;
    list->setFixedHeight(lines * list->fontMetrics().lineSpacing() + 2 * list->frameWidth() +
                         2 * int(list->document()->documentMargin()));
    list->setMinimumWidth(LIST_WIDTH);
    return list;
}

/// The box arranges its texts when they are set, so that this comes after them.
void addBelowTexts(QMessageBox &sheet, QWidget *widget)
{
    auto *grid = qobject_cast<QGridLayout *>(sheet.layout());
    auto *buttons = sheet.findChild<QDialogButtonBox *>();
    if (grid == nullptr || buttons == nullptr)
        return;
    grid->removeWidget(buttons);
    grid->addWidget(widget, grid->rowCount(), 0, 1, grid->columnCount());
    grid->addWidget(buttons, grid->rowCount(), 0, 1, grid->columnCount());
    QWidget::setTabOrder(widget, buttons);
}

} // namespace

QMessageBox *makePlainSheet(QWidget *window, const QString &text, const QString &informativeText)
{
    auto *sheet = new QMessageBox(window);
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->setWindowModality(Qt::WindowModal);
    sheet->setIcon(QMessageBox::Warning);
    sheet->setTextFormat(Qt::PlainText);
    sheet->setText(text);
    sheet->setInformativeText(informativeText);
    // The box decides by itself what the second label's text looks like, and file names may look like
    // anything.
    if (auto *label = sheet->findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel"))) {
        label->setTextFormat(Qt::PlainText);
        QFont font = label->font();
        font.setPointSizeF(font.pointSizeF() * SMALLER);
        label->setFont(font);
    }
    return sheet;
}

QMessageBox *presentErrorSheet(QWidget *window, const TDError &error, const QString &failedFiles)
{
    QMessageBox *sheet =
        makePlainSheet(window, error.localizedDescription(), error.localizedRecoverySuggestion());
    sheet->setStandardButtons(QMessageBox::Ok);
    if (!failedFiles.isEmpty())
        addBelowTexts(*sheet, makeList(failedFiles));
    sheet->button(QMessageBox::Ok)->setFocus();
    sheet->open();
    return sheet;
}

} // namespace tidemark
