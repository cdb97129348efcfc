#pragma once

#include "session/Editors.h"

#include <optional>

namespace tidemark {

/// The desktop around the application: opens files and shows them in the file manager.
class Workspace
{
public:
    virtual ~Workspace() = default;
    /// With the default application for the file.
    virtual void open(const FilePath &file) = 0;
    /// In the editor of the settings, at the place. A text for people where that failed.
    virtual std::optional<QString> openAt(const EditorPlace &place) = 0;
    /// Selected in the file manager, or at least its folder opened.
    virtual void reveal(const FilePath &file) = 0;
};

class DesktopWorkspace : public Workspace
{
public:
    void open(const FilePath &file) override;
    std::optional<QString> openAt(const EditorPlace &place) override;
    /// Asks the running file manager without waiting for its answer.
    void reveal(const FilePath &file) override;
};

} // namespace tidemark
