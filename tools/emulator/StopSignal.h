#pragma once

namespace vesk::emulator {

// A flag that ends the emulator's waits (a delay, a hang) at once when it is
// raised, and keeps them from starting after. It is a descriptor that polls
// readable once raised, so a wait can watch it beside a connection.
class StopSignal {
public:
    StopSignal();
    ~StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    void raise();
    void lower(); // for a server that starts again
    bool raised() const;
    int fd() const { return fd_; }

    // Waits `ms`; false when the signal is raised first.
    bool wait(int ms) const;

private:
    int fd_ = -1;
};

} // namespace vesk::emulator
