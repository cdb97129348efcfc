#pragma once

namespace tidemark {

class UserDefaults;

/// Registers the factory settings, which apply wherever the user has stored nothing.
void registerUserDefaults(UserDefaults &store);

} // namespace tidemark
