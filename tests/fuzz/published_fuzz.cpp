// Published files, as the verifier reads them.

#include <algorithm>

#include "fuzz/fuzz.h"
#include "publish/verify.h"

namespace orma::test {

// 128 KiB for blocks of PCM. `levl` as bytes and decoded; `qlty` as bytes and split into lines,
// which may be as short as their ends.
const MemoryBudget kMemoryBudget{.fixedBytes = 160 * 1024, .bytesPerInputByte = 48};

void TryInput(ByteSpan bytes) {
    const Text path = u"pub_talk.wav";
    FuzzFiles files(bytes.size());
    files.storage.Put(path, bytes);
    const VerifyReport report = VerifyPublishedFile(files.services, path);
    Require(!report.facts.empty() || !report.findings.empty(), "something is said");
    Require(report.findings.size() <= 100, "a readable number of findings");
    for (const Finding& finding : report.findings) {
        Require(finding.offset <= std::max<std::size_t>(bytes.size(), 12),
                "a finding lies in the file, or behind the head that it lacks");
        for (const char c : finding.text)
            Require(c >= 0x20 && c < 0x7F, "a finding is a line of ASCII");
    }
    Require(std::ranges::equal(*files.storage.Find(path), bytes), "verifying changes nothing");
}

}  // namespace orma::test
