#pragma once

#include "TaskNeeds.h"

#include <functional>

namespace Clipboard {

/// The sanitizers map terabytes, read about the process and look for leaks from a second one. Programs built with them
/// are confined in nothing but time.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isConfinable = false;
#else
inline constexpr bool isConfinable = true;
#endif

/// Takes from this process all but what its task needs: memory and time beyond what that can cost, a dump of its
/// memory, a life after its parent's, every file and system call that is not on a list. Called before the first thread
/// is started and before anything of strangers is read. What the system does not offer is left out: each
/// such thing is told to `report`, as a clause for people, while the system's log can still be reached.
void confineThisProcess(const TaskNeeds& needs, const std::function<void(const char* problem)>& report);

} // namespace Clipboard
