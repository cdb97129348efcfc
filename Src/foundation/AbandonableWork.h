#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace tidemark {

/// Runs work that can't be broken off on a thread of its own and waits for it. False when it takes longer
/// than allowed: it is then left behind and runs on. On a stop it is left behind as well, and WorkStopped is
/// thrown. What the work throws is thrown here. The work must own everything that it uses.
bool runAbandonably(std::function<void()> work, std::chrono::milliseconds allowed);

/// Whether work that was left behind still runs. Ending the process in the ordinary way would then destroy
/// what that work uses.
bool isAbandonedWorkRunning();

/// The same for work with a result; nothing when it took longer than allowed.
template <typename Work>
auto resultOfAbandonable(Work work, std::chrono::milliseconds allowed)
{
    using Result = decltype(work());
    const auto result = std::make_shared<std::optional<Result>>();
    if (runAbandonably([work = std::move(work), result] { result->emplace(work()); }, allowed))
        return std::optional<Result>(std::move(*result));
    return std::optional<Result>();
}

} // namespace tidemark
