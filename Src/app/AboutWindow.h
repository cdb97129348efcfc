#pragma once

class QString;
class QWidget;

namespace tidemark {

/// Shows name and version in a window of its own; returns at once.
void showAboutWindow(QWidget *parent, const QString &nameAndVersion, const QString &version);

} // namespace tidemark
