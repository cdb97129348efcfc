#pragma once

class QMenuBar;

namespace tidemark {

class TDApplicationController;
class TDMyDocumentController;

/// Adds the commands for windows, and one entry for each open window.
void addWindowMenu(QMenuBar *bar, TDMyDocumentController &controller, TDApplicationController &application);

} // namespace tidemark
