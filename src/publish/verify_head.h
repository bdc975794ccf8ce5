#pragma once

#include <vector>

#include "platform/date_time.h"
#include "publish/chunk_map.h"
#include "publish/coding_history.h"

namespace orma {

/// What the head of a published file says about its sound.
struct PublishedHead {
    PublicationFormat format;
    bool formatKnown = false;  // `fmt ` could be read
    DateTime recorded;         // from `bext`; without milliseconds
    bool recordedValid = false;
};

/// Checks `fmt `, `fact` and `mext`: each field against the layout and against the size of `data`.
void CheckFormat(VerifySource& source, const std::vector<FileChunk>& chunks, PublishedHead& head,
                 VerifyNotes& notes);

/// Checks `bext`: fixed fields, dates, time reference, identifier, coding history against `fmt `.
void CheckBext(VerifySource& source, const FileChunk& bext, PublishedHead& head,
               VerifyNotes& notes);

}  // namespace orma
