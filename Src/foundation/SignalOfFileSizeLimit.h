#pragma once

namespace tidemark {

/// Lets a write beyond the process's limit on the size of files fail with EFBIG instead of ending the
/// process. A handler that is already set stays. Any thread.
void ignoreSignalOfFileSizeLimit();

} // namespace tidemark
