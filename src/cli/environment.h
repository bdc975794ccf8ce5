#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <optional>

#include "app/application.h"
#include "cli/console_boxes.h"
#include "cli/globals.h"
#include "cli/hardware.h"
#include "platform/curl/curl_ftp_clients.h"
#include "platform/openssl/openssl_keyed_hash.h"
#include "platform/openssl/openssl_tls.h"
#include "platform/posix/posix_clock.h"
#include "platform/posix/posix_event_loop.h"
#include "platform/posix/posix_storage.h"
#include "platform/posix/posix_tcp.h"
#include "platform/posix/shell_commands.h"
#include "platform/posix/signal_watch.h"
#include "platform/posix/xdg_mail_outbox.h"

namespace orma::cli {

/// The real ports of this machine and the application on them, for one run of a command. The
/// program's folder becomes current, so the caller's paths are resolved before this is built.
class Environment {
  public:
    explicit Environment(const Globals& globals);

    /// With somebody who listens to recorder and player; Ctrl-C then calls `onInterrupt` on the
    /// event loop instead of ending the program.
    Environment(const Globals& globals, TransportListener& transport,
                std::function<void()> onInterrupt);

    /// With somebody who watches a publish job.
    Environment(const Globals& globals, PublishProgress& progress);

    ~Environment();

    [[nodiscard]] Application& App() { return *app_; }
    [[nodiscard]] PosixEventLoop& Loop() { return loop_; }
    [[nodiscard]] ConsoleBoxes& Boxes() { return boxes_; }
    [[nodiscard]] WaveSystem& Waves() { return *hardware_.waves; }

  private:
    /// A job that nobody watches.
    class QuietProgress : public PublishProgress {
        void SetText(const Text&) override {}
        void SetRange(std::uint32_t) override {}
        void Step(std::uint32_t) override {}
        [[nodiscard]] bool IsCancelled() override { return false; }
    };

    /// A recording goes on through stalls of at least a minute; its queue holds two.
    static constexpr FtpLimits kLiveLimits{
        .connectMs = 90'000, .replyMs = 120'000, .stallMs = 120'000};

    void Build(const Globals& globals, FrontEnd frontEnd);

    ConsoleBoxes boxes_;
    PosixStorage storage_;
    PosixClock clock_;
    PosixEventLoop loop_;
    ShellCommands desktop_;
    std::optional<SignalWatch> interrupt_;  // before the sound system starts its first thread
    TransportListener quietTransport_;
    QuietProgress quietProgress_;
    Hardware hardware_;
    CurlFtpClients ftp_;
    PosixTcpConnections tcp_;
    OpensslTlsConnections tls_;
    OpensslKeyedHash hash_;
    XdgMailOutbox outbox_;
    NetworkPorts network_{ftp_, tcp_, tls_, hash_, outbox_};
    CurlFtpClients liveFtp_{kLiveLimits};
    std::unique_ptr<Application> app_;
    std::FILE* trace_ = nullptr;
};

}  // namespace orma::cli
