// bench_ftp FILE PORT: uploads FILE to the FTP server at 127.0.0.1, user anonymous, through the FTP
// stream in the blocks of the MP2 writer, and with curl.

#include "measure.h"
#include "platform/curl/curl_ftp_clients.h"
#include "stream/jstream_wr_ftp.h"

namespace orma::bench {
namespace {

constexpr std::size_t kBlockBytes = 8192;

struct EndlessPatience : Patience {
    [[nodiscard]] bool GoOn() override { return true; }
};

void Upload(Desk& desk, const Bytes& file, const std::string& port) {
    EndlessPatience patience;
    CurlFtpClients clients;
    JStreamWrFTP stream({clients, desk.Report(), patience});
    stream.SetDestination({.server = FromUtf8("127.0.0.1:" + port), .passive = true}, u"mp2");
    stream.OpenForWriting(u"ours");
    for (std::size_t at = 0; at < file.size(); at += kBlockBytes)
        stream.Write(&file[at],
                     static_cast<std::uint32_t>(std::min(kBlockBytes, file.size() - at)));
    stream.CloseAll();
    Require(stream.CloseResult().Ok(), "the upload was not confirmed");
}

}  // namespace
}  // namespace orma::bench

int main(int count, char** arguments) {
    using namespace orma::bench;
    Require(count == 3, "usage: bench_ftp FILE PORT");
    const std::string file = arguments[1];
    const std::string port = arguments[2];
    Desk desk;
    const orma::Bytes bytes = ReadAll(file);
    Compare("ftp", {{"ours", [&] { Upload(desk, bytes, port); }},
                    {"curl", [&] {
                         Shell("curl -s -T " + file + " ftp://127.0.0.1:" + port + "/curl.mp2");
                     }}});
}
