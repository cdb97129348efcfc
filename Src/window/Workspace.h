#pragma once

#include "session/Editors.h"

#include <optional>

namespace tidemark {

/// The desktop around the application: opens files and shows them in the file manager.
class Workspace
{
public:
    virtual ~Workspace() = default;
    // Each gives a text for people where it failed.

    /// With the default application for the file.
    virtual std::optional<QString> open(const FilePath &file) = 0;
    /// In the editor of the settings, at the place.
    virtual std::optional<QString> openAt(const EditorPlace &place) = 0;
    /// Selected in the file manager, or at least its folder opened.
    virtual std::optional<QString> reveal(const FilePath &file) = 0;
};

class DesktopWorkspace : public Workspace
{
public:
    std::optional<QString> open(const FilePath &file) override;
    std::optional<QString> openAt(const EditorPlace &place) override;
    /// Asks the running file manager without waiting for its answer.
    std::optional<QString> reveal(const FilePath &file) override;
};

} // namespace tidemark
