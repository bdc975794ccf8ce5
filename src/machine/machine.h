#pragma once

#include <cstdio>
#include <string>

#include "app/application.h"
#include "machine/hardware.h"
#include "machine/loaded_network.h"
#include "machine/machine_options.h"
#include "platform/posix/posix_clock.h"
#include "platform/posix/posix_storage.h"
#include "platform/posix/posix_tcp.h"
#include "platform/posix/shell_commands.h"
#include "platform/posix/xdg_mail_outbox.h"

namespace orma {

/// The real ports of this machine, the same for every front end, which brings its own event loop
/// and boxes. It also takes the trace lines while it lives. One in a process.
class Machine {
  public:
    /// Both outlive it.
    Machine(EventLoop& loop, MessageBoxes& boxes) : loop_(loop), boxes_(boxes) {}
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    /// Finds and makes what the options choose; once, before MakePorts. The program's folder
    /// becomes current, so the caller's paths are resolved before this. False when an option cannot
    /// be followed: `error` says why, in one line that begins with the option where there is one.
    [[nodiscard]] bool Open(const MachineOptions& options, std::string& error);

    /// Where settings and program files lie, with its separator.
    [[nodiscard]] const Text& ProgramFolder() const { return folder_; }

    /// For one application, which this outlives; with these boxes, which outlive it too, or those
    /// of this machine.
    [[nodiscard]] Ports MakePorts(MessageBoxes& boxes);
    [[nodiscard]] Ports MakePorts() { return MakePorts(boxes_); }

    [[nodiscard]] MessageBoxes& Boxes() { return boxes_; }

    [[nodiscard]] WaveSystem& Waves() { return *hardware_.waves; }

  private:
    EventLoop& loop_;
    MessageBoxes& boxes_;
    PosixStorage storage_;
    PosixClock clock_;
    ShellCommands desktop_;
    Hardware hardware_;
    LoadedNetwork loaded_;
    PosixTcpConnections tcp_;
    XdgMailOutbox outbox_;
    NetworkPorts network_{loaded_.Ftp(), tcp_, loaded_.Tls(), loaded_.Hash(), outbox_};
    Text folder_;
    std::FILE* trace_ = nullptr;
};

}  // namespace orma
