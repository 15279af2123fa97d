#pragma once

namespace ClipboardCore {

/// What is in memory was copied, and a core file would hold it, readable for whoever looks after crashes.
namespace CoreDumps {

/// No core file of this process from now on, and none of the programs it starts. Where crashes go to a program, which
/// the limit does not bind, they go there without what was in memory.
void forbid();

/// While a program of the user's is started: it gets the rules that forbid() found, and this process too until then.
class AllowedForNow
{
public:
    AllowedForNow();
    ~AllowedForNow();
    AllowedForNow(const AllowedForNow&) = delete;
    AllowedForNow& operator=(const AllowedForNow&) = delete;
};

} // namespace CoreDumps

} // namespace ClipboardCore
