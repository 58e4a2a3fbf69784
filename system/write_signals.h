#pragma once

#include <signal.h>

namespace velcoran::system {

/// While it lives, a pipe whose reader has gone and a file that grows beyond its limit are failures of the write
/// (EPIPE, EFBIG) and no signal for the calling thread and those that it starts: a host need not ignore them. The
/// handlers of the process stay as they are, and a signal that waited before goes on waiting.
class WriteSignals {
public:
    WriteSignals();
    ~WriteSignals();
    WriteSignals(const WriteSignals&) = delete;
    WriteSignals& operator=(const WriteSignals&) = delete;

private:
    sigset_t m_before;  ///< mask of the thread
    sigset_t m_ours;    ///< of the two, those that neither waited nor were blocked
};

}  // namespace velcoran::system
