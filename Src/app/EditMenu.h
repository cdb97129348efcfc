#pragma once

class QMenuBar;

namespace tidemark {

class TDApplicationController;
class TDMyDocumentController;

/// Adds the commands for the text field that has the keyboard; they are enabled as it allows. Their keys are
/// shown, but the field itself takes them, as elsewhere some of them are other commands.
/// Below them stands the entry for the preferences.
void addEditMenu(QMenuBar *bar, TDMyDocumentController &controller, TDApplicationController &application);

} // namespace tidemark
