#pragma once

namespace tidemark {

class UserDefaults;

/// Registers the factory settings, which apply wherever the user has stored nothing. It stands on this floor
/// and not beside UserDefaults, since the list of kinds and the numbers of encodings are among them.
void registerUserDefaults(UserDefaults &store);

} // namespace tidemark
