#include "replace/UndoStepFiles.h"

#include "foundation/FolderStream.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace tidemark {

namespace {

constexpr qsizetype PREFIX_SIZE = 5;
constexpr qsizetype DIGITS = 16;
constexpr qsizetype LETTERS = 6;

QByteArray numberIn(const QByteArray &name)
{
    return name.mid(PREFIX_SIZE, DIGITS);
}

} // namespace

bool isUndoStepFile(const QByteArray &name)
{
    const QByteArray prefix = name.first(std::min(PREFIX_SIZE, name.size()));
    bool isNumber = false;
    (void)numberIn(name).toULongLong(&isNumber, 16);
    return (prefix == UNDO_PREFIX || prefix == REDO_PREFIX || prefix == KEPT_PREFIX) && isNumber &&
           name.size() == PREFIX_SIZE + DIGITS + 1 + LETTERS && name[PREFIX_SIZE + DIGITS] == '-' &&
           !name.contains('.') && !name.contains('/');
}

std::vector<QByteArray> undoStepFilesIn(const FilePath &folder)
{
    std::vector<QByteArray> names;
    FolderStream entries(::opendir(folder.cString()));
    while (const dirent *entry = entries.next()) {
        if (const QByteArray name(entry->d_name); isUndoStepFile(name))
            names.push_back(name);
    }
    std::sort(names.begin(), names.end(), [](const QByteArray &left, const QByteArray &right) {
        return std::pair(numberIn(left), left) < std::pair(numberIn(right), right);
    });
    return names;
}

QByteArray templateForUndoStepFile(const FilePath &folder, const QByteArray &prefix)
{
    const std::vector<QByteArray> names = undoStepFilesIn(folder);
    const quint64 last = names.empty() ? 0 : numberIn(names.back()).toULongLong(nullptr, 16);
    return prefix + QByteArray::number(last + 1, 16).rightJustified(DIGITS, '0') + '-' +
           QByteArray(LETTERS, 'X');
}

bool lockedPatiently(const std::function<bool()> &lock)
{
    constexpr int ATTEMPTS = 50;
    constexpr std::chrono::milliseconds BETWEEN(2);
    for (int attempt = 0; attempt < ATTEMPTS; ++attempt) {
        if (lock())
            return true;
        std::this_thread::sleep_for(BETWEEN);
    }
    return false;
}

} // namespace tidemark
