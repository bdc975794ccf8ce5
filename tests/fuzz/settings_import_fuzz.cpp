// JSON files that `orma settings import` takes.

#include <sstream>

#include "fuzz/fuzz.h"
#include "settings/settings_json.h"

namespace orma::test {

// The record and its table by name; the text in a stream; a JSON value of 16 bytes, with a list of
// its own, for each bracket, in lists that grow.
const MemoryBudget kMemoryBudget{.fixedBytes = 256 * 1024, .bytesPerInputByte = 256};

void TryInput(ByteSpan bytes) {
    std::istringstream json(std::string(bytes.begin(), bytes.end()));
    SettingsRecord record;
    const SettingsTable table(record);
    const SettingsImport import = ImportSettings(json, table);
    for (const std::string& name : import.names)
        Require(table.Find(name) != nullptr, "what was imported has a name");
}

}  // namespace orma::test
