#pragma once

#include "foundation/FilePath.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace tidemark {

/// What a new search window is to start with.
struct LaunchRequest
{
    std::optional<QString> findText;
    std::optional<QString> replaceText;
    bool isRegularExpression = false;
    QList<FilePath> paths; ///< absolute

    /// As it is handed to a running instance, and back; nothing for what isn't one.
    QByteArray encoded() const;
    static std::optional<LaunchRequest> decoded(const QByteArray &bytes);

    friend bool operator==(const LaunchRequest &, const LaunchRequest &) = default;
};

/// The command line of the program, understood before there is a display.
struct CommandLine
{
    enum class Wish { Window, Help, Version, WrongUsage };

    Wish wish = Wish::Window;
    LaunchRequest request;
    QByteArray problem; ///< of wrong usage: one line

    /// `arguments` without the program's name, as the system gave them. Options of the toolkit are passed
    /// over. Paths are taken from `currentFolder`.
    static CommandLine parsed(const QList<QByteArray> &arguments, const FilePath &currentFolder);

    /// Begins with "usage: tidemark".
    static QByteArray usage();
};

} // namespace tidemark
