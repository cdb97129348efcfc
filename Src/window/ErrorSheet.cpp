#include "window/ErrorSheet.h"

#include <QLabel>
#include <QMessageBox>

namespace tidemark {

namespace {

constexpr double SMALLER = 0.9;

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

QMessageBox *presentErrorSheet(QWidget *window, const TDError &error)
{
    QMessageBox *sheet =
        makePlainSheet(window, error.localizedDescription(), error.localizedRecoverySuggestion());
    sheet->setStandardButtons(QMessageBox::Ok);
    sheet->open();
    return sheet;
}

} // namespace tidemark
