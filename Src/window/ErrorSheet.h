#pragma once

#include "foundation/TDError.h"

class QMessageBox;
class QWidget;

namespace tidemark {

/// Shows the error on the window without waiting: description with reason and code, and the suggestion in
/// smaller text, all as plain text. Files that failed are listed below, each on a line, to be scrolled and
/// copied. The sheet deletes itself when it is closed.
QMessageBox *presentErrorSheet(QWidget *window, const TDError &error, const QString &failedFiles = {});

/// A message box that shows its texts as they are, whatever they look like. It deletes itself when it is
/// closed.
QMessageBox *makePlainSheet(QWidget *window, const QString &text, const QString &informativeText);

} // namespace tidemark
