#pragma once

class QString;
class QWidget;

namespace tidemark {

/// Shows icon, name, version, licence and libraries in a window of its own; returns at once.
void showAboutWindow(QWidget *parent, const QString &nameAndVersion, const QString &version);

} // namespace tidemark
