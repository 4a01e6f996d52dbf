#pragma once

namespace korvane {

// Destroys what the exports have made. Called by the entry routine when the host frees the library,
// so that a host may load it as often as it likes; under the loader's lock, hence without a wait.
void libraryFreed() noexcept;

}  // namespace korvane
