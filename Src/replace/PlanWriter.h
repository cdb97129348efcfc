#pragma once

#include "foundation/FileSystemCalls.h"
#include "replace/RewritePlan.h"

#include <QByteArray>

namespace tidemark {

/// Carries out a plan: writes the new content to one open file, taking what stays from another.
class PlanWriter
{
public:
    /// Both descriptors stay the caller's.
    PlanWriter(int oldContent, int target) : _oldContent(oldContent), _target(target) {}

    /// 0, or errno with part of the content written.
    int write(const RewritePlan &plan);

private:
    int _append(QByteArrayView bytes);
    int _appendOldContent(qint64 offset, qint64 length);
    int _flush();

    int _oldContent;
    int _target;
    QByteArray _pending;
};

} // namespace tidemark
