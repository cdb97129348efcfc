#pragma once

namespace tidemark {

class TDApplicationController;
class TDMyDocumentController;

/// Fills the menu bar of a search window. Both must outlive the window.
void buildMainMenu(TDMyDocumentController &controller, TDApplicationController &application);

} // namespace tidemark
